// The platform's calls on resources: finding them, loading strings, and the
// framework's choice of the handle that holds a resource.
#include <afxwin.h>

#include <algorithm>
#include <cwchar>

#include "app/Host.h"
#include "app/Modules.h"
#include "ui/resources/ModuleResources.h"
#include "ui/resources/ResourceLookup.h"

namespace cadhost::ui {

Found<DialogTemplate> FindDialogTemplate(HINSTANCE module, LPCWSTR name) {
    Found<DialogTemplate> found;
    std::optional<ResourceName> key = ResourceName::FromPointer(name);
    if (!key) return found;
    found.script = ResourcesOf(module);
    if (found.script) found.item = found.script->FindDialog(*key);
    return found;
}

Found<MenuTemplate> FindMenuTemplate(HINSTANCE module, LPCWSTR name) {
    Found<MenuTemplate> found;
    std::optional<ResourceName> key = ResourceName::FromPointer(name);
    if (!key) return found;
    found.script = ResourcesOf(module);
    if (found.script) found.item = found.script->FindMenu(*key);
    return found;
}

HINSTANCE HostResourceHandle() { return ModuleTable::Instance().Host(); }

}  // namespace cadhost::ui

using namespace cadhost::ui;

extern "C" {

HRSRC WINAPI FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type) {
    std::optional<ResourceName> key = ResourceName::FromPointer(name);
    std::optional<ResourceName> kind = ResourceName::FromPointer(type);
    std::shared_ptr<const ResourceScript> script = ResourcesOf(module);
    if (!key || !kind || !script || !script->Has(*key, *kind)) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    // The handle only says that the resource is there; the host reads
    // templates through the module's script.
    return reinterpret_cast<HRSRC>(const_cast<ResourceScript*>(script.get()));
}

int WINAPI LoadStringW(HINSTANCE instance, UINT id, LPWSTR buffer, int bufferMax) {
    std::shared_ptr<const ResourceScript> script = ResourcesOf(instance);
    const std::wstring* text = script ? script->FindString(id) : nullptr;
    if (!buffer) return 0;
    if (!text) {
        if (bufferMax > 0) buffer[0] = L'\0';
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return 0;
    }
    if (bufferMax == 0) {
        // The platform's way to read a string in place: the buffer receives
        // a pointer to it. The module's resources outlive the caller's use.
        *reinterpret_cast<const wchar_t**>(buffer) = text->c_str();
        return static_cast<int>(text->size());
    }
    if (bufferMax < 0) return 0;
    int n = static_cast<int>(std::min<size_t>(text->size(), static_cast<size_t>(bufferMax - 1)));
    std::wmemcpy(buffer, text->data(), static_cast<size_t>(n));
    buffer[n] = L'\0';
    return n;
}

HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type) {
    HINSTANCE current = AfxGetResourceHandle();
    if (FindResourceW(current, name, type)) return current;
    HINSTANCE host = HostResourceHandle();
    if (host != current && FindResourceW(host, name, type)) return host;
    return current;
}
}
