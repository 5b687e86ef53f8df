// The Excel Cell page: the workbook, sheet, column and row of the cell whose
// content the field shows. The user names the workbook by browsing, by
// typing or from the recent files; sheet, column and row come from the live
// Excel, which the page asks anew in each action and lets go of after it.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>
#include <comdef.h>

#include "pages/RecentFileListEx.h"
#include "resources/resource.h"

// The key under which the evaluator keeps the path, sheet and cell of the code.
#define QM_EXCEL_CELL_DATA L"ExcelCell Data"
#define QM_EXCEL_FILTER L"Microsoft Excel Files(*.xls)|*.xls||"
#define QM_MESSAGE_CANNOT_FIND L"Cannot find %s."

class AsdkExcelRangeOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkExcelRangeOptionDialog)
public:
    AsdkExcelRangeOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkExcelRangeOptionDialog() override;

    enum { IDD = IDD_EXCEL_PAGE };

    // The page's window, from the module's template, turned from a pop-up
    // into a child of the parent.
    BOOL Create(CWnd* parent) override;
    // The field code of the four boxes; with any of them empty the code with
    // nothing behind the evaluator id, and then no relative path is made.
    CString GetFieldCode();
    // Brings the page into the state of a stored field, and shows the linked
    // cell in Excel, the workbook opened for reading. Changes nothing when
    // the field's data is incomplete; a workbook that is gone or a sheet that
    // is gone pass without a message.
    BOOL LoadField(AcDbField* field);

    // The list of recent files, as the page holds it.
    CRecentFileListEx& RecentFiles() { return m_recentFiles; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    afx_msg void OnBrowse();
    afx_msg void OnGetActiveCell();
    afx_msg void OnCellTextChanged();
    afx_msg void OnPathTypeChanged();
    afx_msg void OnRecentFileMenu();
    afx_msg void OnRecentFile(UINT id);

    // The step that browsing and a recent file share: the sheet and cell
    // active in Excel into the boxes, inside a session.
    void FillFromActiveCell();
    // Opens a session on a path for writing and fills the boxes from it.
    void FillFromWorkbook(const CString& path);
    // Tells the user of an exception that left a call into Excel.
    void ReportException(CException* e);
    void ReportException(const _com_error& e);

    CComboBox m_pathType;
    CEdit m_sheetName;
    CEdit m_path;
    CEdit m_column;
    CEdit m_row;
    CRecentFileListEx m_recentFiles;

    DECLARE_MESSAGE_MAP()
};
