#include "ui/Mouse.h"

#include "ui/Controls.h"
#include "ui/Desktop.h"

namespace cadhost::ui {
namespace {

struct SystemCursorName {
    int id;
    const wchar_t* name;
};

const SystemCursorName kSystemCursors[] = {{32512, L"arrow"}, {32513, L"ibeam"},   {32514, L"wait"},
                                           {32515, L"cross"}, {32646, L"sizeall"}, {32648, L"no"},
                                           {32649, L"hand"}};

// A point of the screen in a window's client area, as mouse messages carry
// it: two signed 16-bit numbers.
LPARAM ClientPoint(HWND window, POINT screen) {
    POINT origin = ClientOrigin(window);
    auto x = static_cast<short>(screen.x - origin.x);
    auto y = static_cast<short>(screen.y - origin.y);
    return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y));
}

}  // namespace

Mouse::Mouse() {
    for (const SystemCursorName& cursor : kSystemCursors)
        m_system.push_back(std::make_unique<HICON__>(HICON__{cursor.name, cursor.id}));
    m_cursor = m_system.front().get();
}

Mouse::~Mouse() = default;

HCURSOR Mouse::SystemCursor(int id) const {
    for (const auto& cursor : m_system) {
        if (cursor->id == id) return cursor.get();
    }
    return nullptr;
}

bool Mouse::IsCursor(HCURSOR cursor) const {
    for (const auto& known : m_system) {
        if (known.get() == cursor) return true;
    }
    return false;
}

HCURSOR Mouse::SetCursor(HCURSOR cursor) {
    HCURSOR before = m_cursor;
    m_cursor = IsCursor(cursor) ? cursor : nullptr;
    return before;
}

void Mouse::SendToTarget(Desktop& desktop, UINT message, WPARAM keys) {
    HWND target = m_capture;
    if (!target && desktop.IsWindow(m_over) && !(m_over->style & WS_DISABLED)) target = m_over;
    if (desktop.IsWindow(target)) ::SendMessageW(target, message, keys, ClientPoint(target, m_position));
}

void Mouse::MoveTo(Desktop& desktop, POINT screen, HWND over) {
    m_position = screen;
    m_over = desktop.IsWindow(over) ? over : nullptr;
    // The window under the pointer chooses the cursor, unless another holds
    // the capture.
    if (!m_capture && m_over && !(m_over->style & WS_DISABLED))
        ::SendMessageW(m_over, WM_SETCURSOR, reinterpret_cast<WPARAM>(m_over), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    SendToTarget(desktop, WM_MOUSEMOVE, m_leftDown ? MK_LBUTTON : 0);
}

void Mouse::Press(Desktop& desktop) {
    m_leftDown = true;
    SendToTarget(desktop, WM_LBUTTONDOWN, MK_LBUTTON);
}

void Mouse::Release(Desktop& desktop) {
    m_leftDown = false;
    SendToTarget(desktop, WM_LBUTTONUP, 0);
}

HWND Mouse::SetCapture(Desktop& desktop, HWND window) {
    if (!desktop.IsWindow(window)) return nullptr;
    HWND before = m_capture;
    m_capture = window;
    if (desktop.IsWindow(before)) ::SendMessageW(before, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(window));
    return before;
}

bool Mouse::ReleaseCapture(Desktop& desktop) {
    HWND before = m_capture;
    m_capture = nullptr;
    if (desktop.IsWindow(before)) ::SendMessageW(before, WM_CAPTURECHANGED, 0, 0);
    return true;
}

void Mouse::Forget(HWND window) {
    if (m_over == window) m_over = nullptr;
    if (m_capture == window) m_capture = nullptr;
}

std::wstring CursorName(HCURSOR cursor) { return cursor ? cursor->name : L"none"; }

}  // namespace cadhost::ui

using cadhost::ui::Desktop;

extern "C" {

HWND WINAPI SetCapture(HWND window) {
    Desktop* desktop = Desktop::Current();
    return desktop ? desktop->mouse().SetCapture(*desktop, window) : nullptr;
}

BOOL WINAPI ReleaseCapture() {
    Desktop* desktop = Desktop::Current();
    return desktop && desktop->mouse().ReleaseCapture(*desktop);
}

HWND WINAPI GetCapture() {
    Desktop* desktop = Desktop::Current();
    return desktop ? desktop->mouse().Capture() : nullptr;
}

BOOL WINAPI GetCursorPos(LPPOINT point) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !point) return FALSE;
    *point = desktop->mouse().Position();
    return TRUE;
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || instance || !IS_INTRESOURCE(name)) return nullptr;  // modules carry no cursors here
    return desktop->mouse().SystemCursor(LOWORD(reinterpret_cast<ULONG_PTR>(name)));
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
    Desktop* desktop = Desktop::Current();
    return desktop ? desktop->mouse().SetCursor(cursor) : nullptr;
}

HCURSOR WINAPI GetCursor() {
    Desktop* desktop = Desktop::Current();
    return desktop ? desktop->mouse().Cursor() : nullptr;
}
}
