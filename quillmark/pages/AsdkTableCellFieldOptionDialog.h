// The Table Cell page: the user picks a point in a table of the current
// space; the page names the cell under it by the table's handle and an
// absolute spreadsheet-style reference, and shows the cell's text.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkTableCellFieldOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkTableCellFieldOptionDialog)
public:
    AsdkTableCellFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkTableCellFieldOptionDialog() override;

    enum { IDD = IDD_TABLECELL_PAGE };

    // The page's window, from the module's template, turned from a pop-up
    // into a child of the parent.
    BOOL Create(CWnd* parent) override;
    // The field code of the cell name in the page's box; with no name, the
    // code with nothing behind the evaluator id.
    CString GetFieldCode();
    // Brings the page into the state of a stored field: the cell name its
    // evaluator kept, and the field's value as preview. FALSE, changing
    // nothing, when the field is null or holds no cell name as text.
    BOOL LoadField(AcDbField* field);
    // Puts a cell name into the page's box and asks the hook to bring the
    // dialog's field code up to date.
    void SetCellName(const CString& name);
    // The absolute reference of a cell from a row and column counted from
    // 1 ("$AB$3"); below 1 a message and an empty text.
    CString MakeCellReference(int row, int column);

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    // The pick of a cell in the drawing, with the Field dialog out of the way.
    afx_msg void OnPickCell();

    CEdit m_preview;

    DECLARE_MESSAGE_MAP()
};
