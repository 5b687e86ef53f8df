#include "services/Registry.h"

HKEY CRegistry::m_rootKey = nullptr;
CString CRegistry::m_appKeyPath;
CString CRegistry::m_platformWord = L"ACAD";

namespace {

const REGSAM kAccess = 0x2001F;

CString ReadMachineText(HKEY key, LPCTSTR name) {
    DWORD type = 0, size = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS || type != REG_SZ || size == 0)
        return CString();
    CString text;
    LPWSTR buffer = text.GetBuffer(static_cast<int>(size / sizeof(WCHAR)) + 1);
    LONG result = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &size);
    text.ReleaseBuffer();
    return result == ERROR_SUCCESS ? text : CString();
}

// Matches an edition text against the years given; the first match names the path.
bool MatchEdition(const CString& edition, const CString& editionLT, const int* years, int count, CString& path,
                  bool& lite) {
    for (int i = 0; i < count; ++i) {
        CString name, nameLT;
        name.Format(L"Norvo%d", years[i]);
        nameLT.Format(L"NorvoLT%d", years[i]);
        if (edition.CompareNoCase(name) == 0) {
            path.Format(L"Norvo\\Norvo%d", years[i]);
            lite = false;
            return true;
        }
        if (editionLT.CompareNoCase(nameLT) == 0) {
            path.Format(L"Norvo\\LT%d", years[i]);
            lite = true;
            return true;
        }
    }
    return false;
}

}  // namespace

void CRegistry::OpenSettings() {
    CString edition, editionLT;
    HKEY machine = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Norvo", 0, KEY_QUERY_VALUE, &machine) == ERROR_SUCCESS) {
        edition = ReadMachineText(machine, L"Quillmark");
        editionLT = ReadMachineText(machine, L"QuillmarkLT");
        RegCloseKey(machine);
    }
    CString path = L"Norvo\\NorvoTest";
    bool lite = false;
    static const int recent[] = {2011, 2010, 2009};
    static const int older[] = {2008, 2007, 2006, 2005, 2004, 2000};
    MatchEdition(edition, editionLT, recent, 3, path, lite);
    MatchEdition(edition, editionLT, older, 6, path, lite);  // a match here replaces one above
    SetRegistryKey(HKEY_CURRENT_USER, path);
    m_platformWord = lite ? L"ACADLT" : L"ACAD";
}

void CRegistry::SetRegistryKey(HKEY rootKey, LPCTSTR applicationKeyPath) {
    m_rootKey = rootKey;
    m_appKeyPath = applicationKeyPath;
}

HKEY CRegistry::GetAppKey() {
    if (m_appKeyPath.IsEmpty()) return nullptr;
    HKEY software = nullptr, appKey = nullptr;
    if (RegOpenKeyExW(m_rootKey, L"software", 0, kAccess, &software) != ERROR_SUCCESS) return nullptr;
    DWORD disposition = 0;
    RegCreateKeyExW(software, m_appKeyPath, 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess, nullptr, &appKey,
                    &disposition);
    RegCloseKey(software);
    return appKey;
}

HKEY CRegistry::GetSectionKey(LPCTSTR section) {
    HKEY appKey = GetAppKey();
    if (!appKey) return nullptr;
    if (!section || !*section) return appKey;
    HKEY sectionKey = nullptr;
    DWORD disposition = 0;
    RegCreateKeyExW(appKey, section, 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess, nullptr, &sectionKey,
                    &disposition);
    RegCloseKey(appKey);
    return sectionKey;
}

UINT CRegistry::GetProfileInt(LPCTSTR section, LPCTSTR entry, int defaultValue) {
    if (m_appKeyPath.IsEmpty()) return defaultValue;
    HKEY key = GetSectionKey(section);
    if (!key) return defaultValue;
    DWORD value = 0, type = 0, size = sizeof value;
    LONG result = RegQueryValueExW(key, entry, nullptr, &type, reinterpret_cast<LPBYTE>(&value), &size);
    RegCloseKey(key);
    return result == ERROR_SUCCESS ? value : static_cast<UINT>(defaultValue);
}

CString CRegistry::GetProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR defaultValue) {
    if (m_appKeyPath.IsEmpty()) return CString(defaultValue);
    HKEY key = GetSectionKey(section);
    if (!key) return CString(defaultValue);
    CString value;
    DWORD type = 0, size = 0;
    LONG result = RegQueryValueExW(key, entry, nullptr, &type, nullptr, &size);
    if (result == ERROR_SUCCESS) {
        LPWSTR buffer = value.GetBuffer(static_cast<int>(size / sizeof(WCHAR)) + 1);
        result = RegQueryValueExW(key, entry, nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &size);
        value.ReleaseBuffer();
    }
    RegCloseKey(key);
    return result == ERROR_SUCCESS ? value : CString(defaultValue);
}

BOOL CRegistry::WriteProfileInt(LPCTSTR section, LPCTSTR entry, int value) {
    if (m_appKeyPath.IsEmpty()) return FALSE;
    HKEY key = GetSectionKey(section);
    if (!key) return FALSE;
    DWORD data = static_cast<DWORD>(value);
    LONG result = RegSetValueExW(key, entry, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&data), sizeof data);
    RegCloseKey(key);
    return result == ERROR_SUCCESS;
}

BOOL CRegistry::WriteProfileString(LPCTSTR section, LPCTSTR entry, LPCTSTR value) {
    if (m_appKeyPath.IsEmpty()) return FALSE;
    LONG result;
    if (!entry) {
        HKEY appKey = GetAppKey();
        if (!appKey) return FALSE;
        result = RegDeleteKeyW(appKey, section);
        RegCloseKey(appKey);
        return result == ERROR_SUCCESS;
    }
    HKEY key = GetSectionKey(section);
    if (!key) return FALSE;
    if (!value) {
        result = RegDeleteValueW(key, entry);
    } else {
        result = RegSetValueExW(key, entry, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                                static_cast<DWORD>((wcslen(value) + 1) * sizeof(WCHAR)));
    }
    RegCloseKey(key);
    return result == ERROR_SUCCESS;
}
