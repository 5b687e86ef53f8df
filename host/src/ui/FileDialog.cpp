// The file dialog: the path comes from the host's user interface.
#include <afxdlgs.h>

#include <cwchar>
#include <filesystem>

#include "core/Utf8.h"
#include "ui/Desktop.h"

IMPLEMENT_DYNAMIC(CCommonDialog, CDialog)
IMPLEMENT_DYNAMIC(CFileDialog, CCommonDialog)

CFileDialog::CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt, LPCTSTR lpszFileName, DWORD dwFlags,
                         LPCTSTR lpszFilter, CWnd* pParentWnd, DWORD, BOOL)
    : CCommonDialog(pParentWnd), m_ofn{}, m_bOpenFileDialog(bOpenFileDialog) {
    m_szFileName[0] = L'\0';
    m_szFileTitle[0] = L'\0';
    if (lpszFileName) {
        std::wcsncpy(m_szFileName, lpszFileName, MAX_PATH - 1);
        m_szFileName[MAX_PATH - 1] = L'\0';
    }
    m_strFilter = lpszFilter;
    m_defaultExt = lpszDefExt;
    // The record carries the filter with its '|' turned into zeros.
    m_filterBuffer = m_strFilter;
    m_filterBuffer.Replace(L'|', L'\0');
    m_ofn.lStructSize = sizeof(m_ofn);
    m_ofn.hwndOwner = pParentWnd ? pParentWnd->m_hWnd : nullptr;
    m_ofn.lpstrFilter = lpszFilter ? m_filterBuffer.GetString() : nullptr;
    m_ofn.nFilterIndex = 1;
    m_ofn.lpstrFile = m_szFileName;
    m_ofn.nMaxFile = MAX_PATH;
    m_ofn.lpstrFileTitle = m_szFileTitle;
    m_ofn.nMaxFileTitle = MAX_PATH;
    m_ofn.lpstrDefExt = lpszDefExt ? m_defaultExt.GetString() : nullptr;
    m_ofn.Flags = dwFlags | OFN_ENABLEHOOK | OFN_EXPLORER;
}

INT_PTR CFileDialog::DoModal() {
    cadhost::ui::Desktop* desktop = cadhost::ui::Desktop::Current();
    if (!desktop) return IDCANCEL;
    cadhost::ui::FileDialogRequest request;
    request.open = m_bOpenFileDialog != FALSE;
    request.title = m_ofn.lpstrTitle ? m_ofn.lpstrTitle : (request.open ? L"Open" : L"Save As");
    request.filter = m_strFilter.str();
    request.defaultExt = m_defaultExt.str();
    request.initialName = m_ofn.lpstrFile ? std::wstring(m_ofn.lpstrFile) : L"";
    request.flags = m_ofn.Flags;
    cadhost::ui::UiDriver& driver = desktop->driver();
    if (!driver.Abandoning())
        desktop->Show(L"[" + request.title + L"] " + (request.filter.empty() ? L"All files" : request.filter));
    std::optional<std::wstring> chosen = driver.AnswerFileDialog(request);
    if (!chosen || chosen->empty()) return IDCANCEL;
    std::wstring path = *chosen;
    if (!m_defaultExt.IsEmpty() && std::filesystem::path(cadhost::ToUtf8(path)).extension().empty())
        path += L"." + m_defaultExt.str();
    // The dialog answers in the record's buffer; a path that does not fit
    // is refused, as the platform's dialog refuses it.
    if (!m_ofn.lpstrFile || path.size() + 1 > m_ofn.nMaxFile) return IDCANCEL;
    std::wmemcpy(m_ofn.lpstrFile, path.c_str(), path.size() + 1);
    size_t slash = path.find_last_of(L"/\\");
    size_t name = slash == std::wstring::npos ? 0 : slash + 1;
    size_t dot = path.find_last_of(L'.');
    m_ofn.nFileOffset = static_cast<WORD>(name);
    m_ofn.nFileExtension = static_cast<WORD>(dot == std::wstring::npos || dot < name ? path.size() : dot + 1);
    if (m_ofn.lpstrFileTitle && m_ofn.nMaxFileTitle > 0) {
        std::wstring title = path.substr(name);
        size_t n = std::min<size_t>(title.size(), m_ofn.nMaxFileTitle - 1);
        std::wmemcpy(m_ofn.lpstrFileTitle, title.c_str(), n);
        m_ofn.lpstrFileTitle[n] = L'\0';
    }
    return IDOK;
}

CString CFileDialog::GetPathName() const { return m_ofn.lpstrFile ? CString(m_ofn.lpstrFile) : CString(); }

CString CFileDialog::GetFileName() const {
    CString path = GetPathName();
    int slash = std::max(path.ReverseFind(L'/'), path.ReverseFind(L'\\'));
    return path.Mid(slash + 1);
}

CString CFileDialog::GetFileExt() const {
    CString name = GetFileName();
    int dot = name.ReverseFind(L'.');
    return dot < 0 ? CString() : name.Mid(dot + 1);
}

CString CFileDialog::GetFileTitle() const {
    CString name = GetFileName();
    int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

CString CFileDialog::GetFolderPath() const {
    CString path = GetPathName();
    int slash = std::max(path.ReverseFind(L'/'), path.ReverseFind(L'\\'));
    return slash < 0 ? CString() : path.Left(slash);
}
