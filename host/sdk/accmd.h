// The command stack: commands by group, global and local name.
#pragma once

#include "rxdict.h"

typedef void (*AcRxFunctionPtr)();
class AcEdUIContext;
class AcEdCommand;

#define ACRX_CMD_MODAL 0x00000000
#define ACRX_CMD_TRANSPARENT 0x00000001
#define ACRX_CMD_USEPICKSET 0x00000002
#define ACRX_CMD_REDRAW 0x00000004
#define ACRX_CMD_NOPERSPECTIVE 0x00000008
#define ACRX_CMD_NOMULTIPLE 0x00000010
#define ACRX_CMD_NOTILEMODE 0x00000020
#define ACRX_CMD_NOPAPERSPACE 0x00000040
// Bit 21: the command runs in the application context, without a resource
// handle of its module.
#define ACRX_CMD_SESSION 0x00200000

class CADHOST_API AcEdCommandStack : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommandStack)
    virtual Acad::ErrorStatus addCommand(const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName,
                                         Adesk::Int32 flags, AcRxFunctionPtr function,
                                         AcEdUIContext* uiContext = nullptr, int functionCode = -1,
                                         HINSTANCE resourceHandle = nullptr, AcEdCommand** command = nullptr) = 0;
    virtual Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) = 0;
    virtual Acad::ErrorStatus removeGroup(const ACHAR* groupName) = 0;
};

#define acedRegCmds AcEdCommandStack::cast(acrxSysRegistry()->at(ACRX_COMMAND_DOCK))
