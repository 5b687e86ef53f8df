// Static texts and buttons.
#include <afxwin.h>

#include "ui/Controls.h"

IMPLEMENT_DYNAMIC(CStatic, CWnd)
IMPLEMENT_DYNAMIC(CButton, CWnd)

CStatic::~CStatic() = default;

BOOL CStatic::Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(L"Static", lpszText, dwStyle, rect, pParentWnd, nID);
}

CButton::~CButton() = default;

BOOL CButton::Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(L"Button", lpszCaption, dwStyle, rect, pParentWnd, nID);
}

int CButton::GetCheck() const { return cadhost::ui::GetCheck(m_hWnd); }

void CButton::SetCheck(int nCheck) { cadhost::ui::SetCheck(m_hWnd, nCheck); }

UINT CButton::GetState() const { return static_cast<UINT>(::SendMessageW(m_hWnd, BM_GETSTATE, 0, 0)); }

void CButton::SetState(BOOL bHighlight) { ::SendMessageW(m_hWnd, BM_SETSTATE, bHighlight, 0); }

UINT CButton::GetButtonStyle() const { return static_cast<UINT>(GetStyle() & 0xFFFF); }

void CButton::SetButtonStyle(UINT nStyle, BOOL bRedraw) { ::SendMessageW(m_hWnd, BM_SETSTYLE, nStyle, bRedraw); }
