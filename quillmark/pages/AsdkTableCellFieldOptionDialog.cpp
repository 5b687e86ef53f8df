#include "pages/AsdkTableCellFieldOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The pick of a cell and the preview come with the page's handlers; the
// code is that of the cell reference in the box, empty until a pick.

IMPLEMENT_DYNAMIC(AsdkTableCellFieldOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkTableCellFieldOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkTableCellFieldOptionDialog::AsdkTableCellFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkTableCellFieldOptionDialog::~AsdkTableCellFieldOptionDialog() = default;

BOOL AsdkTableCellFieldOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    // The template is a pop-up window; inside the Field dialog it is a child.
    ModifyStyle(WS_POPUP | WS_CHILD | WS_THICKFRAME, 0);
    ModifyStyle(0, WS_CHILD);
    SetParent(parent);
    return TRUE;
}

CString AsdkTableCellFieldOptionDialog::GetFieldCode() {
    // The cell reference lives in the read-only box; without a window it is empty.
    CString reference;
    if (m_hWnd) GetDlgItemText(IDC_CELL_NAME, reference);
    return ComposeTableCellFieldCode(reference);
}

BOOL AsdkTableCellFieldOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"TableCell Data", item);
}
