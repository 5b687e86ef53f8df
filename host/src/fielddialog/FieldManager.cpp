#include <AcFdUi.h>

#include "app/Host.h"
#include "app/Modules.h"

CAcFdUiFieldManager::~CAcFdUiFieldManager() = default;

namespace {

// The module that holds a hook's class: its table of virtual functions lies
// in that module's image.
HMODULE ModuleOf(const CAcFdUiFieldDialogHook* hook) {
    const void* table = *reinterpret_cast<const void* const*>(hook);
    return cadhost::ModuleTable::Instance().FromAddress(table);
}

}  // namespace

BOOL CAcFdUiFieldManager::RegisterFieldDialogHook(CAcFdUiFieldDialogHook* hook) {
    if (!hook) return FALSE;
    for (INT_PTR i = 0; i < m_hooks.GetSize(); ++i) {
        if (m_hooks[i].hook == hook) return FALSE;
    }
    m_hooks.Add(Entry{hook, ModuleOf(hook)});
    return TRUE;
}

BOOL CAcFdUiFieldManager::UnregisterFieldDialogHook(CAcFdUiFieldDialogHook* hook) {
    for (INT_PTR i = 0; hook && i < m_hooks.GetSize(); ++i) {
        if (m_hooks[i].hook == hook) {
            m_hooks.RemoveAt(i);
            return TRUE;
        }
    }
    return FALSE;
}

int CAcFdUiFieldManager::GetHookCount() const { return static_cast<int>(m_hooks.GetSize()); }

CAcFdUiFieldDialogHook* CAcFdUiFieldManager::GetHook(int index) const {
    return index >= 0 && index < GetHookCount() ? m_hooks[index].hook : nullptr;
}

int CAcFdUiFieldManager::DropHooksOfModule(HMODULE module) {
    int dropped = 0;
    for (INT_PTR i = m_hooks.GetSize() - 1; module && i >= 0; --i) {
        if (m_hooks[i].module == module) {
            m_hooks.RemoveAt(i);
            ++dropped;
        }
    }
    return dropped;
}

CAcFdUiFieldManager* AcFdUiGetFieldManager() {
    cadhost::Host* host = cadhost::Host::Current();
    return host ? &host->fieldManager() : nullptr;
}
