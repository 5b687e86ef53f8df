// The command stack: commands of the host and of modules, by group, global
// and local name. Names compare without regard to case.
#pragma once

#include <accmd.h>

#include <string>
#include <vector>

namespace cadhost {

class CommandStack : public AcEdCommandStack {
public:
    struct Command {
        std::wstring group, global, local;
        Adesk::Int32 flags = 0;
        AcRxFunctionPtr function = nullptr;
        AcEdUIContext* uiContext = nullptr;
        int functionCode = -1;
        HINSTANCE resource = nullptr;
    };

    Acad::ErrorStatus addCommand(const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* uiContext = nullptr,
                                 int functionCode = -1, HINSTANCE resourceHandle = nullptr,
                                 AcEdCommand** command = nullptr) override;
    Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) override;
    Acad::ErrorStatus removeGroup(const ACHAR* groupName) override;

    // The command for what a user types: a global name with its leading
    // underscore (and the dot that asks for the built-in one), a global name
    // without, or a local name. The most recently added match wins.
    const Command* Lookup(const std::wstring& typed) const;
    const std::vector<Command>& Commands() const { return m_commands; }

private:
    std::vector<Command> m_commands;  // in the order of adding
};

}  // namespace cadhost
