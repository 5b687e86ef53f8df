#include "pages/AsdkLengthOptionDialog.h"

IMPLEMENT_DYNAMIC(AsdkLengthOptionDialog, AsdkMeasureOptionDialog)

BEGIN_MESSAGE_MAP(AsdkLengthOptionDialog, AsdkMeasureOptionDialog)
END_MESSAGE_MAP()

AsdkLengthOptionDialog::AsdkLengthOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                                               HINSTANCE instance)
    : AsdkMeasureOptionDialog(kLengthPageKind, hook, dialog, instance) {}

AsdkLengthOptionDialog::~AsdkLengthOptionDialog() = default;
