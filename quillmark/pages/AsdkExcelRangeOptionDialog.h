// The Excel Cell page: the workbook, sheet, column and row of the cell whose
// content the field shows.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkExcelRangeOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkExcelRangeOptionDialog)
public:
    AsdkExcelRangeOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkExcelRangeOptionDialog() override;

    enum { IDD = IDD_EXCEL_PAGE };

    // The page's window, from the module's template, turned from a pop-up
    // into a child of the parent.
    BOOL Create(CWnd* parent) override;
    // The field code of the page's present state.
    CString GetFieldCode();
    // Brings the page into the state of a stored field; FALSE when the
    // field holds nothing the page can read.
    BOOL LoadField(AcDbField* field);

protected:
    DECLARE_MESSAGE_MAP()
};
