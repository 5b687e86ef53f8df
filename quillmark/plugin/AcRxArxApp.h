// The application classes: the base that answers every application message
// with nothing, and the walks over the registration tables that the linker
// gathers from the module's own sections.
#pragma once

#include "StdAfx.h"

// A command of the ARXCOMMA table.
struct CommandEntry {
    const ACHAR* groupName;
    const ACHAR* globalName;
    const ACHAR* localName;  // null: loaded from the string table by stringId
    Adesk::Int32 flags;
    AcRxFunctionPtr function;
    AcEdUIContext* uiContext;
    UINT stringId;
};

// A function of the ADSSYMBO table, callable from expressions.
struct LispFunctionEntry {
    const ACHAR* name;  // null: loaded from the string table by stringId
    int (*function)();
    bool registerFunction;  // also acedRegFunc
    UINT stringId;
};

// A custom class of the DBXCUSTO table.
struct CustomClassEntry {
    AcRxClass* (*desc)();
    void (*init)();
    bool initialized;
};

// Puts an entry into one of the three tables.
#define ACRX_TABLE_ENTRY(table) __attribute__((section(#table), used, retain))

extern "C" {
extern CommandEntry* __start_ARXCOMMA[] __attribute__((visibility("hidden")));
extern CommandEntry* __stop_ARXCOMMA[] __attribute__((visibility("hidden")));
extern CustomClassEntry* __start_DBXCUSTO[] __attribute__((visibility("hidden")));
extern CustomClassEntry* __stop_DBXCUSTO[] __attribute__((visibility("hidden")));
extern LispFunctionEntry* __start_ADSSYMBO[] __attribute__((visibility("hidden")));
extern LispFunctionEntry* __stop_ADSSYMBO[] __attribute__((visibility("hidden")));
}

class AcRxDbxApp {
public:
    AcRxDbxApp() = default;
    virtual ~AcRxDbxApp() = default;

    virtual AcRx::AppRetCode OnInitApp(void* pkt);
    virtual AcRx::AppRetCode OnUnloadApp(void* pkt);
    virtual AcRx::AppRetCode OnLoadDrawing(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnUnloadDrawing(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnInvokeFunction(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnConfigure(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnEnd(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnQuit(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnSave(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnDependency(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnNoDependency(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnOleUnload(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnPreQuit(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnInitDialogMessage(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnEndDialogMessage(void* pkt) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode OnNullMessage(void* pkt) { return AcRx::kRetOK; }
    virtual void RegisterServerComponents() = 0;

    HINSTANCE moduleInstance = nullptr;
    bool unlocked = true;
    bool mdiAware = true;
};

class AcRxArxApp : public AcRxDbxApp {
public:
    AcRx::AppRetCode OnInitApp(void* pkt) override;
    AcRx::AppRetCode OnUnloadApp(void* pkt) override;
    AcRx::AppRetCode OnLoadDrawing(void* pkt) override;
    AcRx::AppRetCode OnUnloadDrawing(void* pkt) override;
    AcRx::AppRetCode OnInvokeFunction(void* pkt) override;
};

// Hands a message to the operation that answers it; messages above 15 are
// answered with 0 and do nothing.
AcRx::AppRetCode DispatchAppMessage(AcRxDbxApp& app, AcRx::AppMsgCode msg, void* pkt);
