#include "pages/AsdkTableCellFieldOptionDialog.h"

#include <acedads.h>
#include <dbents.h>
#include <dbtable.h>

#include "Product.h"
#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "plugin/ModuleState.h"

namespace {

const ACHAR kCellPrompt[] = L"\nSelect table cell:";
const ACHAR kCellData[] = L"TableCell Data";
const int kHandleBufferLength = 260;

}  // namespace

IMPLEMENT_DYNAMIC(AsdkTableCellFieldOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkTableCellFieldOptionDialog, CAcFdUiFieldOptionDialog)
    ON_BN_CLICKED(IDC_PICK_CELL, &AsdkTableCellFieldOptionDialog::OnPickCell)
END_MESSAGE_MAP()

AsdkTableCellFieldOptionDialog::AsdkTableCellFieldOptionDialog(CAcFdUiFieldDialogHook* hook,
                                                               CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance) {}

AsdkTableCellFieldOptionDialog::~AsdkTableCellFieldOptionDialog() = default;

void AsdkTableCellFieldOptionDialog::DoDataExchange(CDataExchange* pDX) {
    CAcFdUiFieldOptionDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_PREVIEW, m_preview);
}

BOOL AsdkTableCellFieldOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    MakeChildPage(*this, parent);
    return TRUE;
}

CString AsdkTableCellFieldOptionDialog::GetFieldCode() {
    CString name;
    if (m_hWnd) GetDlgItemText(IDC_CELL_NAME, name);
    return ComposeTableCellFieldCode(name);
}

void AsdkTableCellFieldOptionDialog::SetCellName(const CString& name) {
    if (m_hWnd) SetDlgItemText(IDC_CELL_NAME, name);
    CAcFdUiFieldDialogHook* hook = GetFieldDialogHook();
    if (hook) hook->UpdateFieldCode();
}

CString AsdkTableCellFieldOptionDialog::MakeCellReference(int row, int column) {
    if (row < 1 || column < 1) {
        MessageBox(QM_MESSAGE_CELL_INDEX, QM_MESSAGE_TITLE, MB_OK);
        return CString();
    }
    // Two letters are the limit: a column beyond ZZ has no name.
    return MakeCellName(row, column);
}

BOOL AsdkTableCellFieldOptionDialog::LoadField(AcDbField* field) {
    if (!field) return FALSE;
    CString name;
    if (!ReadTextDataItem(field, kCellData, name)) return FALSE;
    SetCellName(name);
    AcFdFieldValue value;
    AcString preview;
    if (field->getValue(value) == Acad::eOk) preview = value.format(AcValue::kIgnoreMtextFormat);
    if (m_preview.m_hWnd) m_preview.SetWindowText(preview.kwszPtr());
    return TRUE;
}

void AsdkTableCellFieldOptionDialog::OnPickCell() {
    CAcFdUiFieldDialog* fieldDialog = GetFieldDialog();
    if (fieldDialog) fieldDialog->BeginEditorCommand();
    ads_point picked = {0, 0, 0};
    int result = acedGetPoint(nullptr, kCellPrompt, picked);
    if (fieldDialog) fieldDialog->CompleteEditorCommand(1);
    if (result != RTNORM) return;

    // Every table of the drawing, in any space; the owner test below keeps
    // those of the current space.
    resbuf* filter = acutBuildList(RTDXF0, L"ACAD_TABLE", 0);
    ads_name tables;
    int selected = acedSSGet(L"X", nullptr, nullptr, filter, tables);
    acutRelRb(filter);
    if (selected != RTNORM) return;
    Adesk::Int32 length = 0;
    if (acedSSLength(tables, &length) != RTNORM || length <= 0) {
        acedSSFree(tables);
        return;
    }

    AcGeVector3d viewDirection = AcGeVector3d::kZAxis;
    AcDbViewport* viewport = nullptr;
    if (acdbOpenObject(viewport, acedGetCurViewportObjectId(), AcDb::kForRead) == Acad::eOk) {
        viewDirection = viewport->viewDirection();
        viewport->close();
    }

    ACHAR handleText[kHandleBufferLength] = L"";
    AcString cellText;
    int row = 0, column = 0;
    bool hit = false;
    AcGePoint3d point(picked[0], picked[1], picked[2]);
    AcDbObjectId currentSpace = acdbHostApplicationServices()->workingDatabase()->currentSpaceId();
    for (Adesk::Int32 i = 0; i < length && !hit; ++i) {
        ads_name member;
        AcDbObjectId id;
        AcDbTable* table = nullptr;
        if (acedSSName(tables, i, member) != RTNORM || acdbGetObjectId(id, member) != Acad::eOk ||
            acdbOpenObject(table, id, AcDb::kForRead) != Acad::eOk)
            continue;
        if (table->ownerId() != currentSpace ||
            !table->hitTest(point, viewDirection, 0.0, 0.0, row, column)) {
            table->close();
            continue;
        }
        AcDbHandle handle;
        table->getAcDbHandle(handle);
        handle.getIntoAsciiBuffer(handleText, kHandleBufferLength);
        table->textString(row, column, AcDbTable::kIgnoreMtextFormat, cellText);
        table->close();
        hit = true;
    }
    acedSSFree(tables);

    if (hit && row >= 0 && column >= 0 && handleText[0] != L'\0') {
        CString reference = MakeCellReference(row + 1, column + 1);
        if (!reference.IsEmpty()) {
            SetCellName(ComposeTableCellReference(handleText, reference));
            if (m_preview.m_hWnd) m_preview.SetWindowText(cellText.kwszPtr());
            return;
        }
    }
    SetCellName(CString());
    if (m_preview.m_hWnd) m_preview.SetWindowText(L"");
}
