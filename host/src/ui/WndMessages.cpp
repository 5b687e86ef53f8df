// Messages: sending and posting them, a window object's handling through
// its message map, and what a window does with the messages nobody handles
// (the standard controls' own messages among them).
#include <afxwin.h>

#include <algorithm>
#include <cwchar>

#include "ui/Controls.h"
#include "ui/UserInput.h"

using cadhost::ui::Desktop;
using cadhost::ui::WindowKind;

namespace {

constexpr int kMaxMapDepth = 256;

Desktop* TheDesktop() { return Desktop::Current(); }

bool Live(HWND window) {
    Desktop* desktop = TheDesktop();
    return desktop && desktop->IsWindow(window);
}

LRESULT CopyOut(const std::wstring& text, WPARAM size, LPARAM buffer) {
    auto* out = reinterpret_cast<LPWSTR>(buffer);
    if (!out || size == 0) return 0;
    size_t n = std::min<size_t>(text.size(), static_cast<size_t>(size) - 1);
    std::wmemcpy(out, text.data(), n);
    out[n] = L'\0';
    return static_cast<LRESULT>(n);
}

// The list messages of list boxes and combo boxes, which share their entries.
LRESULT ListMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    namespace ui = cadhost::ui;
    bool combo = window->kind == WindowKind::ComboBox;
    auto text = [lParam] { return std::wstring(lParam ? reinterpret_cast<LPCWSTR>(lParam) : L""); };
    auto index = static_cast<int>(static_cast<INT_PTR>(wParam));
    switch (message) {
    case LB_ADDSTRING:
    case CB_ADDSTRING: return ui::AddEntry(window, text());
    case LB_INSERTSTRING:
    case CB_INSERTSTRING: return ui::InsertEntry(window, index, text());
    case LB_DELETESTRING:
    case CB_DELETESTRING: return ui::DeleteEntry(window, index);
    case LB_RESETCONTENT:
    case CB_RESETCONTENT: ui::ResetEntries(window); return 0;
    case LB_GETCOUNT:
    case CB_GETCOUNT: return ui::EntryCount(window);
    case LB_GETCURSEL:
    case CB_GETCURSEL: return ui::GetSelection(window);
    case LB_SETCURSEL:
    case CB_SETCURSEL: return ui::SetSelection(window, index);
    case LB_GETTEXT:
    case CB_GETLBTEXT: {
        const ui::ListEntry* entry = ui::Entry(window, index);
        if (!entry) return LB_ERR;
        if (auto* out = reinterpret_cast<LPWSTR>(lParam)) {
            std::wmemcpy(out, entry->text.c_str(), entry->text.size() + 1);
        }
        return static_cast<LRESULT>(entry->text.size());
    }
    case LB_GETTEXTLEN:
    case CB_GETLBTEXTLEN: {
        const ui::ListEntry* entry = ui::Entry(window, index);
        return entry ? static_cast<LRESULT>(entry->text.size()) : LB_ERR;
    }
    case LB_GETITEMDATA:
    case CB_GETITEMDATA: {
        const ui::ListEntry* entry = ui::Entry(window, index);
        return entry ? static_cast<LRESULT>(entry->data) : LB_ERR;
    }
    case LB_SETITEMDATA:
    case CB_SETITEMDATA: {
        ui::ListEntry* entry = ui::MutableEntry(window, index);
        if (!entry) return LB_ERR;
        entry->data = static_cast<DWORD_PTR>(lParam);
        return LB_OKAY;
    }
    case LB_FINDSTRING:
    case CB_FINDSTRING: return ui::FindEntry(window, index, text(), false);
    case LB_FINDSTRINGEXACT:
    case CB_FINDSTRINGEXACT: return ui::FindEntry(window, index, text(), true);
    case LB_SELECTSTRING:
    case CB_SELECTSTRING: {
        int found = ui::FindEntry(window, index, text(), false);
        if (found < 0) return LB_ERR;
        if (ui::IsMultipleSelection(window)) return ui::SetSelected(window, found, true) == LB_OKAY ? found : LB_ERR;
        return ui::SetSelection(window, found);
    }
    default: break;
    }
    if (!combo) {
        switch (message) {
        case LB_SETSEL: return ui::SetSelected(window, static_cast<int>(lParam), wParam != 0);
        case LB_GETSEL: return ui::IsSelected(window, index) ? 1 : 0;
        case LB_GETSELCOUNT: {
            if (!ui::IsMultipleSelection(window)) return LB_ERR;
            LRESULT selected = 0;
            window->entries.ForEach([&selected](size_t, ui::ListEntry& e) { selected += e.selected ? 1 : 0; });
            return selected;
        }
        case LB_GETSELITEMS: {
            if (!ui::IsMultipleSelection(window)) return LB_ERR;
            auto* out = reinterpret_cast<int*>(lParam);
            int n = 0;
            window->entries.ForEach([&](size_t i, ui::ListEntry& e) {
                if (e.selected && n < index) {
                    if (out) out[n] = static_cast<int>(i);
                    ++n;
                }
            });
            return n;
        }
        case LB_GETTOPINDEX: return window->topIndex;
        case LB_SETTOPINDEX:
            if (index < 0 || (index > 0 && index >= static_cast<int>(window->entries.size()))) return LB_ERR;
            window->topIndex = index;
            return LB_OKAY;
        case LB_GETHORIZONTALEXTENT: return window->horizontalExtent;
        case LB_SETHORIZONTALEXTENT: window->horizontalExtent = std::max(0, index); return 0;
        default: return 0;
        }
    }
    switch (message) {
    case CB_SHOWDROPDOWN: window->dropped = wParam != 0 && (window->style & 0x3) != CBS_SIMPLE; return TRUE;
    case CB_GETDROPPEDSTATE: return window->dropped ? TRUE : FALSE;
    case CB_GETDROPPEDWIDTH: {
        if (window->droppedWidth > 0) return window->droppedWidth;
        return window->rect.right - window->rect.left;
    }
    case CB_SETDROPPEDWIDTH: {
        if (index < 0) return CB_ERR;
        window->droppedWidth = index;
        return window->droppedWidth;
    }
    case CB_GETEDITSEL: {
        if (wParam) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(window->selectionStart);
        if (lParam) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(window->selectionEnd);
        return MAKELONG(window->selectionStart, window->selectionEnd);
    }
    case CB_SETEDITSEL: {
        if (!ui::HasEditPart(window)) return CB_ERR;
        int length = static_cast<int>(window->text.size());
        auto start = static_cast<short>(LOWORD(lParam));
        auto end = static_cast<short>(HIWORD(lParam));
        window->selectionStart = start < 0 ? length : std::min<int>(start, length);
        window->selectionEnd = end < 0 ? length : std::min<int>(end, length);
        return TRUE;
    }
    case CB_LIMITTEXT: window->limitText = index; return TRUE;
    default: return 0;
    }
}

}  // namespace

