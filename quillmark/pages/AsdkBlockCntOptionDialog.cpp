#include "pages/AsdkBlockCntOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The page's controls, state and handlers are not built yet: it composes
// the code of an empty page and reads no more of a field than its data item.

IMPLEMENT_DYNAMIC(AsdkBlockCntOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkBlockCntOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkBlockCntOptionDialog::AsdkBlockCntOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkBlockCntOptionDialog::~AsdkBlockCntOptionDialog() = default;

BOOL AsdkBlockCntOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    return CAdUiDialog::Create(IDD, parent);
}

CString AsdkBlockCntOptionDialog::GetFieldCode() {
    BlockCountCodeState state;
    return ComposeBlockCountFieldCode(state);
}

BOOL AsdkBlockCntOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"AcBlockCount Data", item);
}
