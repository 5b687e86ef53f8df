#include "pages/AsdkTextFileFieldOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The page's controls, state and handlers are not built yet: it composes
// the code of an empty page and reads no more of a field than its data item.

IMPLEMENT_DYNAMIC(AsdkTextFileFieldOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkTextFileFieldOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkTextFileFieldOptionDialog::AsdkTextFileFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkTextFileFieldOptionDialog::~AsdkTextFileFieldOptionDialog() = default;

BOOL AsdkTextFileFieldOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    MakeChildPage(*this, parent);
    return TRUE;
}

CString AsdkTextFileFieldOptionDialog::GetFieldCode() {
    return ComposeTextFileFieldCode(CString());
}

BOOL AsdkTextFileFieldOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"TextField Data", item);
}
