#include "pages/AsdkExcelRangeOptionDialog.h"

#include <afxdlgs.h>
#include <comdef.h>

#include "ArxUtils/ExcelUtils.h"
#include "Product.h"
#include "fieldcode/FieldCodeForms.h"
#include "pages/PageSupport.h"
#include "pages/PathType.h"
#include "plugin/ModuleState.h"

IMPLEMENT_DYNAMIC(AsdkExcelRangeOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkExcelRangeOptionDialog, CAcFdUiFieldOptionDialog)
    ON_BN_CLICKED(IDC_BROWSE, &AsdkExcelRangeOptionDialog::OnBrowse)
    ON_BN_CLICKED(IDC_ACTIVE_CELL, &AsdkExcelRangeOptionDialog::OnGetActiveCell)
    ON_EN_CHANGE(IDC_PATH, &AsdkExcelRangeOptionDialog::OnCellTextChanged)
    ON_EN_CHANGE(IDC_COLUMN, &AsdkExcelRangeOptionDialog::OnCellTextChanged)
    ON_EN_CHANGE(IDC_ROW, &AsdkExcelRangeOptionDialog::OnCellTextChanged)
    ON_CBN_SELCHANGE(IDC_PATH_TYPE, &AsdkExcelRangeOptionDialog::OnPathTypeChanged)
    ON_BN_CLICKED(IDC_RECENT_FILES, &AsdkExcelRangeOptionDialog::OnRecentFileMenu)
    ON_COMMAND_RANGE(ID_RECENT_FILE_FIRST, ID_RECENT_FILE_LAST, &AsdkExcelRangeOptionDialog::OnRecentFile)
END_MESSAGE_MAP()

AsdkExcelRangeOptionDialog::AsdkExcelRangeOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                                                       HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance),
      m_recentFiles(0, QM_EXCEL_RECENT_SECTION, QM_RECENT_ENTRY_FORMAT, QM_RECENT_CAPACITY,
                    QM_RECENT_DISPLAY_LENGTH) {}

AsdkExcelRangeOptionDialog::~AsdkExcelRangeOptionDialog() = default;

void AsdkExcelRangeOptionDialog::DoDataExchange(CDataExchange* pDX) {
    CAcFdUiFieldOptionDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_PATH_TYPE, m_pathType);
    DDX_Control(pDX, IDC_WORKSHEET, m_sheetName);
    DDX_Control(pDX, IDC_PATH, m_path);
    DDX_Control(pDX, IDC_COLUMN, m_column);
    DDX_Control(pDX, IDC_ROW, m_row);
}

BOOL AsdkExcelRangeOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    if (!CAdUiDialog::Create(IDD, parent)) return FALSE;
    MakeChildPage(*this, parent);
    return TRUE;
}

BOOL AsdkExcelRangeOptionDialog::OnInitDialog() {
    CAcFdUiFieldOptionDialog::OnInitDialog();
    FillPathTypes(m_pathType);
    m_recentFiles.ReadList();
    return TRUE;
}

void AsdkExcelRangeOptionDialog::OnCellTextChanged() {
    CAcFdUiFieldDialogHook* hook = GetFieldDialogHook();
    if (hook) hook->UpdateFieldCode();
}

CString AsdkExcelRangeOptionDialog::GetFieldCode() {
    CString path, sheet, column, row;
    if (m_hWnd) {
        m_path.GetWindowText(path);
        m_sheetName.GetWindowText(sheet);
        m_column.GetWindowText(column);
        m_row.GetWindowText(row);
    }
    // The composer leaves out the relative path step for an incomplete page.
    CRelativePathStep relative(this);
    bool makeRelative = m_pathType.m_hWnd && m_pathType.GetCurSel() == QM_PATH_TYPE_RELATIVE;
    return ComposeExcelCellFieldCode(path, sheet, column, row, makeRelative ? &relative : nullptr);
}

void AsdkExcelRangeOptionDialog::OnPathTypeChanged() { ChangePathType(this); }

void AsdkExcelRangeOptionDialog::OnRecentFileMenu() { ShowRecentFileMenu(this, m_recentFiles); }

void AsdkExcelRangeOptionDialog::OnRecentFile(UINT id) {
    CString path;
    if (!GetRecentFile(m_recentFiles, id, path)) return;
    m_path.SetWindowText(path);
    if (!PathFileExistsW(path)) {
        // The entry stays in the list; the page holds the path alone.
        CString message;
        message.Format(QM_MESSAGE_CANNOT_FIND, (const ACHAR*)path);
        MessageBox(message, QM_MESSAGE_TITLE, MB_OK | MB_ICONINFORMATION);
        m_sheetName.SetWindowText(L"");
        m_column.SetWindowText(L"");
        m_row.SetWindowText(L"");
        return;
    }
    FillFromWorkbook(path);
}

