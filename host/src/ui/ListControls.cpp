// List boxes, check list boxes and combo boxes. Their entries live with
// the window; a combo box with an edit part shows the selected entry's text.
#include <afxwin.h>

#include <algorithm>
#include <cwchar>

#include "ui/Controls.h"

namespace ui = cadhost::ui;

IMPLEMENT_DYNAMIC(CListBox, CWnd)
IMPLEMENT_DYNAMIC(CCheckListBox, CListBox)
IMPLEMENT_DYNAMIC(CComboBox, CWnd)

namespace {

int CopyEntry(HWND window, int index, LPTSTR buffer) {
    const ui::ListEntry* entry = ui::Entry(window, index);
    if (!entry) return LB_ERR;
    if (buffer) std::wmemcpy(buffer, entry->text.c_str(), entry->text.size() + 1);
    return static_cast<int>(entry->text.size());
}

}  // namespace

// List boxes.

CListBox::~CListBox() = default;

BOOL CListBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(L"ListBox", nullptr, dwStyle, rect, pParentWnd, nID);
}

int CListBox::GetCount() const { return ui::EntryCount(m_hWnd); }

int CListBox::AddString(LPCTSTR lpszItem) { return ui::AddEntry(m_hWnd, lpszItem ? lpszItem : L""); }

int CListBox::InsertString(int nIndex, LPCTSTR lpszItem) {
    return ui::InsertEntry(m_hWnd, nIndex, lpszItem ? lpszItem : L"");
}

int CListBox::DeleteString(UINT nIndex) { return ui::DeleteEntry(m_hWnd, static_cast<int>(nIndex)); }

void CListBox::ResetContent() { ui::ResetEntries(m_hWnd); }

int CListBox::GetText(int nIndex, LPTSTR lpszBuffer) const { return CopyEntry(m_hWnd, nIndex, lpszBuffer); }

void CListBox::GetText(int nIndex, CString& rString) const {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    rString = entry ? CString(entry->text) : CString();
}

int CListBox::GetTextLen(int nIndex) const { return CopyEntry(m_hWnd, nIndex, nullptr); }

DWORD_PTR CListBox::GetItemData(int nIndex) const {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    return entry ? entry->data : static_cast<DWORD_PTR>(LB_ERR);
}

int CListBox::SetItemData(int nIndex, DWORD_PTR dwItemData) {
    ui::ListEntry* entry = ui::MutableEntry(m_hWnd, nIndex);
    if (!entry) return LB_ERR;
    entry->data = dwItemData;
    return LB_OKAY;
}

void* CListBox::GetItemDataPtr(int nIndex) const { return reinterpret_cast<void*>(GetItemData(nIndex)); }

int CListBox::SetItemDataPtr(int nIndex, void* pData) { return SetItemData(nIndex, reinterpret_cast<DWORD_PTR>(pData)); }

int CListBox::GetCurSel() const { return ui::GetSelection(m_hWnd); }

int CListBox::SetCurSel(int nSelect) { return ui::SetSelection(m_hWnd, nSelect); }

int CListBox::GetSel(int nIndex) const {
    if (!ui::Entry(m_hWnd, nIndex)) return LB_ERR;
    return ui::IsSelected(m_hWnd, nIndex) ? 1 : 0;
}

int CListBox::SetSel(int nIndex, BOOL bSelect) { return ui::SetSelected(m_hWnd, nIndex, bSelect != FALSE); }

int CListBox::GetSelCount() const { return static_cast<int>(::SendMessageW(m_hWnd, LB_GETSELCOUNT, 0, 0)); }

int CListBox::GetSelItems(int nMaxItems, LPINT rgIndex) const {
    return static_cast<int>(::SendMessageW(m_hWnd, LB_GETSELITEMS, static_cast<WPARAM>(nMaxItems),
                                           reinterpret_cast<LPARAM>(rgIndex)));
}

int CListBox::FindString(int nStartAfter, LPCTSTR lpszItem) const {
    return ui::FindEntry(m_hWnd, nStartAfter, lpszItem ? lpszItem : L"", false);
}

