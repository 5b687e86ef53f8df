// The mouse: where the pointer is and over which window, the cursor it
// shows, and which window holds the capture. Moving the pointer asks the
// window under it for a cursor (WM_SETCURSOR) and tells it of the move
// (WM_MOUSEMOVE), or tells the window that holds the capture, wherever the
// pointer went; the buttons go to the same window.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

struct HICON__ {
    std::wstring name;  // "arrow", "hand"...
    int id = 0;         // the system's number of the cursor, 0 for others
};

namespace cadhost::ui {

class Desktop;

class Mouse {
public:
    Mouse();
    ~Mouse();
    Mouse(const Mouse&) = delete;
    Mouse& operator=(const Mouse&) = delete;

    // The pointer moves to a point of the screen over a window (null: over
    // no window of the host).
    void MoveTo(Desktop& desktop, POINT screen, HWND over);
    // The left button goes down or up where the pointer is.
    void Press(Desktop& desktop);
    void Release(Desktop& desktop);

    HWND Over() const { return m_over; }
    POINT Position() const { return m_position; }
    HWND Capture() const { return m_capture; }
    // Sets the capture; the window that had it hears WM_CAPTURECHANGED with
    // the new one (even when that is itself). Answers the one before.
    HWND SetCapture(Desktop& desktop, HWND window);
    bool ReleaseCapture(Desktop& desktop);

    HCURSOR Cursor() const { return m_cursor; }
    HCURSOR SetCursor(HCURSOR cursor);
    // A cursor of the system by its number (IDC_ARROW...); null for others.
    HCURSOR SystemCursor(int id) const;
    bool IsCursor(HCURSOR cursor) const;

    // A window that goes lets go of the pointer and the capture.
    void Forget(HWND window);

private:
    void SendToTarget(Desktop& desktop, UINT message, WPARAM keys);

    std::vector<std::unique_ptr<HICON__>> m_system;
    POINT m_position{-30000, -30000};
    HWND m_over = nullptr;
    HWND m_capture = nullptr;
    HCURSOR m_cursor = nullptr;
    bool m_leftDown = false;
};

// "arrow", "hand"... for a cursor; "none" for none.
std::wstring CursorName(HCURSOR cursor);

}  // namespace cadhost::ui
