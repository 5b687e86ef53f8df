#include "files/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/Utf8.h"

namespace cadhost {
namespace {

std::wstring Reason(int error) { return FromUtf8(std::strerror(error)); }

// What a file that is not a regular one is, or empty for a regular one.
std::wstring OtherKind(mode_t mode) {
    if (S_ISREG(mode)) return L"";
    if (S_ISDIR(mode)) return L"a folder";
    if (S_ISFIFO(mode)) return L"a pipe";
    if (S_ISSOCK(mode)) return L"a socket";
    if (S_ISCHR(mode) || S_ISBLK(mode)) return L"a device";
    return L"a special file";
}

OpenResult Refuse(mode_t mode) {
    return S_ISDIR(mode) ? OpenResult::kFolder : OpenResult::kNotRegular;
}

}  // namespace

OpenResult OpenRegularFile(const std::filesystem::path& path, const std::wstring& wanted, std::FILE*& file,
                           std::wstring& error) {
    file = nullptr;
    std::wstring name = FromUtf8(path.string());
    struct stat before {};
    if (::stat(path.c_str(), &before) != 0) {
        int reason = errno;
        struct stat link {};
        if (reason == ELOOP) {
            error = name + L": the symbolic links form a loop";
            return OpenResult::kRefused;
        }
        if (reason == ENOENT && ::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
            error = name + L": is a symbolic link to a file that does not exist";
            return OpenResult::kMissing;
        }
        if (reason == ENOENT || reason == ENOTDIR) {
            error = name + L": no such file";
            return OpenResult::kMissing;
        }
        error = name + L": cannot be opened (" + Reason(reason) + L")";
        return OpenResult::kRefused;
    }
    if (std::wstring kind = OtherKind(before.st_mode); !kind.empty()) {
        error = name + L": is " + kind + L", not " + wanted;
        return Refuse(before.st_mode);
    }
    // Without blocking, in case something else took the name meanwhile; the
    // opened file is checked again.
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        error = name + L": cannot be opened (" + Reason(errno) + L")";
        return OpenResult::kRefused;
    }
    struct stat opened {};
    if (::fstat(fd, &opened) != 0) {
        error = name + L": cannot be opened (" + Reason(errno) + L")";
        ::close(fd);
        return OpenResult::kRefused;
    }
    if (std::wstring kind = OtherKind(opened.st_mode); !kind.empty()) {
        error = name + L": is " + kind + L", not " + wanted;
        ::close(fd);
        return Refuse(opened.st_mode);
    }
    int flags = ::fcntl(fd, F_GETFL);
    if (flags >= 0) ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    file = ::fdopen(fd, "rb");
    if (!file) {
        error = name + L": cannot be opened (" + Reason(errno) + L")";
        ::close(fd);
        return OpenResult::kRefused;
    }
    return OpenResult::kOpened;
}

}  // namespace cadhost
