#include "plugin/QuillmarkApp.h"

#include "Product.h"
#include "plugin/ModuleState.h"
#include "plugin/hook/AsdkCustomOptionDialogHook.h"
#include "services/Registry.h"

CQuillmarkApp theApp;
AsdkCustomOptionDialogHook* theFieldDialogHook = nullptr;

namespace {
const int kQueueBufferLength = 1024;
}

int FindPullDownPlace() {
    CString query;
    int n = 1;
    query.Format(L"P%d.1=?", n);
    while (acedMenuCmd(query) == RTKWORD) {
        ++n;
        query.Format(L"P%d.1=?", n);
    }
    return n > 2 ? n - 2 : n;
}

bool ComposeMenuLoadExpression(const CString& menuFile, int place, CString& expression) {
    // A double quote would end the file name inside the expression early.
    if (menuFile.Find(L'"') >= 0) {
        acutPrintf(L"\nThe menu file path holds a double quote and cannot be loaded: %s.", (const ACHAR*)menuFile);
        return false;
    }
    CString menuCommand;
    menuCommand.Format(L"P%d=+%s.pop1", place, QM_MENU_GROUP);
    expression.Format(L"(command \"_.menuload\" \"%s\")(princ)\n(menucmd \"%s\")", (const ACHAR*)menuFile,
                      (const ACHAR*)menuCommand);
    expression.Replace(L'\\', L'/');
    if (expression.GetLength() >= kQueueBufferLength) {
        acutPrintf(L"\nThe menu file path is too long to load the menu: %s.", (const ACHAR*)menuFile);
        return false;
    }
    return true;
}

AcRx::AppRetCode CQuillmarkApp::OnInitApp(void* pkt) {
    AcRx::AppRetCode result = AcRxArxApp::OnInitApp(pkt);

    // The module's field types join the Field dialog; whether the manager
    // took the hook is not looked at.
    theFieldDialogHook = new AsdkCustomOptionDialogHook;
    if (CAcFdUiFieldManager* manager = AcFdUiGetFieldManager()) manager->RegisterFieldDialogHook(theFieldDialogHook);

    ACHAR moduleFile[MAX_PATH];
    ::GetModuleFileNameW(moduleInstance, moduleFile, MAX_PATH);
    ::PathRemoveFileSpecW(moduleFile);
    ACHAR evaluatorFile[MAX_PATH];
    if (::PathCombineW(evaluatorFile, moduleFile, QM_EVALUATOR_MODULE)) acedArxLoad(evaluatorFile);
    CRegistry::OpenSettings();

    if (acedIsMenuGroupLoaded(QM_MENU_GROUP)) return result;

    ACHAR folder[MAX_PATH];
    ::GetModuleFileNameW(moduleInstance, folder, MAX_PATH);
    ::PathRemoveFileSpecW(folder);
    ::PathAddBackslashW(folder);
    CString menuFile;
    menuFile.Format(L"%s%s%s", folder, QM_MENU_GROUP, QM_MENU_EXTENSION);
    if (!::PathFileExistsW(menuFile)) {
        acutPrintf(L"Failed to find the menu file: %s.", (const ACHAR*)menuFile);
        return result;
    }

    CString expression;
    if (!ComposeMenuLoadExpression(menuFile, FindPullDownPlace(), expression)) return result;
    ACHAR buffer[kQueueBufferLength];
    wcsncpy(buffer, expression, kQueueBufferLength - 1);
    buffer[kQueueBufferLength - 1] = L'\0';
    ads_queueexpr(buffer);
    return result;
}

AcRx::AppRetCode CQuillmarkApp::OnUnloadApp(void* pkt) {
    // The hook must not outlive the module's code: it leaves the Field
    // dialog before the module goes.
    if (theFieldDialogHook) {
        if (CAcFdUiFieldManager* manager = AcFdUiGetFieldManager())
            manager->UnregisterFieldDialogHook(theFieldDialogHook);
        delete theFieldDialogHook;
        theFieldDialogHook = nullptr;
    }
    return AcRxArxApp::OnUnloadApp(pkt);
}
