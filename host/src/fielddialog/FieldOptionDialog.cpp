#include <AcFdUi.h>

IMPLEMENT_DYNAMIC(CAcFdUiFieldOptionDialog, CAdUiDialog)

CAcFdUiFieldOptionDialog::CAcFdUiFieldOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* fieldDialog,
                                                   UINT templateId, HINSTANCE dialogResource)
    : CAdUiDialog(templateId, nullptr, dialogResource),
      m_pDialogHook(hook),
      m_pFieldDialog(fieldDialog),
      m_pPageParent(nullptr) {}

CAcFdUiFieldOptionDialog::~CAcFdUiFieldOptionDialog() = default;

BOOL CAcFdUiFieldOptionDialog::Create(CWnd* parent) {
    m_pPageParent = parent;
    m_pParentWnd = parent;
    return TRUE;
}

BOOL CAcFdUiFieldOptionDialog::OnFieldSelected(UINT) { return TRUE; }

BOOL CAcFdUiFieldOptionDialog::OnSetActive() { return TRUE; }

BOOL CAcFdUiFieldOptionDialog::OnKillActive() { return TRUE; }
