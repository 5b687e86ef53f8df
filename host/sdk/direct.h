// The runtime's current directory, as the platform's C runtime offers it.
#pragma once

#include "windows.h"

extern "C" {
// The current directory into buffer of maxLength characters, or, when
// buffer is null, into one the caller frees with free(). Null when it
// does not fit.
CADHOST_API wchar_t* _wgetcwd(wchar_t* buffer, int maxLength);
// Makes a folder the current directory: 0 on success, -1 (errno set) when
// it cannot.
CADHOST_API int _wchdir(const wchar_t* folder);
}

#define _tgetcwd _wgetcwd
#define _tchdir _wchdir
