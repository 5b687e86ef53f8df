// Edit boxes.
#include <afxwin.h>

#include <algorithm>

#include "ui/Controls.h"

IMPLEMENT_DYNAMIC(CEdit, CWnd)

CEdit::~CEdit() = default;

BOOL CEdit::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(L"Edit", nullptr, dwStyle, rect, pParentWnd, nID);
}

BOOL CEdit::SetReadOnly(BOOL bReadOnly) { return static_cast<BOOL>(::SendMessageW(m_hWnd, EM_SETREADONLY, bReadOnly, 0)); }

void CEdit::SetSel(int nStartChar, int nEndChar, BOOL) {
    ::SendMessageW(m_hWnd, EM_SETSEL, static_cast<WPARAM>(nStartChar), nEndChar);
}

void CEdit::GetSel(int& nStartChar, int& nEndChar) const {
    DWORD start = 0, end = 0;
    ::SendMessageW(m_hWnd, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    nStartChar = static_cast<int>(start);
    nEndChar = static_cast<int>(end);
}

void CEdit::ReplaceSel(LPCTSTR lpszNewText, BOOL) {
    if (!::IsWindow(m_hWnd)) return;
    std::wstring text = cadhost::ui::ResolvedText(m_hWnd);
    size_t start = std::min<size_t>(static_cast<size_t>(std::max(0, std::min(m_hWnd->selectionStart, m_hWnd->selectionEnd))), text.size());
    size_t end = std::min<size_t>(static_cast<size_t>(std::max(0, std::max(m_hWnd->selectionStart, m_hWnd->selectionEnd))), text.size());
    std::wstring inserted = lpszNewText ? lpszNewText : L"";
    text.replace(start, end - start, inserted);
    cadhost::ui::SetText(m_hWnd, text);
    if (::IsWindow(m_hWnd)) m_hWnd->selectionStart = m_hWnd->selectionEnd = static_cast<int>(start + inserted.size());
}

void CEdit::LimitText(int nChars) { ::SendMessageW(m_hWnd, EM_LIMITTEXT, static_cast<WPARAM>(nChars), 0); }

UINT CEdit::GetLimitText() const {
    return ::IsWindow(m_hWnd) && m_hWnd->limitText > 0 ? static_cast<UINT>(m_hWnd->limitText) : 30000u;
}

void CEdit::Clear() {
    if (::IsWindow(m_hWnd) && m_hWnd->selectionStart != m_hWnd->selectionEnd) ReplaceSel(L"");
}
