// The shell's path functions. Paths are the host's own (POSIX, with "/"
// as the separator); the contracts are the platform's: buffers of MAX_PATH
// characters, TRUE on success.
#pragma once

#include "windows.h"

extern "C" {
// Cuts the last element of a path off, with the separator before it.
CADHOST_API BOOL WINAPI PathRemoveFileSpecW(LPWSTR path);
// Ends a path with a separator if it has none; answers its end, or null if
// the result would not fit MAX_PATH characters.
CADHOST_API LPWSTR WINAPI PathAddBackslashW(LPWSTR path);
// Joins a folder and a file into a buffer of MAX_PATH characters.
CADHOST_API LPWSTR WINAPI PathCombineW(LPWSTR destination, LPCWSTR folder, LPCWSTR file);
CADHOST_API BOOL WINAPI PathFileExistsW(LPCWSTR path);
CADHOST_API LPWSTR WINAPI PathFindFileNameW(LPCWSTR path);
CADHOST_API BOOL WINAPI PathIsRelativeW(LPCWSTR path);
}

#define PathRemoveFileSpec PathRemoveFileSpecW
#define PathAddBackslash PathAddBackslashW
#define PathCombine PathCombineW
#define PathFileExists PathFileExistsW
#define PathFindFileName PathFindFileNameW
#define PathIsRelative PathIsRelativeW
