#include "app/SystemRegistry.h"

namespace cadhost {

AcRxObject* SystemRegistry::at(const ACHAR* key) const {
    if (!key) return nullptr;
    auto it = m_entries.find(key);
    return it == m_entries.end() ? nullptr : it->second;
}

AcRxObject* SystemRegistry::atPut(const ACHAR* key, AcRxObject* object) {
    if (!key) return nullptr;
    AcRxObject*& slot = m_entries[key];
    AcRxObject* previous = slot;
    slot = object;
    return previous;
}

AcRxObject* SystemRegistry::remove(const ACHAR* key) {
    if (!key) return nullptr;
    auto it = m_entries.find(key);
    if (it == m_entries.end()) return nullptr;
    AcRxObject* previous = it->second;
    m_entries.erase(it);
    return previous;
}

}  // namespace cadhost
