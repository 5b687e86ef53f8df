// The Text File page: the file whose text the field shows, and whether its
// path goes into the code in full or relative to the drawing.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkTextFileFieldOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkTextFileFieldOptionDialog)
public:
    AsdkTextFileFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkTextFileFieldOptionDialog() override;

    enum { IDD = IDD_TEXTFILE_PAGE };

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
