// The shell's path functions. Paths are the host's own (POSIX, with "/"
// as the separator); the contracts are the platform's: buffers of MAX_PATH
// characters, TRUE on success. In a relative path that PathCombineW joins
// to a folder a backslash separates too, as on the platform, so that a path
// written there (..\data\notes.txt) means the same here; in the host's own
// paths a backslash is a character of a name, as POSIX has it.
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
// FILE_ATTRIBUTE_DIRECTORY when the path names a folder, else FALSE.
CADHOST_API BOOL WINAPI PathIsDirectoryW(LPCWSTR path);
// The relative path from one end to the other into a buffer of MAX_PATH
// characters; each end is a folder when its attribute has
// FILE_ATTRIBUTE_DIRECTORY, else a file, which counts from its folder. The
// result begins with "./" or "../": "./notes.txt", "./sub/notes.txt",
// "../data/notes.txt". FALSE where the platform has no common root (two
// drives): the ends share nothing but "/", one is relative and the other
// not, either is empty, or the result would not fit. Names compare with
// regard to case, as the host's files do; ends are taken as written, with
// no "." or ".." resolved.
CADHOST_API BOOL WINAPI PathRelativePathToW(LPWSTR path, LPCWSTR from, DWORD fromAttributes, LPCWSTR to,
                                            DWORD toAttributes);
}

#define PathRemoveFileSpec PathRemoveFileSpecW
#define PathAddBackslash PathAddBackslashW
#define PathCombine PathCombineW
#define PathFileExists PathFileExistsW
#define PathFindFileName PathFindFileNameW
#define PathIsRelative PathIsRelativeW
#define PathIsDirectory PathIsDirectoryW
#define PathRelativePathTo PathRelativePathToW