namespace cadhost::ui {

LRESULT DefaultWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!Live(window)) return 0;
    switch (message) {
    case WM_SETTEXT:
        SetText(window, lParam ? reinterpret_cast<LPCWSTR>(lParam) : L"");
        return TRUE;
    case WM_GETTEXT: return CopyOut(GetText(window), wParam, lParam);
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(GetText(window).size());
    case WM_SETFONT: {
        auto font = reinterpret_cast<HFONT>(wParam);
        if (TheDesktop()->gdi().IsFont(font)) window->font = font;
        return 0;
    }
    case WM_GETFONT: return reinterpret_cast<LRESULT>(window->font);
    case WM_PAINT: {
        PAINTSTRUCT paint;
        if (::BeginPaint(window, &paint)) ::EndPaint(window, &paint);
        return 0;
    }
    case WM_SETCURSOR:
        // The parent may choose first; else the class's cursor in the client area.
        if ((window->style & WS_CHILD) && Live(window->parent) &&
            ::SendMessageW(window->parent, WM_SETCURSOR, wParam, lParam))
            return TRUE;
        if (LOWORD(lParam) == HTCLIENT && window->classCursor) {
            ::SetCursor(window->classCursor);
            return TRUE;
        }
        return FALSE;
    case WM_CLOSE:
        if (window->kind == WindowKind::Dialog) {
            HWND cancel = ::GetDlgItem(window, IDCANCEL);
            ::SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(cancel));
        } else {
            TheDesktop()->Destroy(window);
        }
        return 0;
    case DM_GETDEFID:
        return window->kind == WindowKind::Dialog ? MAKELRESULT(window->defaultId, DC_HASDEFID) : 0;
    case DM_SETDEFID:
        if (window->kind == WindowKind::Dialog) window->defaultId = static_cast<UINT>(wParam);
        return TRUE;
    default: break;
    }
    switch (window->kind) {
    case WindowKind::Button:
        switch (message) {
        case BM_GETCHECK: return GetCheck(window);
        case BM_SETCHECK: SetCheck(window, static_cast<int>(wParam)); return 0;
        case BM_GETSTATE: return GetCheck(window) | (window->pushed ? BST_PUSHED : 0) |
                                 (TheDesktop()->Focus() == window ? BST_FOCUS : 0);
        case BM_SETSTATE: window->pushed = wParam != 0; return 0;
        case BM_SETSTYLE: window->style = (window->style & ~0xFFFFu) | (static_cast<DWORD>(wParam) & 0xFFFFu); return 0;
        case BM_CLICK: UserClick(window); return 0;
        default: return 0;
        }
    case WindowKind::Edit:
        switch (message) {
        case EM_SETREADONLY:
            if (wParam) window->style |= ES_READONLY;
            else window->style &= ~static_cast<DWORD>(ES_READONLY);
            return TRUE;
        case EM_LIMITTEXT: window->limitText = static_cast<int>(wParam); return 0;
        case EM_GETSEL:
            if (wParam) *reinterpret_cast<DWORD*>(wParam) = static_cast<DWORD>(window->selectionStart);
            if (lParam) *reinterpret_cast<DWORD*>(lParam) = static_cast<DWORD>(window->selectionEnd);
            return MAKELONG(window->selectionStart, window->selectionEnd);
        case EM_SETSEL: {
            int length = static_cast<int>(ui::ResolvedText(window).size());
            auto start = static_cast<int>(static_cast<INT_PTR>(wParam));
            auto end = static_cast<int>(lParam);
            if (start < 0) {
                window->selectionStart = window->selectionEnd = window->selectionEnd;
                return 0;
            }
            window->selectionStart = std::min(start, length);
            window->selectionEnd = end < 0 ? length : std::min(end, length);
            return 0;
        }
        default: return 0;
        }
    case WindowKind::ListBox:
    case WindowKind::ComboBox: return ListMessage(window, message, wParam, lParam);
    default: return 0;
    }
}

}  // namespace cadhost::ui

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostMessageW(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::SendDlgItemMessage(int nID, UINT message, WPARAM wParam, LPARAM lParam) {
    return ::SendDlgItemMessageW(m_hWnd, nID, message, wParam, lParam);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    CurrentMessage outer = m_current;  // a message sent while handling another
    m_current = CurrentMessage{message, wParam, lParam};
    LRESULT result = 0;
    if (!OnWndMsg(message, wParam, lParam, &result)) result = DefWindowProc(message, wParam, lParam);
    m_current = outer;
    return result;
}

LRESULT CWnd::Default() { return DefWindowProc(m_current.message, m_current.wParam, m_current.lParam); }

void CWnd::OnPaint() { Default(); }

BOOL CWnd::OnSetCursor(CWnd*, UINT, UINT) { return static_cast<BOOL>(Default()); }

void CWnd::OnMouseMove(UINT, CPoint) { Default(); }

void CWnd::OnLButtonDown(UINT, CPoint) { Default(); }

void CWnd::OnLButtonUp(UINT, CPoint) { Default(); }

void CWnd::OnCaptureChanged(CWnd*) { Default(); }

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    LRESULT ignored = 0;
    LRESULT& result = pResult ? *pResult : ignored;
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) return FALSE;
        result = 1;
        return TRUE;
    }
    if (message == WM_NCDESTROY) {
        // The window is gone: the object lets go of it and may end itself.
        Detach();
        PostNcDestroy();
        result = 0;
        return TRUE;
    }
    int depth = 0;
    for (const AFX_MSGMAP* map = GetMessageMap(); map && depth < kMaxMapDepth;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr, ++depth) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry && entry->nSig != AfxSig_end; ++entry) {
            if (!entry->pfn) continue;
            bool match = false;
            if (message >= 0xC000) {
                match = entry->nMessage == 0xC002 && entry->nSig && *reinterpret_cast<const UINT*>(entry->nSig) == message;
            } else {
                match = entry->nMessage == message && entry->nMessage != WM_COMMAND;
            }
            if (!match) continue;
            // The message's parameters, taken apart as each kind of handler wants them.
            auto point = [lParam] {
                return CPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
            };
            switch (message >= 0xC000 ? AfxSig_lwl : entry->nSig) {
            case AfxSig_lwl:
                result = (this->*AfxMsgHandlerAs<LRESULT (CWnd::*)(WPARAM, LPARAM)>(entry->pfn))(wParam, lParam);
                return TRUE;
            case AfxSig_v_v:
                (this->*AfxMsgHandlerAs<void (CWnd::*)()>(entry->pfn))();
                result = 0;
                return TRUE;
            case AfxSig_b_W_u_u:
                result = (this->*AfxMsgHandlerAs<BOOL (CWnd::*)(CWnd*, UINT, UINT)>(entry->pfn))(
                    CWnd::FromHandle(reinterpret_cast<HWND>(wParam)), LOWORD(lParam), HIWORD(lParam));
                return TRUE;
            case AfxSig_v_u_p:
                (this->*AfxMsgHandlerAs<void (CWnd::*)(UINT, CPoint)>(entry->pfn))(static_cast<UINT>(wParam), point());
                result = 0;
                return TRUE;
            case AfxSig_v_W:
                (this->*AfxMsgHandlerAs<void (CWnd::*)(CWnd*)>(entry->pfn))(
                    CWnd::FromHandle(reinterpret_cast<HWND>(lParam)));
                result = 0;
                return TRUE;
            default: continue;
            }
        }
    }
    return FALSE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return cadhost::ui::DefaultWindowProc(m_hWnd, message, wParam, lParam);
}

