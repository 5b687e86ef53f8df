// Text macros of the host's C runtime: all text is wide.
#pragma once

#include <stdio.h>

#include "windows.h"

#define _T(x) L##x
#define _TEXT(x) L##x
#define TEXT(x) L##x

extern "C" {
// Whole-number and real conversion of the runtime: leading blanks, a sign,
// then as many characters as belong to the number; 0 when none do.
CADHOST_API int _wtoi(const wchar_t* text);
CADHOST_API long _wtol(const wchar_t* text);
CADHOST_API double _wtof(const wchar_t* text);
CADHOST_API int _wcsicmp(const wchar_t* a, const wchar_t* b);
CADHOST_API int _wcsnicmp(const wchar_t* a, const wchar_t* b, size_t count);

// The absolute form of a path, from the current directory, with "." and
// ".." resolved and "/" as separator (in a relative path a backslash
// separates too, as on the platform). Into
// absolutePath of maxLength characters, or, when that is null, into a
// buffer the caller frees with free(). Null when it does not fit.
CADHOST_API wchar_t* _wfullpath(wchar_t* absolutePath, const wchar_t* relativePath, size_t maxLength);
// Opens a file as fopen does; the name is wide. Null, with errno set, on failure.
CADHOST_API FILE* _wfopen(const wchar_t* fileName, const wchar_t* mode);
}

#define _ttoi _wtoi
#define _ttol _wtol
#define _tstof _wtof
#define _tcsicmp _wcsicmp
#define _tcslen wcslen
#define _tfullpath _wfullpath
#define _tfopen _wfopen

// The parts of a path for _wsplitpath: drive ("C:", or nothing), folder
// with its last separator, file name, and extension with its dot. Both
// separators, "/" and "\", count. A null part is not wanted; a part longer
// than its buffer is cut to fit.
#define _MAX_PATH 260
#define _MAX_DRIVE 3
#define _MAX_DIR 256
#define _MAX_FNAME 256
#define _MAX_EXT 256
extern "C" CADHOST_API void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname,
                                        wchar_t* ext);
