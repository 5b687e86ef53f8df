#include "pages/AsdkAreaOptionDialog.h"

IMPLEMENT_DYNAMIC(AsdkAreaOptionDialog, AsdkMeasureOptionDialog)

BEGIN_MESSAGE_MAP(AsdkAreaOptionDialog, AsdkMeasureOptionDialog)
END_MESSAGE_MAP()

AsdkAreaOptionDialog::AsdkAreaOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                                           HINSTANCE instance)
    : AsdkMeasureOptionDialog(kAreaPageKind, hook, dialog, instance) {}

AsdkAreaOptionDialog::~AsdkAreaOptionDialog() = default;
