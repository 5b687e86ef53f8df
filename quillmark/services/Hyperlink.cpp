#include "services/Hyperlink.h"

#include <shellapi.h>

#include "plugin/ModuleState.h"

namespace {
const wchar_t* const kClassName = L"HyperlinkWnd";
}

BEGIN_MESSAGE_MAP(CHyperlink, CWnd)
    ON_WM_PAINT()
    ON_WM_SETCURSOR()
    ON_WM_MOUSEMOVE()
    ON_WM_CAPTURECHANGED()
    ON_WM_LBUTTONUP()
END_MESSAGE_MAP()

CHyperlink::CHyperlink()
    : m_textColor(0xFF0000), m_hoverColor(255), m_backColor(0), m_normalColor(0), m_underline(0),
      m_cursor(::LoadCursorW(nullptr, IDC_ARROW)) {}

CHyperlink::~CHyperlink() = default;

void CHyperlink::SetColors(COLORREF hover, COLORREF normal, COLORREF back) {
    m_hoverColor = hover;
    m_normalColor = normal;
    m_backColor = back;
}

BOOL CHyperlink::CreateOver(CWnd* placeholder, UINT id) {
    CWnd* parent = placeholder ? placeholder->GetParent() : nullptr;
    if (!parent) return 0;  // nothing to take the place of
    WNDCLASS windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = ::DefWindowProcW;
    windowClass.hInstance = _hdllInstance;
    windowClass.lpszClassName = kClassName;
    if (!AfxRegisterClass(&windowClass)) return 0;

    CRect rect;
    placeholder->GetWindowRect(rect);
    parent->ScreenToClient(rect);
    BOOL created = Create(kClassName, nullptr, WS_CHILD | WS_VISIBLE, rect, parent, id);

    // The placeholder's font, underlined when asked.
    LOGFONT description{};
    if (CFont* font = placeholder->GetFont()) font->GetLogFont(&description);
    if (m_underline) description.lfUnderline = TRUE;
    m_font.DeleteObject();
    m_font.CreateFontIndirect(&description);
    return created;
}

void CHyperlink::OnPaint() {
    CPaintDC dc(this);
    CFont* oldFont = dc.SelectObject(&m_font);
    dc.SetBkColor(m_backColor);
    dc.SetTextColor(m_textColor);
    dc.TextOut(0, 0, m_caption);
    dc.SelectObject(oldFont);
}

BOOL CHyperlink::OnSetCursor(CWnd*, UINT, UINT) {
    ::SetCursor(m_cursor);
    return TRUE;  // nobody else sets one
}

void CHyperlink::OnMouseMove(UINT nFlags, CPoint point) {
    CRect rect;
    GetClientRect(rect);
    if (rect.PtInRect(point)) {
        // The capture brings the move that tells the pointer has left.
        SetCapture();
        m_textColor = m_hoverColor;
    } else {
        m_textColor = m_normalColor;
        ::ReleaseCapture();
    }
    Invalidate();
    CWnd::OnMouseMove(nFlags, point);
}

void CHyperlink::OnCaptureChanged(CWnd* pWnd) {
    if (pWnd != this) {
        m_textColor = m_normalColor;
        ::ReleaseCapture();
        Invalidate();
    }
    CWnd::OnCaptureChanged(pWnd);
}

void CHyperlink::OnLButtonUp(UINT nFlags, CPoint point) {
    ::ShellExecuteW(nullptr, L"open", m_url, nullptr, nullptr, SW_SHOW);
    CWnd::OnLButtonUp(nFlags, point);
}
