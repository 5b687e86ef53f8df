// The framework's advanced classes: the list of files last opened, kept in
// the application's profile and shown in a menu.
#pragma once

#include "afxwin.h"

// The longest path a menu shows unshortened, in characters.
#define AFX_ABBREV_FILENAME_LEN 30

// Slot 0 holds the file opened last; an empty slot is free, and the list is
// used from the front, so the first empty slot ends it.
class CADHOST_API CRecentFileList {
public:
    // nStart is added to a slot's index for its mnemonic; lpszEntryFormat
    // names a slot's value from its number counted from 1 ("File%d").
    CRecentFileList(UINT nStart, LPCTSTR lpszSection, LPCTSTR lpszEntryFormat, int nSize,
                    int nMaxDispLen = AFX_ABBREV_FILENAME_LEN);
    virtual ~CRecentFileList();
    CRecentFileList(const CRecentFileList&) = delete;
    CRecentFileList& operator=(const CRecentFileList&) = delete;

    int GetSize() const { return m_nSize; }
    // The text of a slot; an index outside the list gives an empty text
    // that belongs to no slot.
    CString& operator[](int nIndex);

    // Takes a slot out; those behind it move up one.
    virtual void Remove(int nIndex);
    // Puts a file in front, made absolute. A file that is in the list
    // already (compared as a path, without regard to case) moves to the
    // front; else the last slot falls out.
    virtual void Add(LPCTSTR lpszPathName);
    // The text a menu shows for a slot: a file in the folder lpszCurDir (of
    // nCurDir characters, ending in a separator) by its name alone, any other
    // shortened to m_nMaxDisplayLength characters, keeping at least the
    // file's name when bAtLeastName is set. FALSE for an empty slot.
    virtual BOOL GetDisplayName(CString& strName, int nIndex, LPCTSTR lpszCurDir, int nCurDir,
                                BOOL bAtLeastName = TRUE) const;
    // Replaces the menu item of pCmdUI (at m_nIndex, with m_nID) by one item
    // a used slot, "&1 " to "&9 " before the display name, with ids from
    // m_nID on; with slot 0 empty the item stays, inactive.
    virtual void UpdateMenu(CCmdUI* pCmdUI);
    // Read and write the slots in the application's profile, a value a slot
    // below m_strSectionName.
    virtual void ReadList();
    virtual void WriteList();

    CString m_strSectionName;
    CString m_strEntryFormat;
    UINT m_nStart;
    int m_nMaxDisplayLength;
    CString m_strOriginal;  // the text of the menu item the entries replace

protected:
    int m_nSize;
    CString* m_arrNames;

private:
    CString m_outside;
};
