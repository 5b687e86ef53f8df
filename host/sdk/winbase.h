// What the operating system says of itself: its version record.
#pragma once

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
