#include "app/CommandStack.h"

#include <tchar.h>

#include <algorithm>

namespace cadhost {
namespace {
bool Same(const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) == 0; }
}  // namespace

Acad::ErrorStatus CommandStack::addCommand(const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName,
                                           Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* uiContext,
                                           int functionCode, HINSTANCE resourceHandle, AcEdCommand**) {
    if (!groupName || !*groupName || !globalName || !*globalName || !function) return Acad::eInvalidInput;
    for (const Command& c : m_commands) {
        if (Same(c.group, groupName) && Same(c.global, globalName)) return Acad::eDuplicateKey;
    }
    m_commands.push_back(Command{groupName, globalName, localName && *localName ? localName : globalName, flags,
                                 function, uiContext, functionCode, resourceHandle});
    return Acad::eOk;
}

Acad::ErrorStatus CommandStack::removeCmd(const ACHAR* groupName, const ACHAR* globalName) {
    if (!groupName || !globalName) return Acad::eInvalidInput;
    auto it = std::find_if(m_commands.begin(), m_commands.end(), [&](const Command& c) {
        return Same(c.group, groupName) && Same(c.global, globalName);
    });
    if (it == m_commands.end()) return Acad::eKeyNotFound;
    m_commands.erase(it);
    return Acad::eOk;
}

Acad::ErrorStatus CommandStack::removeGroup(const ACHAR* groupName) {
    if (!groupName) return Acad::eInvalidInput;
    size_t removed = std::erase_if(m_commands, [&](const Command& c) { return Same(c.group, groupName); });
    return removed ? Acad::eOk : Acad::eKeyNotFound;
}

const CommandStack::Command* CommandStack::Lookup(const std::wstring& typed) const {
    std::wstring name = typed;
    bool global = false;
    while (!name.empty() && (name[0] == L'_' || name[0] == L'.')) {
        global = global || name[0] == L'_';
        name.erase(0, 1);
    }
    if (name.empty()) return nullptr;
    for (auto it = m_commands.rbegin(); it != m_commands.rend(); ++it) {
        if (Same(it->global, name) || Same(it->global, L"_" + name) || Same(it->global, typed)) return &*it;
    }
    if (global) return nullptr;
    for (auto it = m_commands.rbegin(); it != m_commands.rend(); ++it) {
        if (Same(it->local, name)) return &*it;
    }
    return nullptr;
}

}  // namespace cadhost
