// The system's message texts and the local memory they come in.
#pragma once

#include <cstdarg>

#include "windows.h"

typedef void* HLOCAL;

#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_STRING 0x00000400
#define FORMAT_MESSAGE_FROM_HMODULE 0x00000800
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000
#define FORMAT_MESSAGE_ARGUMENT_ARRAY 0x00002000
#define FORMAT_MESSAGE_MAX_WIDTH_MASK 0x000000FF

#define LANG_NEUTRAL 0x00
#define SUBLANG_NEUTRAL 0x00
#define SUBLANG_DEFAULT 0x01
#define MAKELANGID(p, s) ((static_cast<WORD>(s) << 10) | static_cast<WORD>(p))

extern "C" {
// The system's text for a status code (FORMAT_MESSAGE_FROM_SYSTEM), ended
// by a line break as the system writes them. With
// FORMAT_MESSAGE_ALLOCATE_BUFFER, buffer is an LPWSTR* that receives a text
// to be freed with LocalFree. Answers the number of characters, or 0 with
// the last error ERROR_MR_MID_NOT_FOUND when the system has no text.
CADHOST_API DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPWSTR buffer,
                                        DWORD size, va_list* arguments);
// Frees local memory; answers null when it was freed.
CADHOST_API HLOCAL WINAPI LocalFree(HLOCAL memory);
}

#define FormatMessage FormatMessageW
