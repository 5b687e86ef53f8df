// The registry calls of the operating system interface over the host's
// settings store.
#include <winreg.h>

#include <cstring>

#include "app/Host.h"

namespace {

cadhost::SettingsStore& Store() { return cadhost::Host::Require().settings(); }

std::wstring Text(LPCWSTR text) { return text ? text : L""; }

LONG OpenOrCreate(HKEY key, LPCWSTR subKey, bool create, PHKEY result, LPDWORD disposition) {
    if (!result) return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    cadhost::Hive* hive = nullptr;
    long long parent = 0;
    if (!Store().Resolve(key, hive, parent)) return ERROR_INVALID_HANDLE;
    bool created = false;
    std::optional<long long> child = hive->Key(parent, Text(subKey), create, &created);
    if (!child) return create ? ERROR_ACCESS_DENIED : ERROR_FILE_NOT_FOUND;
    if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    *result = Store().OpenHandle(hive, *child);
    return ERROR_SUCCESS;
}

}  // namespace

extern "C" {

LONG WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM, PHKEY result) {
    return OpenOrCreate(key, subKey, false, result, nullptr);
}

LONG WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES,
                            PHKEY result, LPDWORD disposition) {
    return OpenOrCreate(key, subKey, true, result, disposition);
}

LONG WINAPI RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD dataSize) {
    cadhost::Hive* hive = nullptr;
    long long id = 0;
    if (!Store().Resolve(key, hive, id)) return ERROR_INVALID_HANDLE;
    std::optional<cadhost::Hive::Value> value = hive->Get(id, Text(valueName));
    if (!value) return ERROR_FILE_NOT_FOUND;
    if (type) *type = value->type;
    auto needed = static_cast<DWORD>(value->data.size());
    if (!data) {
        if (dataSize) *dataSize = needed;
        return ERROR_SUCCESS;
    }
    if (!dataSize) return ERROR_INVALID_PARAMETER;
    if (*dataSize < needed) {
        *dataSize = needed;
        return ERROR_MORE_DATA;
    }
    if (needed) std::memcpy(data, value->data.data(), needed);
    *dataSize = needed;
    return ERROR_SUCCESS;
}

LONG WINAPI RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD dataSize) {
    cadhost::Hive* hive = nullptr;
    long long id = 0;
    if (!Store().Resolve(key, hive, id)) return ERROR_INVALID_HANDLE;
    return hive->Set(id, Text(valueName), type, data, dataSize) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

LONG WINAPI RegDeleteKeyW(HKEY key, LPCWSTR subKey) {
    cadhost::Hive* hive = nullptr;
    long long id = 0;
    if (!Store().Resolve(key, hive, id)) return ERROR_INVALID_HANDLE;
    LONG error = ERROR_SUCCESS;
    hive->DeleteKey(id, Text(subKey), error);
    return error;
}

LONG WINAPI RegDeleteValueW(HKEY key, LPCWSTR valueName) {
    cadhost::Hive* hive = nullptr;
    long long id = 0;
    if (!Store().Resolve(key, hive, id)) return ERROR_INVALID_HANDLE;
    return hive->Delete(id, Text(valueName)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

LONG WINAPI RegCloseKey(HKEY key) {
    if (Store().HiveOf(key)) return ERROR_SUCCESS;
    return Store().CloseHandle(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
}
