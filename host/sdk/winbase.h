// What the operating system says of itself: its version record, its
// message texts and the local memory they come in.
#pragma once

#include <cstdarg>

#include "windows.h"

#define VER_PLATFORM_WIN32s 0
#define VER_PLATFORM_WIN32_WINDOWS 1
#define VER_PLATFORM_WIN32_NT 2

#define VER_NT_WORKSTATION 0x0000001
#define VER_NT_DOMAIN_CONTROLLER 0x0000002
#define VER_NT_SERVER 0x0000003

#define VER_SUITE_SMALLBUSINESS 0x00000001
#define VER_SUITE_ENTERPRISE 0x00000002
#define VER_SUITE_BACKOFFICE 0x00000004
#define VER_SUITE_TERMINAL 0x00000010
#define VER_SUITE_DATACENTER 0x00000080
#define VER_SUITE_PERSONAL 0x00000200

typedef struct _OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];  // the service pack text
} OSVERSIONINFOW, *LPOSVERSIONINFOW;

typedef struct _OSVERSIONINFOEXW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
} OSVERSIONINFOEXW, *LPOSVERSIONINFOEXW;

typedef OSVERSIONINFOW OSVERSIONINFO;
typedef OSVERSIONINFOEXW OSVERSIONINFOEX;

extern "C" {
// Fills the record whose size dwOSVersionInfoSize names: the short one or
// the extended one. FALSE for any other size. The host answers for the
// system it runs on: the kernel's version numbers, and the system's own
// name where the platform puts its service pack text.
CADHOST_API BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW versionInfo);
}

#define GetVersionEx GetVersionExW

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
