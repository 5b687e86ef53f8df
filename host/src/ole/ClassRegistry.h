// The classes of the programs installed on the machine, by program id and
// class id: what CLSIDFromProgID and CoCreateInstance find.
#pragma once

#include <objbase.h>

#include <string>
#include <string_view>
#include <vector>

namespace cadhost::ole {

// Makes an object of the class (or hands out the one that a single-instance
// program serves), with one reference for the caller.
using ClassFactory = HRESULT (*)(REFIID riid, void** object);

struct InstalledClass {
    const wchar_t* progId;
    CLSID clsid;
    ClassFactory create;
};

// The programs that the machine has installed, in one list
// (InstalledPrograms.cpp).
const std::vector<InstalledClass>& InstalledPrograms();

class ClassRegistry {
public:
    static ClassRegistry& Instance();
    // An installed class by its program id (without regard to case) or its
    // class id; null when there is none or it is taken off the machine.
    const InstalledClass* FindProgId(std::wstring_view progId) const;
    const InstalledClass* FindClsid(REFCLSID clsid) const;
    // Takes a program off the machine, or puts it back.
    void SetInstalled(std::wstring_view progId, bool installed);
    bool IsInstalled(std::wstring_view progId) const;

private:
    ClassRegistry();
    struct Entry {
        InstalledClass info;
        bool installed = true;
    };
    std::vector<Entry> m_classes;
};

}  // namespace cadhost::ole
