// The framework's list of recent files: slots in memory, the profile they
// are kept in, and the menu items they become.
#include <afxadv.h>
#include <direct.h>
#include <tchar.h>
#include <winreg.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "shell/PathText.h"

namespace {

// Mnemonics run from &1 to &9, then 1&0; beyond that the framework counts
// on without one, and wraps after its sixteenth.
const int kMnemonicCount = 16;

// The application's profile: the host's own key in the user's settings.
const wchar_t kProfileKey[] = L"Software\\cadhost";

std::wstring EntryName(const CString& format, int number) {
    CString name;
    name.Format(format, number);
    return name.str();
}

// A path no longer than maxLength characters: the root and its first
// folder, "...", and as many of the last elements as fit; where not even
// the file's name fits behind "...", the name alone (or nothing).
std::wstring Abbreviate(const std::wstring& path, int maxLength, bool atLeastName) {
    size_t limit = maxLength > 0 ? static_cast<size_t>(maxLength) : 0;
    if (path.size() <= limit) return path;
    std::vector<std::wstring> elements = cadhost::PathElements(path);
    if (elements.empty()) return atLeastName ? path : std::wstring();
    const std::wstring& name = elements.back();
    if (name.size() > limit) return atLeastName ? name : std::wstring();
    bool absolute = cadhost::IsPathSeparator(path[0]);
    std::wstring head = absolute ? L"/" : L"";
    size_t firstKept = 0;
    if (elements.size() > 2) {  // keep the first folder where there is more
        head += elements[0];
        firstKept = 1;
    }
    std::wstring ellipsis = head + (head.empty() || head == L"/" ? L"..." : L"/...");
    // Add elements from the end while they fit.
    std::wstring tail;
    for (size_t i = elements.size(); i-- > firstKept;) {
        std::wstring longer = L"/" + elements[i] + tail;
        if (ellipsis.size() + longer.size() > limit) break;
        tail = longer;
    }
    if (tail.empty()) return name;
    return ellipsis + tail;
}

}  // namespace

CRecentFileList::CRecentFileList(UINT nStart, LPCTSTR lpszSection, LPCTSTR lpszEntryFormat, int nSize,
                                 int nMaxDispLen)
    : m_strSectionName(lpszSection),
      m_strEntryFormat(lpszEntryFormat),
      m_nStart(nStart),
      m_nMaxDisplayLength(nMaxDispLen),
      m_nSize(nSize > 0 ? nSize : 0),
      m_arrNames(new CString[static_cast<size_t>(nSize > 0 ? nSize : 1)]) {}

CRecentFileList::~CRecentFileList() { delete[] m_arrNames; }

CString& CRecentFileList::operator[](int nIndex) {
    if (nIndex >= 0 && nIndex < m_nSize) return m_arrNames[nIndex];
    m_outside.Empty();
    return m_outside;
}

void CRecentFileList::Remove(int nIndex) {
    if (nIndex < 0 || nIndex >= m_nSize) return;
    for (int i = nIndex; i + 1 < m_nSize; ++i) m_arrNames[i] = m_arrNames[i + 1];
    m_arrNames[m_nSize - 1].Empty();
}

void CRecentFileList::Add(LPCTSTR lpszPathName) {
    if (!lpszPathName || !*lpszPathName || m_nSize == 0) return;
    wchar_t full[MAX_PATH];
    CString path = _wfullpath(full, lpszPathName, MAX_PATH) ? CString(full) : CString(lpszPathName);
    int found = m_nSize - 1;
    for (int i = 0; i + 1 < m_nSize; ++i) {
        if (_wcsicmp(m_arrNames[i], path) == 0) {
            found = i;
            break;
        }
    }
    for (int i = found; i > 0; --i) m_arrNames[i] = m_arrNames[i - 1];
    m_arrNames[0] = path;
}

