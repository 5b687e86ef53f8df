// Painting: invalid windows, WM_PAINT and its device context, and the text
// that a window writes, which the host keeps as the window's painting.
#include "ui/Painting.h"

#include <afxwin.h>

#include <cstdio>

#include "ui/ControlView.h"
#include "ui/Controls.h"
#include "ui/Desktop.h"

namespace cadhost::ui {
namespace {

std::wstring Hex(COLORREF color) {
    wchar_t text[16];
    std::swprintf(text, 16, L"0x%06X", static_cast<unsigned>(color & 0xFFFFFFu));
    return text;
}

}  // namespace

std::wstring DescribePainting(const Painting& painting) {
    if (!painting.painted) return L"not painted";
    if (painting.texts.empty()) return L"painted nothing";
    std::wstring text;
    for (const PaintedText& part : painting.texts) {
        if (!text.empty()) text += L", ";
        text += L"painted " + Quoted(part.text) + L" at " + std::to_wstring(part.at.x) + L"," +
                std::to_wstring(part.at.y) + L" color " + Hex(part.color);
        text += part.backMode == TRANSPARENT ? std::wstring(L" on transparent") : L" on " + Hex(part.back);
        if (part.font.lfUnderline) text += L" underlined";
    }
    return text;
}

}  // namespace cadhost::ui

using cadhost::ui::Desktop;

extern "C" {

BOOL WINAPI InvalidateRect(HWND window, const RECT*, BOOL) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(window)) return FALSE;
    desktop->Invalidate(window);
    return TRUE;
}

BOOL WINAPI ValidateRect(HWND window, const RECT*) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(window)) return FALSE;
    window->invalid = false;
    return TRUE;
}

BOOL WINAPI UpdateWindow(HWND window) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(window)) return FALSE;
    if (window->invalid && ::IsWindowVisible(window)) ::SendMessageW(window, WM_PAINT, 0, 0);
    return TRUE;
}

HDC WINAPI BeginPaint(HWND window, LPPAINTSTRUCT paint) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(window) || !paint) return nullptr;
    *paint = PAINTSTRUCT{};
    paint->hdc = desktop->gdi().CreateDC(window);
    ::GetClientRect(window, &paint->rcPaint);
    paint->fErase = TRUE;
    window->invalid = false;
    window->painting = cadhost::ui::Painting{true, {}};  // the whole client area is painted anew
    return paint->hdc;
}

BOOL WINAPI EndPaint(HWND, const PAINTSTRUCT* paint) {
    Desktop* desktop = Desktop::Current();
    return desktop && paint && desktop->gdi().DeleteDC(paint->hdc);
}

BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->gdi().IsDC(dc) || length < 0 || (length > 0 && !text)) return FALSE;
    if (!desktop->IsWindow(dc->window)) return TRUE;  // a memory context: nothing to keep
    cadhost::ui::PaintedText painted;
    painted.text.assign(text ? text : L"", static_cast<size_t>(length));
    painted.at = POINT{x, y};
    painted.color = dc->textColor;
    painted.back = dc->backColor;
    painted.backMode = dc->backMode;
    if (desktop->gdi().IsFont(dc->font)) painted.font = dc->font->logFont;
    dc->window->painting.painted = true;
    dc->window->painting.texts.push_back(std::move(painted));
    return TRUE;
}
}
