// The host's window system: its windows, the focus, the modal dialogs that
// run, posted and registered messages, fonts, device contexts and menus,
// and the user interface driver that answers for the user.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ui/GdiObjects.h"
#include "ui/Menus.h"
#include "ui/Mouse.h"
#include "ui/UiDriver.h"
#include "ui/Window.h"
#include "ui/WindowClasses.h"

namespace cadhost::ui {

class Desktop {
public:
    // Text for the user (message boxes, file dialogs, menus) goes to show.
    explicit Desktop(std::function<void(const std::wstring&)> show);
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    // The desktop of the running host; Require() ends the process without one.
    static Desktop* Current();
    static Desktop& Require();

    // Windows. A window is created blank and filled by its creator.
    HWND NewWindow(WindowKind kind, const std::wstring& className);
    bool IsWindow(HWND window) const { return window && m_windows.count(window) != 0; }
    // Destroys the window with its children and the windows it owns; the
    // objects bound to them hear WM_DESTROY and WM_NCDESTROY.
    void Destroy(HWND window);
    // Makes a child of parent (or a window without one when null).
    void SetParent(HWND window, HWND parent);
    HWND Focus() const { return m_focus; }
    void SetFocus(HWND window) { m_focus = IsWindow(window) ? window : nullptr; }
    size_t WindowCount() const { return m_windows.size(); }

    // Modal dialogs, the innermost last.
    void PushModal(HWND dialog);
    void PopModal(HWND dialog);
    HWND InnermostModal() const;
    size_t ModalDepth() const { return m_modal.size(); }
    // A modal run is over when its dialog has ended or is gone.
    bool ModalEnded(HWND dialog) const { return !IsWindow(dialog) || dialog->ended; }

    // Messages for later: delivered, in order, when the loop comes round.
    void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    // Delivers what was posted, then paints the windows that wait for it;
    // answers how many posted messages were delivered.
    size_t DeliverPosted();
    // A window of a registered class waits for WM_PAINT; it hears it when
    // the loop comes round while it is shown.
    void Invalidate(HWND window);
    // Sends WM_PAINT to the shown windows that wait for it; answers how many.
    size_t PaintInvalid();
    UINT RegisterMessage(const std::wstring& name);

    // The user interface: the script's driver, or nobody.
    UiDriver& driver() { return m_driver ? *m_driver : m_unattended; }
    void SetDriver(UiDriver* driver) { m_driver = driver; }
    void Show(const std::wstring& text);

    // Message boxes, as the user saw them.
    struct ShownMessage {
        std::wstring caption;
        std::wstring text;
        UINT type = 0;
        int answer = 0;
    };
    int ShowMessageBox(const std::wstring& caption, const std::wstring& text, UINT type);
    const std::optional<ShownMessage>& LastMessage() const { return m_lastMessage; }
    size_t MessageCount() const { return m_messageCount; }

    // The window whose controls' notifications are not handed to its
    // handlers while it exchanges its data, as the framework does.
    HWND NotifyLockout() const { return m_lockout; }
    void SetNotifyLockout(HWND window) { m_lockout = window; }

    GdiObjects& gdi() { return m_gdi; }
    MenuTable& menus() { return m_menus; }
    WindowClasses& classes() { return m_classes; }
    Mouse& mouse() { return m_mouse; }

private:
    std::function<void(const std::wstring&)> m_show;
    std::unordered_map<HWND, std::unique_ptr<HWND__>> m_windows;
    HWND m_focus = nullptr;
    HWND m_lockout = nullptr;
    std::vector<HWND> m_modal;
    struct Posted {
        HWND window;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    std::deque<Posted> m_posted;
    std::unordered_map<std::wstring, UINT> m_registered;
    UINT m_nextRegistered = 0xC000;
    UiDriver* m_driver = nullptr;
    UnattendedDriver m_unattended;
    std::optional<ShownMessage> m_lastMessage;
    size_t m_messageCount = 0;
    GdiObjects m_gdi;
    MenuTable m_menus;
    WindowClasses m_classes;
    Mouse m_mouse;
    std::vector<HWND> m_invalid;  // in the order they became invalid
};

}  // namespace cadhost::ui
