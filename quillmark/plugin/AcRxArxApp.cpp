#include "plugin/AcRxArxApp.h"
#include "plugin/ModuleState.h"

#include <cwchar>

// The tables exist in the module even when nothing registers in them; a
// null slot is skipped by every walk.
ACRX_TABLE_ENTRY(ARXCOMMA) CommandEntry* g_arxCommaNull = nullptr;
ACRX_TABLE_ENTRY(DBXCUSTO) CustomClassEntry* g_dbxCustoNull = nullptr;
ACRX_TABLE_ENTRY(ADSSYMBO) LispFunctionEntry* g_adsSymboNull = nullptr;

namespace {

const int kNameBufferLength = 132;

// The name of an entry: its own, or its string of the module's table.
const ACHAR* EntryName(const ACHAR* name, UINT stringId, HINSTANCE instance, ACHAR* buffer) {
    if (name) return name;
    buffer[0] = L'\0';
    ::LoadStringW(instance, stringId, buffer, kNameBufferLength);
    return buffer;
}

}  // namespace

AcRx::AppRetCode AcRxDbxApp::OnInitApp(void* pkt) {
    moduleInstance = _hdllInstance;
    AcRxDynamicLinker* linker = acrxDynamicLinker;
    if (unlocked && linker) linker->unlockApplication(pkt);
    if (mdiAware && linker) linker->registerAppMDIAware(pkt);

    RegisterServerComponents();
    bool anyInitialised = false;
    for (CustomClassEntry** slot = __start_DBXCUSTO; slot < __stop_DBXCUSTO; ++slot) {
        CustomClassEntry* entry = *slot;
        if (!entry) continue;
        entry->init();
        entry->initialized = true;
        anyInitialised = true;
    }
    if (anyInitialised) acrxBuildClassHierarchy();
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnUnloadApp(void* pkt) {
    for (CustomClassEntry** slot = __start_DBXCUSTO; slot < __stop_DBXCUSTO; ++slot) {
        CustomClassEntry* entry = *slot;
        if (!entry || !entry->initialized) continue;
        // Derived classes go before the class they derive from.
        AcRxClass* rxClass = entry->desc();
        for (CustomClassEntry** other = __start_DBXCUSTO; other < __stop_DBXCUSTO; ++other) {
            if (*other && *other != entry && (*other)->initialized && (*other)->desc()->isDerivedFrom(rxClass)) {
                deleteAcRxClass((*other)->desc());
                (*other)->initialized = false;
            }
        }
        deleteAcRxClass(rxClass);
        entry->initialized = false;
    }
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnInitApp(void* pkt) {
    AcRx::AppRetCode result = AcRxDbxApp::OnInitApp(pkt);
    AcEdCommandStack* commands = acedRegCmds;
    for (CommandEntry** slot = __start_ARXCOMMA; slot < __stop_ARXCOMMA; ++slot) {
        CommandEntry* entry = *slot;
        if (!entry || !commands) continue;
        ACHAR buffer[kNameBufferLength];
        const ACHAR* localName = EntryName(entry->localName, entry->stringId, moduleInstance, buffer);
        HINSTANCE resource = (entry->flags & ACRX_CMD_SESSION) ? nullptr : moduleInstance;
        commands->addCommand(entry->groupName, entry->globalName, localName, entry->flags, entry->function,
                             entry->uiContext, -1, resource, nullptr);
    }
    return result;
}

AcRx::AppRetCode AcRxArxApp::OnUnloadApp(void* pkt) {
    AcRxDbxApp::OnUnloadApp(pkt);
    AcEdCommandStack* commands = acedRegCmds;
    for (CommandEntry** slot = __start_ARXCOMMA; slot < __stop_ARXCOMMA; ++slot) {
        if (*slot && commands) commands->removeCmd((*slot)->groupName, (*slot)->globalName);
    }
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnLoadDrawing(void* pkt) {
    int counter = 0;
    for (LispFunctionEntry** slot = __start_ADSSYMBO; slot < __stop_ADSSYMBO; ++slot) {
        LispFunctionEntry* entry = *slot;
        if (!entry) continue;
        ACHAR buffer[kNameBufferLength];
        acedDefun(EntryName(entry->name, entry->stringId, moduleInstance, buffer), counter);
        if (entry->registerFunction) acedRegFunc(entry->function, counter);
        ++counter;
    }
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnUnloadDrawing(void* pkt) {
    int counter = 0;
    for (LispFunctionEntry** slot = __start_ADSSYMBO; slot < __stop_ADSSYMBO; ++slot) {
        LispFunctionEntry* entry = *slot;
        if (!entry) continue;
        ACHAR buffer[kNameBufferLength];
        acedUndef(EntryName(entry->name, entry->stringId, moduleInstance, buffer), counter);
        ++counter;
    }
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnInvokeFunction(void* pkt) {
    int code = acedGetFunCode();
    int counter = 0;
    for (LispFunctionEntry** slot = __start_ADSSYMBO; slot < __stop_ADSSYMBO; ++slot) {
        LispFunctionEntry* entry = *slot;
        if (!entry) continue;
        if (counter == code) {
            entry->function();
            break;
        }
        ++counter;
    }
    return AcRx::kRetOK;
}

AcRx::AppRetCode DispatchAppMessage(AcRxDbxApp& app, AcRx::AppMsgCode msg, void* pkt) {
    switch (static_cast<int>(msg)) {
    case AcRx::kNullMsg: return app.OnNullMessage(pkt);
    case AcRx::kInitAppMsg: return app.OnInitApp(pkt);
    case AcRx::kUnloadAppMsg: return app.OnUnloadApp(pkt);
    case AcRx::kLoadDwgMsg: return app.OnLoadDrawing(pkt);
    case AcRx::kUnloadDwgMsg: return app.OnUnloadDrawing(pkt);
    case AcRx::kInvkSubrMsg: return app.OnInvokeFunction(pkt);
    case AcRx::kCfgMsg: return app.OnConfigure(pkt);
    case AcRx::kEndMsg: return app.OnEnd(pkt);
    case AcRx::kQuitMsg: return app.OnQuit(pkt);
    case AcRx::kSaveMsg: return app.OnSave(pkt);
    case AcRx::kDependencyMsg: return app.OnDependency(pkt);
    case AcRx::kNoDependencyMsg: return app.OnNoDependency(pkt);
    case AcRx::kOleUnloadAppMsg: return app.OnOleUnload(pkt);
    case AcRx::kPreQuitMsg: return app.OnPreQuit(pkt);
    case AcRx::kInitDialogMsg: return app.OnInitDialogMessage(pkt);
    case AcRx::kEndDialogMsg: return app.OnEndDialogMessage(pkt);
    default: return AcRx::kRetOK;
    }
}
