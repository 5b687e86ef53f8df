// The platform's calls on windows by handle: the tree, text, state, places
// and the buttons of dialogs. A handle that names no window gets the
// platform's failure answer, never a crash.
#include <afxwin.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cwchar>

#include "ui/Controls.h"
#include "ui/WindowFactory.h"

using cadhost::ui::Desktop;

namespace {

Desktop* TheDesktop() { return Desktop::Current(); }

bool Live(HWND window) {
    Desktop* desktop = TheDesktop();
    return desktop && desktop->IsWindow(window);
}

}  // namespace

extern "C" {

int WINAPI MulDiv(int number, int numerator, int denominator) {
    if (denominator == 0) return -1;
    long long product = static_cast<long long>(number) * numerator;
    long long half = std::llabs(static_cast<long long>(denominator)) / 2;
    bool negative = (product < 0) != (denominator < 0);
    long long magnitude = (std::llabs(product) + half) / std::llabs(static_cast<long long>(denominator));
    long long result = negative ? -magnitude : magnitude;
    if (result > INT_MAX || result < INT_MIN) return -1;
    return static_cast<int>(result);
}

BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom) {
    if (!rect) return FALSE;
    *rect = RECT{left, top, right, bottom};
    return TRUE;
}

BOOL WINAPI SetRectEmpty(LPRECT rect) { return SetRect(rect, 0, 0, 0, 0); }

BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy) {
    if (!rect) return FALSE;
    rect->left += dx;
    rect->right += dx;
    rect->top += dy;
    rect->bottom += dy;
    return TRUE;
}

BOOL WINAPI InflateRect(LPRECT rect, int dx, int dy) {
    if (!rect) return FALSE;
    rect->left -= dx;
    rect->right += dx;
    rect->top -= dy;
    rect->bottom += dy;
    return TRUE;
}

BOOL WINAPI PtInRect(const RECT* rect, POINT point) {
    return rect && point.x >= rect->left && point.x < rect->right && point.y >= rect->top && point.y < rect->bottom;
}

BOOL WINAPI IsRectEmpty(const RECT* rect) { return !rect || rect->right <= rect->left || rect->bottom <= rect->top; }

BOOL WINAPI EqualRect(const RECT* a, const RECT* b) {
    return a && b && a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}

BOOL WINAPI IsWindow(HWND window) { return Live(window); }

BOOL WINAPI DestroyWindow(HWND window) {
    if (!Live(window)) return FALSE;
    TheDesktop()->Destroy(window);
    return TRUE;
}

HWND WINAPI GetParent(HWND window) {
    if (!Live(window)) return nullptr;
    return window->parent ? window->parent : window->owner;
}

HWND WINAPI SetParent(HWND child, HWND newParent) {
    if (!Live(child) || (newParent && !Live(newParent))) return nullptr;
    HWND old = child->parent ? child->parent : child->owner;
    TheDesktop()->SetParent(child, newParent);
    if (child->parent != newParent) return nullptr;  // refused: it would go under itself
    return old;
}

HWND WINAPI GetWindow(HWND window, UINT command) {
    if (!Live(window)) return nullptr;
    if (command == GW_CHILD) return window->children.empty() ? nullptr : window->children.front();
    if (command == GW_OWNER) return window->owner;
    if (!window->parent) return nullptr;
    const std::vector<HWND>& siblings = window->parent->children;
    auto at = std::find(siblings.begin(), siblings.end(), window);
    if (at == siblings.end()) return nullptr;
    switch (command) {
    case GW_HWNDFIRST: return siblings.front();
    case GW_HWNDLAST: return siblings.back();
    case GW_HWNDNEXT: return at + 1 == siblings.end() ? nullptr : *(at + 1);
    case GW_HWNDPREV: return at == siblings.begin() ? nullptr : *(at - 1);
    default: return nullptr;
    }
}

HWND WINAPI GetDlgItem(HWND dialog, int id) {
    if (!Live(dialog)) return nullptr;
    for (HWND child : dialog->children) {
        if (child->id == id) return child;
    }
    return nullptr;
}

int WINAPI GetDlgCtrlID(HWND window) { return Live(window) ? window->id : 0; }

BOOL WINAPI IsChild(HWND parent, HWND window) {
    if (!Live(parent) || !Live(window)) return FALSE;
    for (HWND up = window->parent; up; up = up->parent) {
        if (up == parent) return TRUE;
    }
    return FALSE;
}