BOOL CRecentFileList::GetDisplayName(CString& strName, int nIndex, LPCTSTR lpszCurDir, int nCurDir,
                                     BOOL bAtLeastName) const {
    if (nIndex < 0 || nIndex >= m_nSize || m_arrNames[nIndex].IsEmpty()) return FALSE;
    std::wstring path = m_arrNames[nIndex].str();
    size_t nameStart = path.size();
    while (nameStart > 0 && !cadhost::IsPathSeparator(path[nameStart - 1])) --nameStart;
    if (lpszCurDir && nCurDir > 0 && nameStart == static_cast<size_t>(nCurDir) &&
        _wcsnicmp(path.c_str(), lpszCurDir, static_cast<size_t>(nCurDir)) == 0) {
        strName = path.substr(nameStart).c_str();
        return TRUE;
    }
    strName = Abbreviate(path, m_nMaxDisplayLength, bAtLeastName != FALSE).c_str();
    return TRUE;
}

void CRecentFileList::UpdateMenu(CCmdUI* pCmdUI) {
    if (!pCmdUI) return;
    if (m_strOriginal.IsEmpty() && pCmdUI->m_pMenu)
        pCmdUI->m_pMenu->GetMenuString(pCmdUI->m_nID, m_strOriginal, MF_BYCOMMAND);
    if (m_nSize == 0 || m_arrNames[0].IsEmpty()) {
        if (!m_strOriginal.IsEmpty()) pCmdUI->SetText(m_strOriginal);
        pCmdUI->Enable(FALSE);
        return;
    }
    if (!pCmdUI->m_pMenu) return;
    for (int i = 0; i < m_nSize; ++i) pCmdUI->m_pMenu->DeleteMenu(pCmdUI->m_nID + static_cast<UINT>(i), MF_BYCOMMAND);

    std::wstring folder;
    if (wchar_t* current = _wgetcwd(nullptr, 0)) {
        folder = current;
        std::free(current);
        if (folder.empty() || !cadhost::IsPathSeparator(folder.back())) folder += L'/';
    }
    for (int i = 0; i < m_nSize; ++i) {
        CString name;
        if (!GetDisplayName(name, i, folder.c_str(), static_cast<int>(folder.size()))) break;
        name.Replace(L"&", L"&&");  // a lone "&" would underline the next letter
        int number = static_cast<int>((static_cast<UINT>(i) + m_nStart) % kMnemonicCount) + 1;
        CString text;
        if (number > 10) text.Format(L"%d ", number);
        else if (number == 10) text = L"1&0 ";
        else text.Format(L"&%d ", number);
        text += name;
        pCmdUI->m_pMenu->InsertMenu(pCmdUI->m_nIndex++, MF_STRING | MF_BYPOSITION, pCmdUI->m_nID++, text);
    }
    pCmdUI->m_nIndex--;  // the last item put in
    pCmdUI->m_nIndexMax = pCmdUI->m_pMenu->GetMenuItemCount();
    pCmdUI->m_bEnableChanged = TRUE;  // the new items are enabled
}

void CRecentFileList::ReadList() {
    HKEY key = nullptr;
    std::wstring section = std::wstring(kProfileKey) + L"\\" + m_strSectionName.str();
    bool open = RegOpenKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS;
    for (int i = 0; i < m_nSize; ++i) {
        m_arrNames[i].Empty();
        if (!open) continue;
        std::wstring name = EntryName(m_strEntryFormat, i + 1);
        DWORD type = 0, size = 0;
        if (RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_SZ)
            continue;
        std::vector<wchar_t> text(size / sizeof(wchar_t) + 1, L'\0');
        if (RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<LPBYTE>(text.data()), &size) ==
            ERROR_SUCCESS)
            m_arrNames[i] = text.data();
    }
    if (open) RegCloseKey(key);
}

void CRecentFileList::WriteList() {
    HKEY key = nullptr;
    std::wstring section = std::wstring(kProfileKey) + L"\\" + m_strSectionName.str();
    DWORD disposition = 0;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, &disposition) !=
        ERROR_SUCCESS)
        return;
    for (int i = 0; i < m_nSize; ++i) {
        std::wstring name = EntryName(m_strEntryFormat, i + 1);
        // The framework drops the values of free slots.
        if (m_arrNames[i].IsEmpty()) {
            RegDeleteValueW(key, name.c_str());
            continue;
        }
        const CString& text = m_arrNames[i];
        RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.GetString()),
                       static_cast<DWORD>((text.GetLength() + 1) * sizeof(wchar_t)));
    }
    RegCloseKey(key);
}