int CListBox::FindStringExact(int nIndexStart, LPCTSTR lpszFind) const {
    return ui::FindEntry(m_hWnd, nIndexStart, lpszFind ? lpszFind : L"", true);
}

int CListBox::SelectString(int nStartAfter, LPCTSTR lpszItem) {
    return static_cast<int>(::SendMessageW(m_hWnd, LB_SELECTSTRING, static_cast<WPARAM>(nStartAfter),
                                           reinterpret_cast<LPARAM>(lpszItem ? lpszItem : L"")));
}

int CListBox::GetTopIndex() const { return static_cast<int>(::SendMessageW(m_hWnd, LB_GETTOPINDEX, 0, 0)); }

int CListBox::SetTopIndex(int nIndex) {
    return static_cast<int>(::SendMessageW(m_hWnd, LB_SETTOPINDEX, static_cast<WPARAM>(nIndex), 0));
}

int CListBox::GetHorizontalExtent() const {
    return static_cast<int>(::SendMessageW(m_hWnd, LB_GETHORIZONTALEXTENT, 0, 0));
}

void CListBox::SetHorizontalExtent(int cxExtent) {
    ::SendMessageW(m_hWnd, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(cxExtent), 0);
}

// Check list boxes.

CCheckListBox::~CCheckListBox() = default;

BOOL CCheckListBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CListBox::Create(dwStyle | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS, rect, pParentWnd, nID);
}

void CCheckListBox::PreSubclassWindow() {
    if (::IsWindow(m_hWnd)) m_hWnd->checkList = true;
}

void CCheckListBox::SetCheckStyle(UINT nStyle) {
    if (nStyle != BS_CHECKBOX && nStyle != BS_AUTOCHECKBOX && nStyle != BS_3STATE && nStyle != BS_AUTO3STATE) return;
    if (::IsWindow(m_hWnd)) m_hWnd->checkStyle = nStyle;
}

UINT CCheckListBox::GetCheckStyle() { return ::IsWindow(m_hWnd) ? m_hWnd->checkStyle : BS_AUTOCHECKBOX; }

void CCheckListBox::SetCheck(int nIndex, int nCheck) {
    ui::ListEntry* entry = ui::MutableEntry(m_hWnd, nIndex);
    if (!entry) return;
    bool threeState = m_hWnd->checkStyle == BS_3STATE || m_hWnd->checkStyle == BS_AUTO3STATE;
    entry->check = nCheck == BST_CHECKED || (threeState && nCheck == BST_INDETERMINATE) ? nCheck : BST_UNCHECKED;
}

int CCheckListBox::GetCheck(int nIndex) {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    return entry ? entry->check : 0;
}

void CCheckListBox::Enable(int nIndex, BOOL bEnabled) {
    if (ui::ListEntry* entry = ui::MutableEntry(m_hWnd, nIndex)) entry->enabled = bEnabled != FALSE;
}

BOOL CCheckListBox::IsEnabled(int nIndex) {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    return entry && entry->enabled;
}

// Combo boxes.

CComboBox::~CComboBox() = default;

BOOL CComboBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) {
    return CWnd::Create(L"ComboBox", nullptr, dwStyle, rect, pParentWnd, nID);
}

int CComboBox::GetCount() const { return ui::EntryCount(m_hWnd); }

int CComboBox::AddString(LPCTSTR lpszString) { return ui::AddEntry(m_hWnd, lpszString ? lpszString : L""); }

int CComboBox::InsertString(int nIndex, LPCTSTR lpszString) {
    return ui::InsertEntry(m_hWnd, nIndex, lpszString ? lpszString : L"");
}

int CComboBox::DeleteString(UINT nIndex) { return ui::DeleteEntry(m_hWnd, static_cast<int>(nIndex)); }

void CComboBox::ResetContent() { ui::ResetEntries(m_hWnd); }

int CComboBox::GetLBText(int nIndex, LPTSTR lpszText) const { return CopyEntry(m_hWnd, nIndex, lpszText); }

