// Basic types and calls of the host operating system interface, as the
// module sees them. Text is wide throughout (wchar_t).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cwchar>

#ifndef CADHOST_API
#define CADHOST_API __attribute__((visibility("default")))
#endif

#define WINAPI
#define CALLBACK
#define APIENTRY
#define CONST const

typedef int BOOL;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef uint32_t DWORD;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef unsigned int UINT;
typedef int INT;
typedef intptr_t INT_PTR;
typedef uintptr_t UINT_PTR;
typedef intptr_t LONG_PTR;
typedef uintptr_t ULONG_PTR;
typedef uintptr_t WPARAM;
typedef intptr_t LPARAM;
typedef intptr_t LRESULT;
typedef DWORD COLORREF;
typedef void* LPVOID;
typedef const void* LPCVOID;
typedef void* HANDLE;
typedef BYTE* LPBYTE;
typedef DWORD* LPDWORD;
typedef LONG HRESULT;

typedef wchar_t WCHAR;
typedef wchar_t TCHAR;
typedef WCHAR* LPWSTR;
typedef const WCHAR* LPCWSTR;
typedef TCHAR* LPTSTR;
typedef const TCHAR* LPCTSTR;
typedef char* LPSTR;
typedef const char* LPCSTR;

struct HINSTANCE__;
typedef HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

#define GET_MODULE_HANDLE_EX_FLAG_PIN 0x00000001
#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x00000002
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004

#define ERROR_SUCCESS 0L
#define ERROR_FILE_NOT_FOUND 2L
#define ERROR_ACCESS_DENIED 5L
#define ERROR_INVALID_HANDLE 6L
#define ERROR_NOT_ENOUGH_MEMORY 8L
#define ERROR_INVALID_PARAMETER 87L
#define ERROR_MORE_DATA 234L
#define ERROR_RESOURCE_NAME_NOT_FOUND 1814L

#define MAKEINTRESOURCEW(i) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
#define MAKEINTRESOURCE MAKEINTRESOURCEW
#define IS_INTRESOURCE(r) ((reinterpret_cast<ULONG_PTR>(r) >> 16) == 0)
typedef uintptr_t DWORD_PTR;
#define LOWORD(l) (static_cast<WORD>(static_cast<DWORD_PTR>(l) & 0xffff))
#define HIWORD(l) (static_cast<WORD>((static_cast<DWORD_PTR>(l) >> 16) & 0xffff))

extern "C" {
// Module handles. A module's handle is known from any address inside it.
CADHOST_API DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size);
CADHOST_API BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR moduleName, HMODULE* module);
CADHOST_API int WINAPI LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int bufferMax);
CADHOST_API DWORD WINAPI GetLastError();
CADHOST_API void WINAPI SetLastError(DWORD error);
}

#define GetModuleFileName GetModuleFileNameW
#define LoadString LoadStringW

// Files: what a path names. A file that is neither a folder nor a plain
// file (a device, a pipe) has FILE_ATTRIBUTE_DEVICE.
#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_DEVICE 0x00000040
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu

extern "C" {
// INVALID_FILE_ATTRIBUTES, with the last error set, when the path names
// nothing that can be reached.
CADHOST_API DWORD WINAPI GetFileAttributesW(LPCWSTR fileName);
}

#define GetFileAttributes GetFileAttributesW

#include "winreg.h"
#include "windef.h"
#include "wingdi.h"
#include "winuser.h"
#include "commdlg.h"
#include "winbase.h"
