// The Objects Area page: the objects whose areas the field sums, and the
// number format of the sum.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkAreaOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkAreaOptionDialog)
public:
    AsdkAreaOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkAreaOptionDialog() override;

    enum { IDD = IDD_AREA_PAGE };

    // The page's window, from the module's template.
    BOOL Create(CWnd* parent) override;
    // The field code of the page's present state.
    CString GetFieldCode();
    // Brings the page into the state of a stored field; FALSE when the
    // field holds nothing the page can read.
    BOOL LoadField(AcDbField* field);

protected:
    DECLARE_MESSAGE_MAP()
};
