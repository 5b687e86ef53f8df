// CWnd: an object bound to a window, and what it asks of the window.
#include <afxwin.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cwchar>

#include "ui/Controls.h"
#include "ui/WindowFactory.h"

using cadhost::ui::Desktop;
using cadhost::ui::WindowKind;

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

namespace {

Desktop* TheDesktop() { return Desktop::Current(); }

bool Live(HWND window) {
    Desktop* desktop = TheDesktop();
    return desktop && desktop->IsWindow(window);
}

// The object that FromHandle hands out for a window without a bound one.
std::unique_ptr<CWnd> NewTemporary(HWND window) {
    switch (window->kind) {
    case WindowKind::Button: return std::make_unique<CButton>();
    case WindowKind::Static: return std::make_unique<CStatic>();
    case WindowKind::Edit: return std::make_unique<CEdit>();
    case WindowKind::ListBox:
        if (cadhost::ui::IsCheckList(window)) return std::make_unique<CCheckListBox>();
        return std::make_unique<CListBox>();
    case WindowKind::ComboBox: return std::make_unique<CComboBox>();
    default: return std::make_unique<CWnd>();
    }
}

}  // namespace

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

CWnd::CWnd() : m_hWnd(nullptr) {}

CWnd::~CWnd() {
    if (Live(m_hWnd) && m_hWnd->attached == this) TheDesktop()->Destroy(m_hWnd);
    m_hWnd = nullptr;
}

CWnd* CWnd::FromHandlePermanent(HWND hWnd) { return Live(hWnd) ? hWnd->attached : nullptr; }

CWnd* CWnd::FromHandle(HWND hWnd) {
    if (!Live(hWnd)) return nullptr;
    if (hWnd->attached) return hWnd->attached;
    if (!hWnd->temporary) {
        hWnd->temporary = NewTemporary(hWnd);
        hWnd->temporary->m_hWnd = hWnd;
    }
    return hWnd->temporary.get();
}

BOOL CWnd::Attach(HWND hWndNew) {
    if (!Live(hWndNew) || hWndNew->attached || m_hWnd) return FALSE;
    hWndNew->attached = this;
    m_hWnd = hWndNew;
    return TRUE;
}

HWND CWnd::Detach() {
    HWND window = m_hWnd;
    if (Live(window) && window->attached == this) window->attached = nullptr;
    m_hWnd = nullptr;
    return window;
}

BOOL CWnd::SubclassWindow(HWND hWnd) {
    if (!Attach(hWnd)) return FALSE;
    PreSubclassWindow();
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT nID, CWnd* pParent) {
    HWND control = nullptr;
    if (pParent) pParent->GetDlgItem(static_cast<int>(nID), &control);
    return control && SubclassWindow(control);
}

HWND CWnd::UnsubclassWindow() { return Detach(); }

void CWnd::PreSubclassWindow() {}

void CWnd::PostNcDestroy() {}

BOOL CWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                  UINT nID, CCreateContext*) {
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle, rect, pParentWnd, nID, nullptr);
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                    CWnd* pParentWnd, UINT nID, LPVOID) {
    Desktop* desktop = TheDesktop();
    if (!desktop || m_hWnd) return FALSE;
    cadhost::ui::WindowParams params;
    params.className = lpszClassName ? lpszClassName : L"";
    params.text = lpszWindowName ? lpszWindowName : L"";
    params.style = dwStyle;
    params.exStyle = dwExStyle;
    params.rect = rect;
    params.id = static_cast<int>(nID);
    params.parent = pParentWnd ? pParentWnd->m_hWnd : nullptr;
    if (Live(params.parent)) params.font = params.parent->font;
    HWND window = cadhost::ui::MakeWindow(*desktop, params);
    if (!window) return FALSE;
    window->attached = this;
    m_hWnd = window;
    PreSubclassWindow();
    return TRUE;
}

BOOL CWnd::DestroyWindow() {
    if (!Live(m_hWnd)) return FALSE;
    TheDesktop()->Destroy(m_hWnd);
    return TRUE;
}

DWORD CWnd::GetStyle() const { return Live(m_hWnd) ? m_hWnd->style : 0; }

DWORD CWnd::GetExStyle() const { return Live(m_hWnd) ? m_hWnd->exStyle : 0; }

BOOL CWnd::ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT) {
    if (!Live(m_hWnd)) return FALSE;
    DWORD style = (m_hWnd->style & ~dwRemove) | dwAdd;
    if (style == m_hWnd->style) return FALSE;
    m_hWnd->style = style;
    m_hWnd->frame = cadhost::ui::FrameOf(style, m_hWnd->exStyle, m_hWnd->kind);
    return TRUE;
}

BOOL CWnd::ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT) {
    if (!Live(m_hWnd)) return FALSE;
    DWORD style = (m_hWnd->exStyle & ~dwRemove) | dwAdd;
    if (style == m_hWnd->exStyle) return FALSE;
    m_hWnd->exStyle = style;
    m_hWnd->frame = cadhost::ui::FrameOf(m_hWnd->style, style, m_hWnd->kind);
    return TRUE;
}

