#include "services/OsDescription.h"

namespace {

// The edition of an NT-family system that gave only the short record, from
// the product type the registry keeps.
CString EditionFromRegistry() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\ProductOptions", 0, KEY_QUERY_VALUE,
                      &key) != ERROR_SUCCESS)
        return CString();
    WCHAR productType[80] = L"";
    DWORD size = sizeof(productType);
    LONG result = RegQueryValueExW(key, L"ProductType", nullptr, nullptr, reinterpret_cast<LPBYTE>(productType), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS) return CString();
    productType[79] = L'\0';
    if (_wcsicmp(L"WINNT", productType) == 0) return L"Professional ";
    if (_wcsicmp(L"LANMANNT", productType) == 0) return L"Server ";
    if (_wcsicmp(L"SERVERNT", productType) == 0) return L"Advanced Server ";
    return CString();
}

CString EditionFromRecord(const OSVERSIONINFOEXW& info) {
    if (info.wProductType == VER_NT_WORKSTATION)
        return (info.wSuiteMask & VER_SUITE_PERSONAL) ? L"Personal " : L"Professional ";
    if (info.wProductType == VER_NT_SERVER) {
        if (info.wSuiteMask & VER_SUITE_DATACENTER) return L"DataCenter Server ";
        if (info.wSuiteMask & VER_SUITE_ENTERPRISE) return L"Advanced Server ";
        return L"Server ";
    }
    return CString();
}

}  // namespace

CString GetOsDescription() {
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXW);
    BOOL extended = GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info));
    if (!extended) {
        info.dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
        if (!GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info))) return CString();
    }

    CString text;
    switch (info.dwPlatformId) {
    case VER_PLATFORM_WIN32s: text += L"Microsoft Win32s "; break;
    case VER_PLATFORM_WIN32_WINDOWS:
        if (info.dwMajorVersion == 4 && info.dwMinorVersion == 0) {
            text += L"Microsoft Windows 95 ";
            if (info.szCSDVersion[1] == L'B' || info.szCSDVersion[1] == L'C') text += L"OSR2 ";
        } else if (info.dwMajorVersion == 4 && info.dwMinorVersion == 10) {
            text += L"Microsoft Windows 98 ";
            if (info.szCSDVersion[1] == L'A') text += L"SE ";
        } else if (info.dwMajorVersion == 4 && info.dwMinorVersion == 90) {
            text += L"Microsoft Windows Me ";
        }
        break;
    case VER_PLATFORM_WIN32_NT: {
        if (info.dwMajorVersion <= 4) text += L"Microsoft Windows NT ";
        else if (info.dwMajorVersion == 5 && info.dwMinorVersion == 0) text += L"Microsoft Windows 2000 ";
        else if (info.dwMajorVersion == 5 && info.dwMinorVersion == 1) text += L"Microsoft Windows XP ";
        text += extended ? EditionFromRecord(info) : EditionFromRegistry();
        CString last;
        if (info.dwMajorVersion > 4)
            last.Format(L"%s (Build %d)\n", info.szCSDVersion, static_cast<int>(info.dwBuildNumber));
        else
            last.Format(L"version %d.%d %s (Build %d)\n", static_cast<int>(info.dwMajorVersion),
                        static_cast<int>(info.dwMinorVersion), info.szCSDVersion, static_cast<int>(info.dwBuildNumber));
        text += last;
        break;
    }
    default: break;
    }
    return text;
}
