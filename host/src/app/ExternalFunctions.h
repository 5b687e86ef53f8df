// Functions that modules define for expressions, per drawing: the name, the
// function code and the module that answers a call.
#pragma once

#include <map>
#include <string>

namespace cadhost {

class ExternalFunctions {
public:
    struct Entry {
        void* app = nullptr;  // the module that defined it
        int code = 0;
        int (*function)() = nullptr;
    };
    bool Define(const std::wstring& name, int code, void* app);
    bool Undefine(const std::wstring& name, int code);
    bool Register(int (*function)(), int code, void* app);
    const Entry* Find(const std::wstring& name) const;
    // Drops what a module defined, when it goes.
    void Forget(void* app);
    void Clear() { m_entries.clear(); }
    int CurrentCode() const { return m_current; }
    void SetCurrentCode(int code) { m_current = code; }

private:
    std::map<std::wstring, Entry> m_entries;  // upper-case names
    int m_current = -1;
};

}  // namespace cadhost