LONG WINAPI GetWindowLongW(HWND window, int index) {
    if (!Live(window)) return 0;
    switch (index) {
    case GWL_STYLE: return static_cast<LONG>(window->style);
    case GWL_EXSTYLE: return static_cast<LONG>(window->exStyle);
    case GWL_ID: return window->id;
    default: return 0;
    }
}

LONG WINAPI SetWindowLongW(HWND window, int index, LONG value) {
    if (!Live(window)) return 0;
    LONG old = GetWindowLongW(window, index);
    switch (index) {
    case GWL_STYLE:
        window->style = static_cast<DWORD>(value);
        window->frame = cadhost::ui::FrameOf(window->style, window->exStyle, window->kind);
        break;
    case GWL_EXSTYLE:
        window->exStyle = static_cast<DWORD>(value);
        window->frame = cadhost::ui::FrameOf(window->style, window->exStyle, window->kind);
        break;
    case GWL_ID: window->id = value; break;
    default: return 0;
    }
    return old;
}

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) {
    if (!Live(window)) return FALSE;
    return static_cast<BOOL>(SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text ? text : L"")));
}

int WINAPI GetWindowTextW(HWND window, LPWSTR buffer, int bufferMax) {
    if (!Live(window)) {
        if (buffer && bufferMax > 0) buffer[0] = L'\0';
        return 0;
    }
    return static_cast<int>(SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(std::max(bufferMax, 0)),
                                         reinterpret_cast<LPARAM>(buffer)));
}

int WINAPI GetWindowTextLengthW(HWND window) {
    return Live(window) ? static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) : 0;
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) { return SetWindowTextW(GetDlgItem(dialog, id), text); }

UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR buffer, int bufferMax) {
    HWND control = GetDlgItem(dialog, id);
    if (!control) {
        if (buffer && bufferMax > 0) buffer[0] = L'\0';
        return 0;
    }
    return static_cast<UINT>(GetWindowTextW(control, buffer, bufferMax));
}

BOOL WINAPI EnableWindow(HWND window, BOOL enable) {
    if (!Live(window)) return FALSE;
    BOOL wasDisabled = (window->style & WS_DISABLED) != 0;
    if (enable) window->style &= ~WS_DISABLED;
    else window->style |= WS_DISABLED;
    if (!enable && TheDesktop()->Focus() == window) TheDesktop()->SetFocus(nullptr);
    if (wasDisabled == !enable) return wasDisabled;
    SendMessageW(window, WM_ENABLE, enable ? TRUE : FALSE, 0);
    return wasDisabled;
}

BOOL WINAPI IsWindowEnabled(HWND window) { return Live(window) && !(window->style & WS_DISABLED); }

BOOL WINAPI ShowWindow(HWND window, int command) {
    if (!Live(window)) return FALSE;
    BOOL wasVisible = (window->style & WS_VISIBLE) != 0;
    if (command == SW_HIDE) window->style &= ~WS_VISIBLE;
    else window->style |= WS_VISIBLE;
    if (!wasVisible && command != SW_HIDE) TheDesktop()->Invalidate(window);
    return wasVisible;
}

BOOL WINAPI IsWindowVisible(HWND window) {
    if (!Live(window)) return FALSE;
    for (HWND up = window; up; up = up->parent) {
        if (!(up->style & WS_VISIBLE)) return FALSE;
    }
    return TRUE;
}

HWND WINAPI SetFocus(HWND window) {
    Desktop* desktop = TheDesktop();
    if (!desktop) return nullptr;
    HWND old = desktop->Focus();
    if (window && !Live(window)) return nullptr;
    desktop->SetFocus(window);
    return old;
}

HWND WINAPI GetFocus() {
    Desktop* desktop = TheDesktop();
    return desktop ? desktop->Focus() : nullptr;
}

BOOL WINAPI GetWindowRect(HWND window, LPRECT rect) {
    if (!Live(window) || !rect) return FALSE;
    *rect = cadhost::ui::WindowRect(window);
    return TRUE;
}

