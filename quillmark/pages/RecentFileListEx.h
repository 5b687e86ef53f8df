// The list of the files last chosen on a page that points a field at a
// file, kept in the module's settings, and the ">" menu that offers it.
#pragma once

#include "StdAfx.h"

#include <afxadv.h>

// The framework's list, kept in the module's own settings store instead of
// the application's profile: a string value a slot, "File1" the newest.
class CRecentFileListEx : public CRecentFileList {
public:
    CRecentFileListEx(UINT firstNumber, LPCTSTR section, LPCTSTR entryFormat, int capacity, int maxDisplayLength);
    ~CRecentFileListEx() override;

    // Every slot from the store; a value that is missing or cannot be read
    // gives an empty slot.
    void ReadList() override;
    // Every slot into the store, a free one as an empty string.
    void WriteList() override;
};

// The section and entry format of each page's list.
#define QM_TEXTFILE_RECENT_SECTION L"Quillmark\\TextFile\\Recent File List"
#define QM_EXCEL_RECENT_SECTION L"Quillmark\\ExcelCell\\Recent File List"
#define QM_RECENT_ENTRY_FORMAT L"File%d"
#define QM_RECENT_CAPACITY 9
#define QM_RECENT_DISPLAY_LENGTH 30

// The popup of the page's ">" button (IDC_RECENT_FILES), left-aligned under
// it: the list's files, or the inactive "Recent file" while slot 0 is
// empty. A chosen entry comes to the page as its command, ID_RECENT_FILE_FIRST
// plus the slot's index.
void ShowRecentFileMenu(CWnd* page, CRecentFileListEx& list);

// The path of a menu entry's command; FALSE, leaving path alone, for an id
// outside the menu's range or an empty slot. The list's order stays.
BOOL GetRecentFile(CRecentFileListEx& list, UINT id, CString& path);