void CComboBox::GetLBText(int nIndex, CString& rString) const {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    rString = entry ? CString(entry->text) : CString();
}

int CComboBox::GetLBTextLen(int nIndex) const { return CopyEntry(m_hWnd, nIndex, nullptr); }

DWORD_PTR CComboBox::GetItemData(int nIndex) const {
    const ui::ListEntry* entry = ui::Entry(m_hWnd, nIndex);
    return entry ? entry->data : static_cast<DWORD_PTR>(CB_ERR);
}

int CComboBox::SetItemData(int nIndex, DWORD_PTR dwItemData) {
    ui::ListEntry* entry = ui::MutableEntry(m_hWnd, nIndex);
    if (!entry) return CB_ERR;
    entry->data = dwItemData;
    return CB_OKAY;
}

void* CComboBox::GetItemDataPtr(int nIndex) const { return reinterpret_cast<void*>(GetItemData(nIndex)); }

int CComboBox::SetItemDataPtr(int nIndex, void* pData) {
    return SetItemData(nIndex, reinterpret_cast<DWORD_PTR>(pData));
}

int CComboBox::GetCurSel() const { return ui::GetSelection(m_hWnd); }

int CComboBox::SetCurSel(int nSelect) { return ui::SetSelection(m_hWnd, nSelect); }

int CComboBox::FindString(int nStartAfter, LPCTSTR lpszString) const {
    return ui::FindEntry(m_hWnd, nStartAfter, lpszString ? lpszString : L"", false);
}

int CComboBox::FindStringExact(int nIndexStart, LPCTSTR lpszFind) const {
    return ui::FindEntry(m_hWnd, nIndexStart, lpszFind ? lpszFind : L"", true);
}

int CComboBox::SelectString(int nStartAfter, LPCTSTR lpszString) {
    return static_cast<int>(::SendMessageW(m_hWnd, CB_SELECTSTRING, static_cast<WPARAM>(nStartAfter),
                                           reinterpret_cast<LPARAM>(lpszString ? lpszString : L"")));
}

void CComboBox::ShowDropDown(BOOL bShowIt) { ::SendMessageW(m_hWnd, CB_SHOWDROPDOWN, bShowIt, 0); }

BOOL CComboBox::GetDroppedState() const { return static_cast<BOOL>(::SendMessageW(m_hWnd, CB_GETDROPPEDSTATE, 0, 0)); }

int CComboBox::GetDroppedWidth() const { return static_cast<int>(::SendMessageW(m_hWnd, CB_GETDROPPEDWIDTH, 0, 0)); }

int CComboBox::SetDroppedWidth(UINT nWidth) {
    return static_cast<int>(::SendMessageW(m_hWnd, CB_SETDROPPEDWIDTH, nWidth, 0));
}

DWORD CComboBox::GetEditSel() const { return static_cast<DWORD>(::SendMessageW(m_hWnd, CB_GETEDITSEL, 0, 0)); }

BOOL CComboBox::SetEditSel(int nStartChar, int nEndChar) {
    return static_cast<BOOL>(::SendMessageW(m_hWnd, CB_SETEDITSEL, 0, MAKELPARAM(nStartChar, nEndChar)));
}

BOOL CComboBox::LimitText(int nMaxChars) {
    return static_cast<BOOL>(::SendMessageW(m_hWnd, CB_LIMITTEXT, static_cast<WPARAM>(nMaxChars), 0));
}

void CComboBox::Clear() {
    if (!ui::HasEditPart(m_hWnd)) return;
    std::wstring& text = m_hWnd->text;
    size_t start = std::min(text.size(), static_cast<size_t>(std::max(0, std::min(m_hWnd->selectionStart, m_hWnd->selectionEnd))));
    size_t end = std::min(text.size(), static_cast<size_t>(std::max(0, std::max(m_hWnd->selectionStart, m_hWnd->selectionEnd))));
    text.erase(start, end - start);
    m_hWnd->selectionStart = m_hWnd->selectionEnd = static_cast<int>(start);
}
