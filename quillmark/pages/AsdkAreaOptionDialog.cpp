#include "pages/AsdkAreaOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The page's controls, state and handlers are not built yet: it composes
// the code of an empty page and reads no more of a field than its data item.

IMPLEMENT_DYNAMIC(AsdkAreaOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkAreaOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkAreaOptionDialog::AsdkAreaOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkAreaOptionDialog::~AsdkAreaOptionDialog() = default;

BOOL AsdkAreaOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    return CAdUiDialog::Create(IDD, parent);
}

CString AsdkAreaOptionDialog::GetFieldCode() {
    CStringArray handles;
    return ComposeObjectsFieldCode(QM_EVALUATOR_AREA, handles, CString());
}

BOOL AsdkAreaOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"AcArea Data", item);
}
