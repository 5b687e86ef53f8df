// Finding a template or menu in a module's resources, with the script that
// holds it kept alive for as long as the caller uses it.
#pragma once

#include <windows.h>

#include <memory>

#include "ui/resources/ResourceScript.h"

namespace cadhost::ui {

template <class T>
struct Found {
    std::shared_ptr<const ResourceScript> script;
    const T* item = nullptr;
    explicit operator bool() const { return item != nullptr; }
};

Found<DialogTemplate> FindDialogTemplate(HINSTANCE module, LPCWSTR name);
Found<MenuTemplate> FindMenuTemplate(HINSTANCE module, LPCWSTR name);

// The host's own resource handle: the bottom of the resource stack.
HINSTANCE HostResourceHandle();

}  // namespace cadhost::ui
