// The framework's questions to the user, answered in the window: message
// boxes, file dialogs and popup menus as real windows. Modal dialogs of the
// module's templates are not shown as windows yet; they are cancelled, as
// with nobody at the host.
#pragma once

#include "ui/UiDriver.h"

class wxWindow;

namespace cadhost::gui {

class WindowDriver : public ui::UiDriver {
public:
    explicit WindowDriver(wxWindow* parent) : m_parent(parent) {}

    void RunModal(HWND dialog) override;
    int AnswerMessageBox(const ui::MessageBoxRequest& request) override;
    std::optional<std::wstring> AnswerFileDialog(const ui::FileDialogRequest& request) override;
    int AnswerPopupMenu(const ui::PopupMenuRequest& request) override;

private:
    wxWindow* m_parent;
};

}  // namespace cadhost::gui
