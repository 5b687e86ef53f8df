// The Objects Area page: circles and lightweight polylines whose areas the
// field sums, and the number format of the sum.
#pragma once

#include "pages/AsdkMeasureOptionDialog.h"
#include "resources/resource.h"

class AsdkAreaOptionDialog : public AsdkMeasureOptionDialog {
    DECLARE_DYNAMIC(AsdkAreaOptionDialog)
public:
    AsdkAreaOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkAreaOptionDialog() override;

    enum { IDD = IDD_AREA_PAGE };

protected:
    DECLARE_MESSAGE_MAP()
};

