#include "pages/AsdkLengthOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The page's controls, state and handlers are not built yet: it composes
// the code of an empty page and reads no more of a field than its data item.

IMPLEMENT_DYNAMIC(AsdkLengthOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkLengthOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkLengthOptionDialog::AsdkLengthOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkLengthOptionDialog::~AsdkLengthOptionDialog() = default;

BOOL AsdkLengthOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    return CAdUiDialog::Create(IDD, parent);
}

CString AsdkLengthOptionDialog::GetFieldCode() {
    CStringArray handles;
    return ComposeObjectsFieldCode(QM_EVALUATOR_LENGTH, handles, CString());
}

BOOL AsdkLengthOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"AcLength Data", item);
}
