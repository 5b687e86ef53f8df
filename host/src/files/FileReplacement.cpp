#include "files/FileReplacement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <algorithm>
#include <cstring>
#include <random>

#include "core/Utf8.h"

namespace cadhost {
namespace {

// As many links as the system follows in one path before it gives up.
constexpr int kMaxLinks = 40;
// Names tried for the moment between the new file's linking and its rename.
constexpr int kNameAttempts = 100;

std::wstring Reason(int error) { return FromUtf8(std::strerror(error)); }

std::wstring Named(const std::filesystem::path& path) { return FromUtf8(path.string()); }

// A name in the folder that nothing has, hidden, that says whose it is.
std::filesystem::path HiddenName(const std::filesystem::path& folder, const std::filesystem::path& target) {
    static thread_local std::mt19937_64 random{std::random_device{}()};
    static const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::string suffix(6, 'x');
    for (char& c : suffix) c = kLetters[random() % (sizeof kLetters - 1)];
    return folder / ("." + target.filename().string() + "." + suffix);
}

// Gives the unnamed file behind fd the name; answers 0 or the error.
int LinkUnnamed(int fd, const std::filesystem::path& name) {
    std::string self = "/proc/self/fd/" + std::to_string(fd);
    if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) return 0;
    int error = errno;
    if (error != ENOENT) return error;
    // Without /proc: the direct way, which needs the right to do it.
    if (::linkat(fd, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH) == 0) return 0;
    return errno == ENOENT || errno == EPERM ? error : errno;
}

// Whether name is one of the hidden names this class gives a new file of
// target: "." + target's name + "." + six letters or digits.
bool IsHiddenNameOf(const std::string& name, const std::string& target) {
    if (name.size() != target.size() + 8 || name[0] != '.' || name.compare(1, target.size(), target) != 0 ||
        name[target.size() + 1] != '.')
        return false;
    for (size_t i = target.size() + 2; i < name.size(); ++i)
        if (!std::isalnum(static_cast<unsigned char>(name[i]))) return false;
    return true;
}

// Removes what an earlier save of target left when it was killed: a new file
// under its hidden name, whole when it was killed between giving the file
// that name and the rename, partial where the file system has no unnamed
// files. The file itself was never touched by it.
void RemoveLeftovers(const std::filesystem::path& folder, const std::filesystem::path& target) {
    DIR* listing = ::opendir(folder.c_str());
    if (!listing) return;
    std::string own = target.filename().string();
    while (const dirent* entry = ::readdir(listing)) {
        if (!IsHiddenNameOf(entry->d_name, own)) continue;
        std::filesystem::path leftover = folder / entry->d_name;
        struct stat status {};
        if (::lstat(leftover.c_str(), &status) == 0 && S_ISREG(status.st_mode)) ::unlink(leftover.c_str());
    }
    ::closedir(listing);
}

// Reads size bytes at an offset; false (errno EIO at the file's end) when
// they are not all there.
bool ReadAll(int fd, char* into, size_t size, off_t at) {
    while (size > 0) {
        ssize_t got = ::pread(fd, into, size, at);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            if (got == 0) errno = EIO;
            return false;
        }
        into += got;
        size -= static_cast<size_t>(got);
        at += got;
    }
    return true;
}

bool WriteAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        ssize_t written = ::write(fd, data, size);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

