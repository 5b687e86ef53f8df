#include "app/ExternalFunctions.h"

#include <adslib.h>

#include <cwctype>

#include "app/Host.h"

namespace cadhost {
namespace {
std::wstring Upper(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(c));
    return text;
}
}  // namespace

bool ExternalFunctions::Define(const std::wstring& name, int code, void* app) {
    if (name.empty() || !app) return false;
    m_entries[Upper(name)] = Entry{app, code, nullptr};
    return true;
}

bool ExternalFunctions::Undefine(const std::wstring& name, int code) {
    auto it = m_entries.find(Upper(name));
    if (it == m_entries.end() || it->second.code != code) return false;
    m_entries.erase(it);
    return true;
}

bool ExternalFunctions::Register(int (*function)(), int code, void* app) {
    bool found = false;
    for (auto& [name, entry] : m_entries) {
        if (entry.app == app && entry.code == code) entry.function = function, found = true;
    }
    return found;
}

const ExternalFunctions::Entry* ExternalFunctions::Find(const std::wstring& name) const {
    auto it = m_entries.find(Upper(name));
    return it == m_entries.end() ? nullptr : &it->second;
}

void ExternalFunctions::Forget(void* app) {
    std::erase_if(m_entries, [app](const auto& item) { return item.second.app == app; });
}

}  // namespace cadhost

using cadhost::Host;

extern "C" {

int acedDefun(const ACHAR* name, int functionCode) {
    Host& host = Host::Require();
    return name && host.functions().Define(name, functionCode, host.linker().Dispatching()) ? RTNORM : RTERROR;
}

int acedUndef(const ACHAR* name, int functionCode) {
    return name && Host::Require().functions().Undefine(name, functionCode) ? RTNORM : RTERROR;
}

int acedRegFunc(int (*function)(), int functionCode) {
    Host& host = Host::Require();
    return function && host.functions().Register(function, functionCode, host.linker().Dispatching()) ? RTNORM
                                                                                                       : RTERROR;
}

int acedGetFunCode() {
    int code = Host::Require().functions().CurrentCode();
    return code < 0 ? RTERROR : code;
}

int acedRetVoid() { return RTNORM; }
}
