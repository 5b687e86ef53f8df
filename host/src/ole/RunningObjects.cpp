#include "ole/RunningObjects.h"

#include <oleauto.h>

#include <map>

namespace cadhost::ole {
namespace {

struct Registration {
    CLSID clsid;
    IUnknown* object;
    bool strong;
};

// The table is the machine's: one for the process, as the platform has
// one, kept to the process's end.
std::map<DWORD, Registration>& Table() {
    static auto* table = new std::map<DWORD, Registration>;
    return *table;
}

DWORD s_next = 1;

}  // namespace

int RunningObjectCount() { return static_cast<int>(Table().size()); }

}  // namespace cadhost::ole

using cadhost::ole::Table;

extern "C" {

HRESULT WINAPI GetActiveObject(REFCLSID clsid, void*, IUnknown** unknown) {
    if (!unknown) return E_POINTER;
    *unknown = nullptr;
    for (const auto& [id, registration] : Table()) {
        if (IsEqualGUID(registration.clsid, clsid)) {
            registration.object->AddRef();
            *unknown = registration.object;
            return S_OK;
        }
    }
    return MK_E_UNAVAILABLE;
}

HRESULT WINAPI RegisterActiveObject(IUnknown* unknown, REFCLSID clsid, DWORD flags, DWORD* registration) {
    if (!unknown || !registration) return E_INVALIDARG;
    // A strong registration holds a reference until it is revoked.
    if (!(flags & ACTIVEOBJECT_WEAK)) unknown->AddRef();
    DWORD id = cadhost::ole::s_next++;
    Table()[id] = cadhost::ole::Registration{clsid, unknown, !(flags & ACTIVEOBJECT_WEAK)};
    *registration = id;
    return S_OK;
}

HRESULT WINAPI RevokeActiveObject(DWORD registration, void*) {
    auto found = Table().find(registration);
    if (found == Table().end()) return E_INVALIDARG;
    cadhost::ole::Registration revoked = found->second;
    Table().erase(found);
    if (revoked.strong) revoked.object->Release();
    return S_OK;
}

}  // extern "C"
