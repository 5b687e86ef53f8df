// What a path names, as the platform's GetFileAttributesW tells it.
#include <windows.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "core/Utf8.h"

extern "C" {

DWORD WINAPI GetFileAttributesW(LPCWSTR fileName) {
    if (!fileName || !*fileName) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_FILE_ATTRIBUTES;
    }
    std::string path = cadhost::ToUtf8(fileName);
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        SetLastError(errno == EACCES ? ERROR_ACCESS_DENIED : ERROR_FILE_NOT_FOUND);
        return INVALID_FILE_ATTRIBUTES;
    }
    DWORD attributes = 0;
    if (S_ISDIR(info.st_mode)) attributes |= FILE_ATTRIBUTE_DIRECTORY;
    else if (!S_ISREG(info.st_mode)) attributes |= FILE_ATTRIBUTE_DEVICE;
    if (::access(path.c_str(), W_OK) != 0 && errno == EACCES) attributes |= FILE_ATTRIBUTE_READONLY;
    return attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
}
}