BOOL WINAPI GetClientRect(HWND window, LPRECT rect) {
    if (!Live(window) || !rect) return FALSE;
    RECT outer = window->rect;
    rect->left = rect->top = 0;
    rect->right = std::max<LONG>(0, outer.right - outer.left - window->frame.left - window->frame.right);
    rect->bottom = std::max<LONG>(0, outer.bottom - outer.top - window->frame.top - window->frame.bottom);
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    if (!Live(window) || !point) return FALSE;
    POINT origin = cadhost::ui::ClientOrigin(window);
    point->x -= origin.x;
    point->y -= origin.y;
    return TRUE;
}

BOOL WINAPI ClientToScreen(HWND window, LPPOINT point) {
    if (!Live(window) || !point) return FALSE;
    POINT origin = cadhost::ui::ClientOrigin(window);
    point->x += origin.x;
    point->y += origin.y;
    return TRUE;
}

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL) {
    if (!Live(window)) return FALSE;
    window->rect = RECT{x, y, x + std::max(width, 0), y + std::max(height, 0)};
    return TRUE;
}

BOOL WINAPI SetWindowPos(HWND window, HWND, int x, int y, int cx, int cy, UINT flags) {
    if (!Live(window)) return FALSE;
    RECT rect = window->rect;
    if (!(flags & SWP_NOMOVE)) OffsetRect(&rect, x - rect.left, y - rect.top);
    if (!(flags & SWP_NOSIZE)) {
        rect.right = rect.left + std::max(cx, 0);
        rect.bottom = rect.top + std::max(cy, 0);
    }
    window->rect = rect;
    if (flags & SWP_SHOWWINDOW) window->style |= WS_VISIBLE;
    if (flags & SWP_HIDEWINDOW) window->style &= ~WS_VISIBLE;
    return TRUE;
}

BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rect) {
    if (!Live(dialog) || !rect) return FALSE;
    *rect = cadhost::ui::DialogUnitsToPixels(dialog, *rect);
    return TRUE;
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) {
    HWND button = GetDlgItem(dialog, id);
    if (!button) return FALSE;
    cadhost::ui::SetCheck(button, static_cast<int>(check));
    return TRUE;
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
    return static_cast<UINT>(cadhost::ui::GetCheck(GetDlgItem(dialog, id)));
}

BOOL WINAPI CheckRadioButton(HWND dialog, int first, int last, int check) {
    if (!Live(dialog)) return FALSE;
    for (HWND child : dialog->children) {
        if (child->id >= first && child->id <= last)
            cadhost::ui::SetCheck(child, child->id == check ? BST_CHECKED : BST_UNCHECKED);
    }
    return TRUE;
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) {
    if (!Live(dialog)) return FALSE;
    dialog->result = result;
    dialog->ended = true;
    if (!dialog->modal) dialog->style &= ~WS_VISIBLE;
    return TRUE;
}

LONG WINAPI GetDialogBaseUnits() { return MAKELONG(8, 16); }

int WINAPI GetSystemMetrics(int index) {
    switch (index) {
    case SM_CXSCREEN: return 1280;
    case SM_CYSCREEN: return 1024;
    case SM_CXVSCROLL:
    case SM_CYHSCROLL:
    case SM_CYVSCROLL:
    case SM_CXHSCROLL: return 17;
    case SM_CYCAPTION: return 19;
    case SM_CXBORDER:
    case SM_CYBORDER: return 1;
    case SM_CXDLGFRAME:
    case SM_CYDLGFRAME: return 3;
    case SM_CYVTHUMB:
    case SM_CXHTHUMB: return 17;
    case SM_CXICON:
    case SM_CYICON:
    case SM_CXCURSOR:
    case SM_CYCURSOR: return 32;
    case SM_CYMENU: return 19;
    case SM_CXFRAME:
    case SM_CYFRAME: return 4;
    case SM_CXEDGE:
    case SM_CYEDGE: return 2;
    case SM_CXSMICON:
    case SM_CYSMICON: return 16;
    default: return 0;
    }
}

DWORD WINAPI GetSysColor(int index) {
    switch (index) {
    case COLOR_WINDOW: return RGB(255, 255, 255);
    case COLOR_WINDOWTEXT:
    case COLOR_BTNTEXT: return RGB(0, 0, 0);
    case COLOR_BTNFACE: return RGB(240, 240, 240);
    case COLOR_HIGHLIGHT: return RGB(0, 120, 215);
    case COLOR_HIGHLIGHTTEXT: return RGB(255, 255, 255);
    case COLOR_GRAYTEXT: return RGB(109, 109, 109);
    default: return 0;
    }
}
}
