// The shell's launching of documents: a web address, a mail address or a
// file is handed to whatever the desktop opens it with.
#pragma once

#include "windows.h"

// Results of ShellExecuteW at or below 32 are errors.
#define SE_ERR_FNF 2
#define SE_ERR_ACCESSDENIED 5
#define SE_ERR_OOM 8
#define SE_ERR_NOASSOC 31

extern "C" {
// Opens a target with the verb ("open"); answers a value above 32 when the
// target was handed on, else an error code. The host prints and records
// every target; it opens them only when it was asked to launch.
CADHOST_API HINSTANCE WINAPI ShellExecuteW(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters,
                                           LPCWSTR directory, INT showCommand);
}

#define ShellExecute ShellExecuteW