BOOL CWnd::EnableWindow(BOOL bEnable) { return ::EnableWindow(m_hWnd, bEnable); }

BOOL CWnd::IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }

BOOL CWnd::ShowWindow(int nCmdShow) { return ::ShowWindow(m_hWnd, nCmdShow); }

BOOL CWnd::IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }

CWnd* CWnd::SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }

CWnd* CWnd::GetFocus() { return FromHandle(::GetFocus()); }

int CWnd::GetDlgCtrlID() const { return Live(m_hWnd) ? m_hWnd->id : 0; }

int CWnd::SetDlgCtrlID(int nID) {
    if (!Live(m_hWnd)) return 0;
    int old = m_hWnd->id;
    m_hWnd->id = nID;
    return old;
}

CWnd* CWnd::GetParent() const { return FromHandle(::GetParent(m_hWnd)); }

CWnd* CWnd::SetParent(CWnd* pWndNewParent) {
    return FromHandle(::SetParent(m_hWnd, pWndNewParent ? pWndNewParent->m_hWnd : nullptr));
}

CWnd* CWnd::GetOwner() const { return Live(m_hWnd) ? FromHandle(m_hWnd->owner ? m_hWnd->owner : m_hWnd->parent) : nullptr; }

void CWnd::SetOwner(CWnd* pOwnerWnd) {
    if (Live(m_hWnd) && !(m_hWnd->style & WS_CHILD)) m_hWnd->owner = pOwnerWnd && Live(pOwnerWnd->m_hWnd) ? pOwnerWnd->m_hWnd : nullptr;
}

CWnd* CWnd::GetTopLevelParent() const {
    HWND top = m_hWnd;
    int guard = 0;
    while (Live(top) && Live(top->parent) && ++guard < 1000) top = top->parent;
    return FromHandle(top);
}

CWnd* CWnd::GetDlgItem(int nID) const { return FromHandle(::GetDlgItem(m_hWnd, nID)); }

void CWnd::GetDlgItem(int nID, HWND* phWnd) const {
    if (phWnd) *phWnd = ::GetDlgItem(m_hWnd, nID);
}

CWnd* CWnd::GetWindow(UINT nCmd) const { return FromHandle(::GetWindow(m_hWnd, nCmd)); }

CWnd* CWnd::GetNextWindow(UINT nFlag) const { return FromHandle(::GetWindow(m_hWnd, nFlag)); }

BOOL CWnd::IsChild(const CWnd* pWnd) const { return pWnd && ::IsChild(m_hWnd, pWnd->m_hWnd); }

void CWnd::SetWindowText(LPCTSTR lpszString) { ::SetWindowTextW(m_hWnd, lpszString); }

int CWnd::GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const {
    return ::GetWindowTextW(m_hWnd, lpszStringBuf, nMaxCount);
}

void CWnd::GetWindowText(CString& rString) const { rString = CString(cadhost::ui::GetText(m_hWnd)); }

int CWnd::GetWindowTextLength() const { return ::GetWindowTextLengthW(m_hWnd); }

void CWnd::SetDlgItemText(int nID, LPCTSTR lpszString) { ::SetDlgItemTextW(m_hWnd, nID, lpszString); }

int CWnd::GetDlgItemText(int nID, LPTSTR lpStr, int nMaxCount) const {
    return static_cast<int>(::GetDlgItemTextW(m_hWnd, nID, lpStr, nMaxCount));
}

int CWnd::GetDlgItemText(int nID, CString& rString) const {
    HWND control = ::GetDlgItem(m_hWnd, nID);
    rString = CString(cadhost::ui::GetText(control));
    return rString.GetLength();
}

UINT CWnd::GetDlgItemInt(int nID, BOOL* lpTrans, BOOL bSigned) const {
    if (lpTrans) *lpTrans = FALSE;
    HWND control = ::GetDlgItem(m_hWnd, nID);
    if (!control) return 0;
    std::wstring text = cadhost::ui::GetText(control);
    size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos) return 0;
    const wchar_t* start = text.c_str() + first;
    wchar_t* end = nullptr;
    errno = 0;
    long long value = bSigned ? std::wcstoll(start, &end, 10) : static_cast<long long>(std::wcstoull(start, &end, 10));
    if (end == start || errno != 0) return 0;
    while (*end == L' ' || *end == L'\t') ++end;
    if (*end) return 0;
    if (bSigned ? (value < INT32_MIN || value > INT32_MAX) : (value < 0 || value > static_cast<long long>(UINT32_MAX)))
        return 0;
    if (!bSigned && text[first] == L'-') return 0;
    if (lpTrans) *lpTrans = TRUE;
    return static_cast<UINT>(value);
}

void CWnd::SetDlgItemInt(int nID, UINT nValue, BOOL bSigned) {
    std::wstring text = bSigned ? std::to_wstring(static_cast<int>(nValue)) : std::to_wstring(nValue);
    ::SetDlgItemTextW(m_hWnd, nID, text.c_str());
}

