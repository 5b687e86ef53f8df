// The Objects Length page: lines, arcs, circles and lightweight polylines
// whose lengths the field sums, and the number format of the sum.
#pragma once

#include "pages/AsdkMeasureOptionDialog.h"
#include "resources/resource.h"

class AsdkLengthOptionDialog : public AsdkMeasureOptionDialog {
    DECLARE_DYNAMIC(AsdkLengthOptionDialog)
public:
    AsdkLengthOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkLengthOptionDialog() override;

    enum { IDD = IDD_LENGTH_PAGE };

protected:
    DECLARE_MESSAGE_MAP()
};

