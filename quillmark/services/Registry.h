// The module's settings: named integer and string values in the per-user
// registry tree, below software\<application key path>\<section>.
#pragma once

#include "StdAfx.h"

class CRegistry {
public:
    virtual ~CRegistry() = default;

    // Chooses the application key path by the edition installed, and the
    // platform word ("ACAD" or "ACADLT") that the update check uses.
    static void OpenSettings();
    static void SetRegistryKey(HKEY rootKey, LPCTSTR applicationKeyPath);

    static HKEY GetAppKey();
    static HKEY GetSectionKey(LPCTSTR section);

    static UINT GetProfileInt(LPCTSTR section, LPCTSTR entry, int defaultValue);
    static CString GetProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR defaultValue = nullptr);
    static BOOL WriteProfileInt(LPCTSTR section, LPCTSTR entry, int value);
    static BOOL WriteProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR value);

    static const CString& PlatformWord() { return m_platformWord; }
    static const CString& ApplicationKeyPath() { return m_appKeyPath; }

private:
    static HKEY m_rootKey;
    static CString m_appKeyPath;
    static CString m_platformWord;
};