void CWnd::CheckDlgButton(int nIDButton, UINT nCheck) { ::CheckDlgButton(m_hWnd, nIDButton, nCheck); }

UINT CWnd::IsDlgButtonChecked(int nIDButton) const { return ::IsDlgButtonChecked(m_hWnd, nIDButton); }

void CWnd::CheckRadioButton(int nIDFirstButton, int nIDLastButton, int nIDCheckButton) {
    ::CheckRadioButton(m_hWnd, nIDFirstButton, nIDLastButton, nIDCheckButton);
}

int CWnd::GetCheckedRadioButton(int nIDFirstButton, int nIDLastButton) {
    for (int id = nIDFirstButton; id <= nIDLastButton; ++id) {
        if (::IsDlgButtonChecked(m_hWnd, id)) return id;
    }
    return 0;
}

void CWnd::GetWindowRect(LPRECT lpRect) const { ::GetWindowRect(m_hWnd, lpRect); }

void CWnd::GetClientRect(LPRECT lpRect) const { ::GetClientRect(m_hWnd, lpRect); }

void CWnd::ScreenToClient(LPPOINT lpPoint) const { ::ScreenToClient(m_hWnd, lpPoint); }

void CWnd::ScreenToClient(LPRECT lpRect) const {
    if (!lpRect) return;
    ::ScreenToClient(m_hWnd, reinterpret_cast<LPPOINT>(&lpRect->left));
    ::ScreenToClient(m_hWnd, reinterpret_cast<LPPOINT>(&lpRect->right));
}

void CWnd::ClientToScreen(LPPOINT lpPoint) const { ::ClientToScreen(m_hWnd, lpPoint); }

void CWnd::ClientToScreen(LPRECT lpRect) const {
    if (!lpRect) return;
    ::ClientToScreen(m_hWnd, reinterpret_cast<LPPOINT>(&lpRect->left));
    ::ClientToScreen(m_hWnd, reinterpret_cast<LPPOINT>(&lpRect->right));
}

void CWnd::MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint) {
    ::MoveWindow(m_hWnd, x, y, nWidth, nHeight, bRepaint);
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint) {
    if (lpRect)
        ::MoveWindow(m_hWnd, lpRect->left, lpRect->top, lpRect->right - lpRect->left, lpRect->bottom - lpRect->top,
                     bRepaint);
}

BOOL CWnd::SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags) {
    return ::SetWindowPos(m_hWnd, pWndInsertAfter ? pWndInsertAfter->m_hWnd : nullptr, x, y, cx, cy, nFlags);
}

void CWnd::CenterWindow(CWnd* pAlternateOwner) {
    if (!Live(m_hWnd)) return;
    RECT area{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    HWND around = pAlternateOwner ? pAlternateOwner->m_hWnd : (m_hWnd->parent ? m_hWnd->parent : m_hWnd->owner);
    if (Live(around)) area = cadhost::ui::WindowRect(around);
    RECT mine = cadhost::ui::WindowRect(m_hWnd);
    int width = mine.right - mine.left;
    int height = mine.bottom - mine.top;
    POINT at{(area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2};
    if (m_hWnd->parent) ::ScreenToClient(m_hWnd->parent, &at);
    ::MoveWindow(m_hWnd, at.x, at.y, width, height, TRUE);
}

CFont* CWnd::GetFont() const {
    Desktop* desktop = TheDesktop();
    if (!desktop || !Live(m_hWnd)) return nullptr;
    return desktop->gdi().FontObject(m_hWnd->font);
}

void CWnd::SetFont(CFont* pFont, BOOL) {
    if (Live(m_hWnd) && pFont) SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(pFont->m_hObject), TRUE);
}

CDC* CWnd::GetDC() {
    Desktop* desktop = TheDesktop();
    if (!desktop) return nullptr;
    return desktop->gdi().DCObject(::GetDC(m_hWnd));
}

int CWnd::ReleaseDC(CDC* pDC) {
    if (!pDC) return 0;
    return ::ReleaseDC(m_hWnd, pDC->m_hDC);
}

int CWnd::MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption, UINT nType) {
    return ::MessageBoxW(m_hWnd, lpszText, lpszCaption ? lpszCaption : L"cadhost", nType);
}

void CWnd::Invalidate(BOOL bErase) { ::InvalidateRect(m_hWnd, nullptr, bErase); }

void CWnd::UpdateWindow() { ::UpdateWindow(m_hWnd); }

CWnd* CWnd::SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }

CWnd* CWnd::GetCapture() { return FromHandle(::GetCapture()); }

BOOL AFXAPI AfxRegisterClass(WNDCLASS* lpWndClass) {
    if (!lpWndClass) return FALSE;
    WNDCLASS existing;
    if (::GetClassInfoW(lpWndClass->hInstance, lpWndClass->lpszClassName, &existing)) return TRUE;
    return ::RegisterClassW(lpWndClass) != 0;
}
