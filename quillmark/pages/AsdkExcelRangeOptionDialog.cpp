#include "pages/AsdkExcelRangeOptionDialog.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

// The page's controls, state and handlers are not built yet: it composes
// the code of an empty page and reads no more of a field than its data item.

IMPLEMENT_DYNAMIC(AsdkExcelRangeOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkExcelRangeOptionDialog, CAcFdUiFieldOptionDialog)
END_MESSAGE_MAP()

AsdkExcelRangeOptionDialog::AsdkExcelRangeOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkExcelRangeOptionDialog::~AsdkExcelRangeOptionDialog() = default;

BOOL AsdkExcelRangeOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    MakeChildPage(*this, parent);
    return TRUE;
}

CString AsdkExcelRangeOptionDialog::GetFieldCode() {
    return ComposeExcelCellFieldCode(CString(), CString(), CString(), CString());
}

BOOL AsdkExcelRangeOptionDialog::LoadField(AcDbField* field) {
    CString item;
    return ReadTextDataItem(field, L"ExcelCell Data", item);
}
