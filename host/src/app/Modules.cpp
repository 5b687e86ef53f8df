#include "app/Modules.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>

#include "core/Utf8.h"

namespace cadhost {

ModuleTable& ModuleTable::Instance() {
    // Never destroyed: a module that stays mapped to the end of the process
    // hears of its detach after the static objects of this library are gone,
    // and it asks for its own record then.
    static ModuleTable* table = new ModuleTable;
    return *table;
}

HMODULE ModuleTable::FromAddress(const void* address) {
    Dl_info info{};
    if (!address || !dladdr(address, &info) || !info.dli_fbase) return nullptr;
    std::lock_guard lock(m_mutex);
    for (auto& record : m_records) {
        if (record->base == info.dli_fbase) return record.get();
    }
    auto record = std::make_unique<HINSTANCE__>();
    record->base = info.dli_fbase;
    std::error_code ec;
    std::filesystem::path path = info.dli_fname ? info.dli_fname : "";
    auto absolute = std::filesystem::absolute(path, ec);
    record->path = ec ? path : absolute.lexically_normal();
    m_records.push_back(std::move(record));
    return m_records.back().get();
}

HMODULE ModuleTable::Host() { return FromAddress(reinterpret_cast<const void*>(&ModuleTable::Instance)); }

HMODULE ModuleTable::Find(HMODULE module) const {
    std::lock_guard lock(m_mutex);
    for (auto& record : m_records) {
        if (record.get() == module) return module;
    }
    return nullptr;
}

HMODULE ModuleTable::FindByBase(const void* base) const {
    std::lock_guard lock(m_mutex);
    for (auto& record : m_records) {
        if (record->base == base) return record.get();
    }
    return nullptr;
}

void ModuleTable::Forget(HMODULE module) {
    std::lock_guard lock(m_mutex);
    std::erase_if(m_records, [module](const auto& record) { return record.get() == module; });
}

}  // namespace cadhost

extern "C" {

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR fileName, DWORD size) {
    auto& table = cadhost::ModuleTable::Instance();
    HMODULE record = module ? table.Find(module) : table.Host();
    if (!record || !fileName || size == 0) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    std::wstring path = cadhost::FromUtf8(record->path.string());
    // Like the platform: a name that does not fit is cut and still ended.
    DWORD n = static_cast<DWORD>(std::min<size_t>(path.size(), size - 1));
    std::wmemcpy(fileName, path.data(), n);
    fileName[n] = L'\0';
    return n;
}

BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR moduleName, HMODULE* module) {
    if (!module) return FALSE;
    *module = nullptr;
    auto& table = cadhost::ModuleTable::Instance();
    if (flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) {
        *module = table.FromAddress(reinterpret_cast<const void*>(moduleName));
    } else if (!moduleName) {
        *module = table.Host();
    }
    return *module != nullptr;
}

namespace {
thread_local DWORD lastError = 0;
}

DWORD WINAPI GetLastError() { return lastError; }
void WINAPI SetLastError(DWORD error) { lastError = error; }
}
