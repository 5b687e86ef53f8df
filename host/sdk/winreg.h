// The settings registry: a tree of keys holding named integer and string
// values, one tree per hive.
#pragma once

#include "windows.h"

struct HKEY__;
typedef HKEY__* HKEY;
typedef HKEY* PHKEY;
typedef DWORD REGSAM;

#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000000u)))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001u)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002u)))

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4

#define REG_OPTION_NON_VOLATILE 0x00000000L
#define REG_CREATED_NEW_KEY 0x00000001L
#define REG_OPENED_EXISTING_KEY 0x00000002L

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_CREATE_SUB_KEY 0x0004
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_NOTIFY 0x0010
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_ALL_ACCESS 0xF003F

struct SECURITY_ATTRIBUTES;
typedef SECURITY_ATTRIBUTES* LPSECURITY_ATTRIBUTES;

extern "C" {
CADHOST_API LONG WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM desired, PHKEY result);
CADHOST_API LONG WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD options,
                                        REGSAM desired, LPSECURITY_ATTRIBUTES security, PHKEY result,
                                        LPDWORD disposition);
CADHOST_API LONG WINAPI RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                         LPDWORD dataSize);
CADHOST_API LONG WINAPI RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type, const BYTE* data,
                                       DWORD dataSize);
CADHOST_API LONG WINAPI RegDeleteKeyW(HKEY key, LPCWSTR subKey);
CADHOST_API LONG WINAPI RegDeleteValueW(HKEY key, LPCWSTR valueName);
CADHOST_API LONG WINAPI RegCloseKey(HKEY key);
}

#define RegOpenKeyEx RegOpenKeyExW
#define RegCreateKeyEx RegCreateKeyExW
#define RegQueryValueEx RegQueryValueExW
#define RegSetValueEx RegSetValueExW
#define RegDeleteKey RegDeleteKeyW
#define RegDeleteValue RegDeleteValueW
