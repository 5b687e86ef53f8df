#include "ui/WindowFactory.h"

#include <tchar.h>

#include "ui/TextMetric.h"

namespace cadhost::ui {

WindowKind KindOfClass(const std::wstring& className) {
    struct Known {
        const wchar_t* name;
        WindowKind kind;
    };
    static const Known known[] = {{L"Button", WindowKind::Button},   {L"Static", WindowKind::Static},
                                  {L"Edit", WindowKind::Edit},       {L"ListBox", WindowKind::ListBox},
                                  {L"ComboBox", WindowKind::ComboBox}, {L"ScrollBar", WindowKind::ScrollBar},
                                  {L"#32770", WindowKind::Dialog}};
    for (const Known& k : known) {
        if (_wcsicmp(className.c_str(), k.name) == 0) return k.kind;
    }
    return WindowKind::Window;
}

RECT FrameOf(DWORD style, DWORD exStyle, WindowKind kind) {
    int edge = 0;
    int caption = 0;
    if ((style & WS_CAPTION) == WS_CAPTION) caption = GetSystemMetrics(SM_CYCAPTION);
    if (style & WS_THICKFRAME) edge = GetSystemMetrics(SM_CXFRAME);
    else if ((style & WS_DLGFRAME) || (kind == WindowKind::Dialog && (style & DS_MODALFRAME)) ||
             (exStyle & WS_EX_DLGMODALFRAME))
        edge = GetSystemMetrics(SM_CXDLGFRAME);
    else if (style & WS_BORDER) edge = GetSystemMetrics(SM_CXBORDER);
    if (exStyle & WS_EX_CLIENTEDGE) edge += GetSystemMetrics(SM_CXEDGE);
    RECT frame{edge, edge + caption, edge, edge};
    return frame;
}

HWND MakeWindow(Desktop& desktop, const WindowParams& params) {
    HWND parent = desktop.IsWindow(params.parent) ? params.parent : nullptr;
    if ((params.style & WS_CHILD) && !parent) return nullptr;
    WindowKind kind = KindOfClass(params.className);
    HWND window = desktop.NewWindow(kind, params.className);
    window->text = params.text;
    window->style = params.style;
    window->exStyle = params.exStyle;
    window->rect = params.rect;
    window->id = params.id;
    window->frame = FrameOf(params.style, params.exStyle, kind);
    window->font = params.font ? params.font : desktop.gdi().StockFont(SYSTEM_FONT);
    if (desktop.gdi().IsFont(window->font)) {
        SIZE units = DialogBaseUnits(window->font->logFont);
        window->baseX = units.cx;
        window->baseY = units.cy;
    }
    if (params.style & WS_CHILD) desktop.SetParent(window, parent);
    else window->owner = parent;
    // A registered class gives its style and cursor; the standard controls
    // show the arrow, edit boxes the text cursor.
    if (const WindowClass* registered = kind == WindowKind::Window ? desktop.classes().FindAny(params.className) : nullptr) {
        window->registeredClass = true;
        window->classStyle = registered->style;
        window->classCursor = registered->cursor;
    } else {
        window->classCursor = desktop.mouse().SystemCursor(kind == WindowKind::Edit ? 32513 : 32512);
    }
    if (params.style & WS_VISIBLE) desktop.Invalidate(window);
    return window;
}

}  // namespace cadhost::ui
