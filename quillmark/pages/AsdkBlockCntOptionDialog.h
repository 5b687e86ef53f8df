// The Block Count page: the blocks whose references the field counts, the
// filter, the source (the drawing or a window) and the format.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "resources/resource.h"

class AsdkBlockCntOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkBlockCntOptionDialog)
public:
    AsdkBlockCntOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkBlockCntOptionDialog() override;

    enum { IDD = IDD_BLOCKCOUNT_PAGE };

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