namespace {

// Asks a command's update handler whether it is enabled now.
class CTestCmdUI : public CCmdUI {
public:
    void Enable(BOOL bOn) override {
        m_bEnabled = bOn;
        m_bEnableChanged = TRUE;
    }
    void SetCheck(int) override {}
    void SetRadio(BOOL) override {}
    void SetText(LPCTSTR) override {}
    BOOL m_bEnabled = TRUE;
};

}  // namespace

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    UINT id = LOWORD(wParam);
    int code = HIWORD(wParam);
    if (lParam == 0) {
        // A menu's command: it must not have been disabled meanwhile.
        if (id == 0) return FALSE;
        CTestCmdUI state;
        state.m_nID = id;
        OnCmdMsg(id, static_cast<int>(CN_UPDATE_COMMAND_UI), &state, nullptr);
        if (!state.m_bEnabled) return FALSE;
        code = CN_COMMAND;
    } else {
        // A control's notification, not handed on while the window
        // exchanges its data.
        Desktop* desktop = TheDesktop();
        if (desktop && desktop->NotifyLockout() == m_hWnd) return TRUE;
        if (id == 0) return FALSE;
    }
    return OnCmdMsg(id, code, nullptr, nullptr);
}

extern "C" {

LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return cadhost::ui::DefaultWindowProc(window, message, wParam, lParam);
}

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    CWnd* object = cadhost::ui::ObjectOf(window);
    return object ? object->WindowProc(message, wParam, lParam) : 0;
}

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!Live(window)) return FALSE;
    TheDesktop()->Post(window, message, wParam, lParam);
    return TRUE;
}

LRESULT WINAPI SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
    return SendMessageW(GetDlgItem(dialog, id), message, wParam, lParam);
}

UINT WINAPI RegisterWindowMessageW(LPCWSTR name) {
    Desktop* desktop = TheDesktop();
    if (!desktop || !name || !*name) return 0;
    return desktop->RegisterMessage(name);
}
}
