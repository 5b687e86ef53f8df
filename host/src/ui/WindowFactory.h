// Making windows: the kind of a window class, and a window of it with its
// place and font.
#pragma once

#include <string>

#include "ui/Desktop.h"

namespace cadhost::ui {

WindowKind KindOfClass(const std::wstring& className);

struct WindowParams {
    std::wstring className;
    std::wstring text;
    DWORD style = 0;
    DWORD exStyle = 0;
    RECT rect{};  // in pixels, in the parent's client area or on the screen
    int id = 0;
    HWND parent = nullptr;  // for WS_CHILD, else the owner
    HFONT font = nullptr;
};

// A new window; null when a child has no parent.
HWND MakeWindow(Desktop& desktop, const WindowParams& params);

// The edges around a window's client area that its style asks for.
RECT FrameOf(DWORD style, DWORD exStyle, WindowKind kind);

}  // namespace cadhost::ui