void SyncFolder(const std::filesystem::path& folder) {
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace

std::optional<std::filesystem::path> FollowLinks(const std::filesystem::path& path, std::wstring& error) {
    std::filesystem::path current = path;
    for (int hops = 0; hops <= kMaxLinks; ++hops) {
        struct stat status {};
        if (::lstat(current.c_str(), &status) != 0) {
            if (errno == ELOOP) break;
            // Nothing there (yet): the links end at a file to be made.
            return current;
        }
        if (!S_ISLNK(status.st_mode)) return current;
        std::string link(static_cast<size_t>(status.st_size > 0 ? status.st_size : 256) + 1, '\0');
        ssize_t length = ::readlink(current.c_str(), link.data(), link.size());
        if (length < 0) {
            error = Named(path) + L": the symbolic link cannot be read (" + Reason(errno) + L")";
            return std::nullopt;
        }
        link.resize(static_cast<size_t>(length));
        std::filesystem::path next(link);
        current = next.is_absolute() ? next : current.parent_path() / next;
    }
    error = Named(path) + L": the symbolic links form a loop";
    return std::nullopt;
}

FileReplacement::FileReplacement(const std::filesystem::path& path) : m_given(path) {
    if (!Prepare() || !OpenNewFile()) Discard();
}

FileReplacement::~FileReplacement() { Discard(); }

void FileReplacement::Fail(const std::wstring& why) {
    std::wstring name = Named(m_given);
    if (!m_target.empty() && m_target != m_given) name += L" (a link to " + Named(m_target) + L")";
    m_error = name + L": " + why;
}

bool FileReplacement::Prepare() {
    std::optional<std::filesystem::path> target = FollowLinks(m_given, m_error);
    if (!target) return false;
    m_target = *target;
    m_folder = m_target.has_parent_path() ? m_target.parent_path() : std::filesystem::path(".");
    struct stat old {};
    if (::stat(m_target.c_str(), &old) != 0) {
        if (errno == ENOENT) return true;  // a new file
        Fail(L"cannot be reached (" + Reason(errno) + L")");
        return false;
    }
    if (S_ISDIR(old.st_mode)) {
        Fail(L"is a folder");
        return false;
    }
    if (!S_ISREG(old.st_mode)) {
        Fail(L"is not a regular file (a device, pipe or socket), and is left as it was");
        return false;
    }
    // Read-only as the file's attribute says, whoever asks: even a user whom
    // the system would let write it does not save over it.
    if ((old.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        Fail(L"is read-only, and is left as it was");
        return false;
    }
    if (::access(m_target.c_str(), W_OK) != 0 && (errno == EACCES || errno == EPERM || errno == EROFS)) {
        Fail(L"cannot be written (" + Reason(errno) + L"), and is left as it was");
        return false;
    }
    m_old = old;
    return true;
}

bool FileReplacement::OpenNewFile() {
    RemoveLeftovers(m_folder, m_target);
    m_fd = ::open(m_folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (m_fd >= 0) {
        m_unnamed = true;
    } else if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL) {
        // A file system without unnamed files: a hidden name stands in.
        std::string pattern = (m_folder / ("." + m_target.filename().string() + ".XXXXXX")).string();
        m_fd = ::mkostemp(pattern.data(), O_CLOEXEC);
        if (m_fd >= 0) {
            m_hiddenName = pattern;
            mode_t mask = ::umask(0);
            ::umask(mask);
            ::fchmod(m_fd, 0666 & ~mask);
        }
    }
    if (m_fd < 0) {
        Fail(L"cannot write in its folder (" + Reason(errno) + L")");
        return false;
    }
    // The old file, to compare with; one that cannot be read is replaced
    // without comparing.
    if (m_old && m_old->st_size > 0) {
        m_oldFd = ::open(m_target.c_str(), O_RDONLY | O_CLOEXEC);
        m_comparing = m_oldFd >= 0;
    }
    cookie_io_functions_t functions{};
    functions.write = &FileReplacement::WriteToStream;
    m_stream = ::fopencookie(this, "wb", functions);
    if (!m_stream) {
        Fail(L"cannot write in its folder (" + Reason(errno) + L")");
        return false;
    }
    return true;
}

ssize_t FileReplacement::WriteToStream(void* self, const char* data, size_t size) {
    auto* replacement = static_cast<FileReplacement*>(self);
    if (replacement->m_comparing) {
        if (replacement->Matches(data, size)) {
            replacement->m_same += static_cast<off_t>(size);
            return static_cast<ssize_t>(size);
        }
        if (!replacement->StopComparing()) return -1;
    }
    return WriteAll(replacement->m_fd, data, size) ? static_cast<ssize_t>(size) : -1;
}

bool FileReplacement::Matches(const char* data, size_t size) {
    if (m_same + static_cast<off_t>(size) > m_old->st_size) return false;
    m_oldBytes.resize(size);
    return ReadAll(m_oldFd, m_oldBytes.data(), size, m_same) && std::memcmp(m_oldBytes.data(), data, size) == 0;
}

bool FileReplacement::StopComparing() {
    m_comparing = false;
    for (off_t at = 0; at < m_same;) {
        size_t piece = static_cast<size_t>(std::min<off_t>(m_same - at, 1 << 20));
        m_oldBytes.resize(piece);
        // The old file cut meanwhile fails here, and the save with it.
        if (!ReadAll(m_oldFd, m_oldBytes.data(), piece, at) || !WriteAll(m_fd, m_oldBytes.data(), piece)) return false;
        at += static_cast<off_t>(piece);
    }
    std::string().swap(m_oldBytes);
    return true;
}

bool FileReplacement::CopyOwnership() {
    if (!m_old) return true;
    // Owner and group where the user may give them; a user who may not
    // keeps at least the group when it is one of theirs.
    if (m_old->st_uid != ::geteuid() || m_old->st_gid != ::getegid()) {
        if (::fchown(m_fd, m_old->st_uid, m_old->st_gid) != 0) (void)::fchown(m_fd, static_cast<uid_t>(-1), m_old->st_gid);
    }
    // After the owner, which clears the set-id bits.
    if (::fchmod(m_fd, m_old->st_mode & 07777) != 0) {
        Fail(L"the new file cannot take the old one's permissions (" + Reason(errno) + L"); the file is unchanged");
        return false;
    }
    return true;
}

bool FileReplacement::PutInPlace() {
    if (!m_unnamed) {
        if (::rename(m_hiddenName.c_str(), m_target.c_str()) != 0) {
            Fail(L"the new file cannot take the old one's place (" + Reason(errno) + L"); the file is unchanged");
            return false;
        }
        m_hiddenName.clear();
        return true;
    }
    if (!m_old) {
        int error = LinkUnnamed(m_fd, m_target);
        if (error == 0) return true;
        if (error != EEXIST) {
            Fail(L"the new file cannot be given its name (" + Reason(error) + L")");
            return false;
        }
    }
    // A name of its own for the moment of the rename, which replaces the old
    // file in one step.
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::filesystem::path name = HiddenName(m_folder, m_target);
        int error = LinkUnnamed(m_fd, name);
        if (error == EEXIST) continue;
        if (error != 0) {
            Fail(L"the new file cannot be given a name in its folder (" + Reason(error) + L"); the file is unchanged");
            return false;
        }
        if (::rename(name.c_str(), m_target.c_str()) != 0) {
            int renameError = errno;
            ::unlink(name.c_str());
            Fail(L"the new file cannot take the old one's place (" + Reason(renameError) + L"); the file is unchanged");
            return false;
        }
        return true;
    }
    Fail(L"no free name for the new file in its folder; the file is unchanged");
    return false;
}

bool FileReplacement::Commit() {
    if (!m_stream || m_committed) return false;
    if (std::fflush(m_stream) != 0 || std::ferror(m_stream)) {
        Fail(L"the new content could not be written (" + Reason(errno) + L"); the file is unchanged");
        return false;
    }
    struct stat now {};
    if (m_comparing && m_same == m_old->st_size && ::fstat(m_oldFd, &now) == 0 && now.st_size == m_same) {
        // The old file holds the new content already.
        Discard();
        m_committed = true;
        m_unchanged = true;
        return true;
    }
    if (m_comparing && !StopComparing()) {
        Fail(L"the new content could not be written (" + Reason(errno) + L"); the file is unchanged");
        return false;
    }
    if (!CopyOwnership()) return false;
    if (::fsync(m_fd) != 0) {
        Fail(L"the new content could not be written (" + Reason(errno) + L"); the file is unchanged");
        return false;
    }
    if (!PutInPlace()) return false;
    SyncFolder(m_folder);
    m_hiddenName.clear();
    Discard();
    m_committed = true;
    return true;
}

void FileReplacement::Discard() {
    if (m_stream) {
        std::fclose(m_stream);
        m_stream = nullptr;
    }
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (m_oldFd >= 0) {
        ::close(m_oldFd);
        m_oldFd = -1;
    }
    if (!m_hiddenName.empty()) {
        ::unlink(m_hiddenName.c_str());
        m_hiddenName.clear();
    }
}

}  // namespace cadhost
