// The Objects Length page: the objects whose lengths the field sums, and the
// number format of the sum.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkLengthOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkLengthOptionDialog)
public:
    AsdkLengthOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkLengthOptionDialog() override;

    enum { IDD = IDD_LENGTH_PAGE };

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
