// The C runtime's calls on paths and files: the current directory, the
// absolute form of a path, opening a file by a wide name.
#include <direct.h>
#include <tchar.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <string>

#include "core/Utf8.h"
#include "shell/PathText.h"

namespace {

std::wstring CurrentDirectory() {
    std::string buffer(256, '\0');
    while (!::getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE) return std::wstring();
        buffer.resize(buffer.size() * 2);
    }
    buffer.resize(std::char_traits<char>::length(buffer.c_str()));
    return cadhost::FromUtf8(buffer);
}

// The text into a caller's buffer of maxLength characters, or into a new
// one the caller frees.
wchar_t* Deliver(const std::wstring& text, wchar_t* buffer, size_t maxLength) {
    if (!buffer) {
        buffer = static_cast<wchar_t*>(std::malloc((std::max<size_t>(text.size() + 1, maxLength)) * sizeof(wchar_t)));
        if (!buffer) {
            errno = ENOMEM;
            return nullptr;
        }
    } else if (text.size() + 1 > maxLength) {
        errno = ERANGE;
        return nullptr;
    }
    std::wmemcpy(buffer, text.c_str(), text.size() + 1);
    return buffer;
}

}  // namespace

extern "C" {

wchar_t* _wgetcwd(wchar_t* buffer, int maxLength) {
    std::wstring current = CurrentDirectory();
    if (current.empty()) return nullptr;
    if (buffer && maxLength <= 0) {
        errno = EINVAL;
        return nullptr;
    }
    return Deliver(current, buffer, maxLength > 0 ? static_cast<size_t>(maxLength) : 0);
}

int _wchdir(const wchar_t* folder) {
    if (!folder || !*folder) {
        errno = ENOENT;
        return -1;
    }
    return ::chdir(cadhost::ToUtf8(folder).c_str()) == 0 ? 0 : -1;
}

wchar_t* _wfullpath(wchar_t* absolutePath, const wchar_t* relativePath, size_t maxLength) {
    std::wstring path = cadhost::HostSeparators(relativePath ? relativePath : L"");
    if (path.empty() || !cadhost::IsPathSeparator(path[0])) {
        std::wstring current = CurrentDirectory();
        if (current.empty()) return nullptr;
        path = current + L"/" + path;
    }
    if (!absolutePath) maxLength = MAX_PATH;
    return Deliver(cadhost::CanonicalPath(path), absolutePath, maxLength);
}

FILE* _wfopen(const wchar_t* fileName, const wchar_t* mode) {
    if (!fileName || !*fileName || !mode) {
        errno = EINVAL;
        return nullptr;
    }
    return std::fopen(cadhost::ToUtf8(fileName).c_str(), cadhost::ToUtf8(mode).c_str());
}
}
