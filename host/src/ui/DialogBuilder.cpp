#include "ui/DialogBuilder.h"

#include "ui/Controls.h"
#include "ui/TextMetric.h"
#include "ui/WindowFactory.h"

namespace cadhost::ui {
namespace {

// The height of a combo box's edit part, in dialog units; the template's
// height is that of the dropped list.
constexpr int kComboHeight = 14;

}  // namespace

HWND BuildDialog(Desktop& desktop, const DialogTemplate& dialog, HWND parentOrOwner, std::wstring& why) {
    bool child = (dialog.style & WS_CHILD) != 0;
    if (child && !desktop.IsWindow(parentOrOwner)) {
        why = L"the dialog " + dialog.name.Describe() + L" is a child window and needs a parent";
        return nullptr;
    }
    LOGFONTW logFont = dialog.font ? GdiObjects::DialogFont(dialog.font->pointSize, dialog.font->face.c_str())
                                   : GdiObjects::DialogFont();
    if (dialog.font) {
        logFont.lfWeight = dialog.font->weight ? dialog.font->weight : FW_NORMAL;
        logFont.lfItalic = dialog.font->italic ? 1 : 0;
        logFont.lfCharSet = static_cast<BYTE>(dialog.font->charset);
    }
    HFONT font = desktop.gdi().CreateFont(logFont);
    SIZE units = DialogBaseUnits(logFont);

    WindowParams params;
    params.className = L"#32770";
    params.text = dialog.caption;
    params.style = dialog.style;
    params.exStyle = dialog.exStyle;
    params.parent = parentOrOwner;
    params.font = font;
    RECT frame = FrameOf(dialog.style, dialog.exStyle, WindowKind::Dialog);
    int width = MulDiv(dialog.cx, units.cx, 4) + frame.left + frame.right;
    int height = MulDiv(dialog.cy, units.cy, 8) + frame.top + frame.bottom;
    POINT at{MulDiv(dialog.x, units.cx, 4), MulDiv(dialog.y, units.cy, 8)};
    if (!child) {
        if (dialog.style & (DS_CENTER | DS_CENTERMOUSE)) {
            RECT area{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
            if (desktop.IsWindow(parentOrOwner)) area = WindowRect(parentOrOwner);
            at.x = (area.left + area.right - width) / 2;
            at.y = (area.top + area.bottom - height) / 2;
        } else if (!(dialog.style & DS_ABSALIGN) && desktop.IsWindow(parentOrOwner)) {
            POINT origin = ClientOrigin(parentOrOwner);
            at.x += origin.x;
            at.y += origin.y;
        }
    }
    params.rect = RECT{at.x, at.y, at.x + width, at.y + height};
    HWND window = MakeWindow(desktop, params);
    if (!window) {
        desktop.gdi().DeleteFont(font);
        why = L"the dialog " + dialog.name.Describe() + L" cannot be made";
        return nullptr;
    }
    window->ownsFont = true;
    window->baseX = units.cx;
    window->baseY = units.cy;
    window->templateName = dialog.name.Describe();

    for (const ControlTemplate& control : dialog.controls) {
        WindowParams item;
        item.className = control.className;
        item.style = control.style | WS_CHILD;
        item.exStyle = control.exStyle;
        item.id = control.id;
        item.parent = window;
        item.font = font;
        WindowKind kind = KindOfClass(control.className);
        if (kind != WindowKind::ListBox && kind != WindowKind::ComboBox) item.text = control.text;
        int cy = control.cy;
        if (kind == WindowKind::ComboBox && (control.style & 0x3) != CBS_SIMPLE) cy = kComboHeight;
        int left = MulDiv(control.x, units.cx, 4);
        int top = MulDiv(control.y, units.cy, 8);
        item.rect = RECT{left, top, left + MulDiv(control.cx, units.cx, 4), top + MulDiv(cy, units.cy, 8)};
        HWND made = MakeWindow(desktop, item);
        if (made && kind == WindowKind::Button && (control.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON &&
            window->defaultId == IDOK && control.id > 0)
            window->defaultId = static_cast<UINT>(control.id);
    }
    return window;
}

HWND FirstTabStop(HWND dialog) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(dialog)) return nullptr;
    for (HWND child : dialog->children) {
        if ((child->style & WS_TABSTOP) && (child->style & WS_VISIBLE) && !(child->style & WS_DISABLED)) return child;
    }
    return nullptr;
}

}  // namespace cadhost::ui
