#include "ole/ClassRegistry.h"

#include <tchar.h>

namespace cadhost::ole {

ClassRegistry& ClassRegistry::Instance() {
    static ClassRegistry registry;
    return registry;
}

ClassRegistry::ClassRegistry() {
    for (const InstalledClass& info : InstalledPrograms()) m_classes.push_back(Entry{info, true});
}

const InstalledClass* ClassRegistry::FindProgId(std::wstring_view progId) const {
    std::wstring name(progId);
    for (const Entry& entry : m_classes)
        if (entry.installed && _wcsicmp(entry.info.progId, name.c_str()) == 0) return &entry.info;
    return nullptr;
}

const InstalledClass* ClassRegistry::FindClsid(REFCLSID clsid) const {
    for (const Entry& entry : m_classes)
        if (entry.installed && IsEqualGUID(entry.info.clsid, clsid)) return &entry.info;
    return nullptr;
}

void ClassRegistry::SetInstalled(std::wstring_view progId, bool installed) {
    std::wstring name(progId);
    for (Entry& entry : m_classes)
        if (_wcsicmp(entry.info.progId, name.c_str()) == 0) entry.installed = installed;
}

bool ClassRegistry::IsInstalled(std::wstring_view progId) const { return FindProgId(progId) != nullptr; }

}  // namespace cadhost::ole

using cadhost::ole::ClassRegistry;

extern "C" {

HRESULT WINAPI CLSIDFromProgID(LPCOLESTR progId, LPCLSID clsid) {
    if (!progId || !clsid) return E_INVALIDARG;
    const auto* found = ClassRegistry::Instance().FindProgId(progId);
    if (!found) {
        *clsid = CLSID_NULL;
        return CO_E_CLASSSTRING;
    }
    *clsid = found->clsid;
    return S_OK;
}

HRESULT WINAPI CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID riid, LPVOID* object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    const auto* found = ClassRegistry::Instance().FindClsid(clsid);
    if (!found || !(context & (CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER))) return REGDB_E_CLASSNOTREG;
    return found->create(riid, object);
}

HRESULT WINAPI CoInitialize(LPVOID) { return S_FALSE; }  // the host's thread is ready already

void WINAPI CoUninitialize() {}

}  // extern "C"