void AsdkExcelRangeOptionDialog::ReportException(CException* e) {
    e->ReportError(MB_OK);
    e->Delete();
}

void AsdkExcelRangeOptionDialog::ReportException(const _com_error& e) {
    MessageBox(e.ErrorMessage(), QM_MESSAGE_TITLE, MB_OK);
}

void AsdkExcelRangeOptionDialog::FillFromActiveCell() {
    m_sheetName.SetWindowText(ExcelUtils::m_worksheet.get_Name());
    CRange range(ExcelUtils::m_application.get_ActiveCell());
    m_column.SetWindowText(ExcelUtils::ColumnLetters(range.get_Column()));
    CString row;
    row.Format(L"%ld", static_cast<long>(range.get_Row()));
    m_row.SetWindowText(row);
    range.ReleaseDispatch();
}

void AsdkExcelRangeOptionDialog::FillFromWorkbook(const CString& path) {
    try {
        int opened = 0;
        ExcelSessionScope scope(opened, path, 0);
        // Without the workbook the other boxes keep what they held.
        if (opened) FillFromActiveCell();
    } catch (const _com_error& e) {
        ReportException(e);
    } catch (CException* e) {
        ReportException(e);
    }
}

void AsdkExcelRangeOptionDialog::OnBrowse() {
    CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, QM_EXCEL_FILTER, this);
    if (dialog.DoModal() != IDOK) return;
    CString path = dialog.GetPathName();
    m_path.SetWindowText(path);
    m_recentFiles.Add(path);
    m_recentFiles.WriteList();
    FillFromWorkbook(path);
}

void AsdkExcelRangeOptionDialog::OnGetActiveCell() {
    try {
        int opened = 0;
        // With no path the session binds what is active in Excel, or brings
        // up a new Excel with a new workbook.
        ExcelSessionScope scope(opened, nullptr, 0);
        if (!opened) return;
        CRange range(ExcelUtils::m_application.get_ActiveCell());
        LONG column = range.get_Column();
        LONG row = range.get_Row();
        m_path.SetWindowText(ExcelUtils::m_workbook.get_FullName());
        m_sheetName.SetWindowText(ExcelUtils::m_worksheet.get_Name());
        m_column.SetWindowText(ExcelUtils::ColumnLetters(column));
        CString text;
        text.Format(L"%ld", static_cast<long>(row));
        m_row.SetWindowText(text);
        range.ReleaseDispatch();
    } catch (const _com_error& e) {
        ReportException(e);
    } catch (CException* e) {
        ReportException(e);
    }
}

BOOL AsdkExcelRangeOptionDialog::LoadField(AcDbField* field) {
    CString data;
    if (!ReadTextDataItem(field, QM_EXCEL_CELL_DATA, data)) return FALSE;
    // Cut from the end, so that the colon of a drive letter stays in the path.
    int cellColon = data.ReverseFind(L':');
    if (cellColon <= 0) return FALSE;
    CString cell = data.Mid(cellColon + 1);
    CString head = data.Left(cellColon);
    int sheetColon = head.ReverseFind(L':');
    if (sheetColon <= 0) return FALSE;
    CString sheet = head.Mid(sheetColon + 1);
    CString path = head.Left(sheetColon);
    if (cell.IsEmpty() || sheet.IsEmpty() || path.IsEmpty()) return FALSE;
    if (!m_hWnd) return FALSE;
    // A relative path shows in full, with "Relative Path", so that composing
    // makes it relative again; one that cannot be resolved changes nothing.
    if (PathIsRelativeW(path)) {
        CString full;
        if (!ResolveRelativePath(path, full)) return FALSE;
        path = full;
        m_pathType.SetCurSel(QM_PATH_TYPE_RELATIVE);
    }

    m_path.SetWindowText(path);
    m_sheetName.SetWindowText(sheet);
    // A cell that cannot be read shows row 0 and column A.
    int row = 0, column = 0;
    ExcelUtils::ParseCellReference(cell, row, column);
    CString rowText;
    rowText.Format(L"%d", row);
    m_row.SetWindowText(rowText);
    m_column.SetWindowText(ExcelUtils::ColumnLetters(column));

    if (!PathFileExistsW(path)) return TRUE;
    try {
        int opened = 0;
        ExcelSessionScope scope(opened, path, 1);
        if (opened && ExcelUtils::SelectSheet(sheet)) {
            CRange range(ExcelUtils::m_worksheet.get_Range(COleVariant(cell), g_missingArgument));
            COleVariant selected;
            VARIANT answer = range.Select();
            selected.Attach(answer);
            range.ReleaseDispatch();
        }
    } catch (const _com_error& e) {
        ReportException(e);
    } catch (CException* e) {
        ReportException(e);
    }
    return TRUE;
}
