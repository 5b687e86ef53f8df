// The host's user interface as the framework meets it: modal runs, message
// boxes, file dialogs and popup menus. A session script drives it now; a
// window system can later.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace cadhost::ui {

struct MessageBoxRequest {
    std::wstring caption;
    std::wstring text;
    UINT type = MB_OK;
    std::vector<int> buttons;  // IDOK, IDCANCEL, IDYES... in the box's order
    int defaultButton = IDOK;
};

struct FileDialogRequest {
    bool open = true;
    std::wstring title;
    std::wstring filter;  // as the program gave it, with '|'
    std::wstring defaultExt;
    std::wstring initialName;
    DWORD flags = 0;
};

struct PopupMenuLine {
    std::wstring text;
    UINT id = 0;
    UINT flags = 0;  // MF_SEPARATOR, MF_POPUP, MF_GRAYED, MF_DISABLED, MF_CHECKED
};

struct PopupMenuRequest {
    std::vector<PopupMenuLine> items;
    int x = 0;
    int y = 0;
};

class UiDriver {
public:
    virtual ~UiDriver() = default;
    // Lets the user work the modal dialog until it has ended
    // (Desktop::ModalEnded). A driver that returns before that abandons the
    // dialog, which is then cancelled.
    virtual void RunModal(HWND dialog) = 0;
    // One of request.buttons.
    virtual int AnswerMessageBox(const MessageBoxRequest& request) = 0;
    // The chosen path, or nothing when the user cancels.
    virtual std::optional<std::wstring> AnswerFileDialog(const FileDialogRequest& request) = 0;
    // The place of the chosen item, or -1 when the user dismisses the menu.
    virtual int AnswerPopupMenu(const PopupMenuRequest& request) = 0;
    // The run is being given up (a script failed): nothing more is shown
    // and every question takes its way out.
    virtual bool Abandoning() const { return false; }
};

// Without anybody at the host: message boxes take their default button,
// file dialogs and menus are dismissed, modal dialogs are cancelled.
class UnattendedDriver : public UiDriver {
public:
    void RunModal(HWND) override {}
    int AnswerMessageBox(const MessageBoxRequest& request) override { return request.defaultButton; }
    std::optional<std::wstring> AnswerFileDialog(const FileDialogRequest&) override { return std::nullopt; }
    int AnswerPopupMenu(const PopupMenuRequest&) override { return -1; }
};

}  // namespace cadhost::ui
