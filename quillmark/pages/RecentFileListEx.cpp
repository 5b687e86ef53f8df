#include "pages/RecentFileListEx.h"

#include "plugin/ModuleState.h"
#include "resources/resource.h"
#include "services/Registry.h"

CRecentFileListEx::CRecentFileListEx(UINT firstNumber, LPCTSTR section, LPCTSTR entryFormat, int capacity,
                                     int maxDisplayLength)
    : CRecentFileList(firstNumber, section, entryFormat, capacity, maxDisplayLength) {}

CRecentFileListEx::~CRecentFileListEx() = default;

void CRecentFileListEx::ReadList() {
    for (int i = 0; i < m_nSize; ++i) {
        CString name;
        name.Format(m_strEntryFormat, i + 1);
        m_arrNames[i] = CRegistry::GetProfileString(m_strSectionName, name, L"");
    }
}

void CRecentFileListEx::WriteList() {
    for (int i = 0; i < m_nSize; ++i) {
        CString name;
        name.Format(m_strEntryFormat, i + 1);
        CRegistry::WriteProfileString(m_strSectionName, name, m_arrNames[i]);
    }
}

void ShowRecentFileMenu(CWnd* page, CRecentFileListEx& list) {
    if (!page) return;
    CRect button(0, 0, 0, 0);
    if (CWnd* control = page->GetDlgItem(IDC_RECENT_FILES)) control->GetWindowRect(&button);
    ModuleResourceScope scope;
    CMenu menu;
    if (!menu.LoadMenu(IDR_RECENT_FILES_MENU)) return;
    CMenu* popup = menu.GetSubMenu(0);
    if (popup) {
        CCmdUI item;
        item.m_pMenu = popup;
        item.m_nIndexMax = popup->GetMenuItemCount();
        item.m_nIndex = 0;
        item.m_nID = ID_RECENT_FILE_FIRST;
        // With slot 0 empty the popup keeps its one inactive item.
        if (!list[0].IsEmpty()) list.UpdateMenu(&item);
        popup->TrackPopupMenu(0, button.left, button.bottom, page);
    }
    menu.DestroyMenu();
}

BOOL GetRecentFile(CRecentFileListEx& list, UINT id, CString& path) {
    if (id < ID_RECENT_FILE_FIRST || id > ID_RECENT_FILE_LAST) return FALSE;
    int index = static_cast<int>(id - ID_RECENT_FILE_FIRST);
    if (index >= list.GetSize() || list[index].IsEmpty()) return FALSE;
    path = list[index];
    return TRUE;
}
