// The system's description in the support mail, for every row of its
// tables: the host stands in for each system with the record it answers.
#include <cwchar>

#include "services/OsDescription.h"
#include "support/TestHost.h"

namespace {

class OsDescriptionTest : public qmtest::HostTest {
protected:
    void Answer(DWORD platform, DWORD major, DWORD minor, const wchar_t* servicePack, DWORD build = 2600,
                BYTE productType = VER_NT_WORKSTATION, WORD suite = 0) {
        cadhost::SystemVersion& version = host().systemVersion();
        version = cadhost::SystemVersion{};
        OSVERSIONINFOEXW& r = version.record;
        r.dwOSVersionInfoSize = sizeof r;
        r.dwPlatformId = platform;
        r.dwMajorVersion = major;
        r.dwMinorVersion = minor;
        r.dwBuildNumber = build;
        std::wcsncpy(r.szCSDVersion, servicePack, 127);
        r.wProductType = productType;
        r.wSuiteMask = suite;
    }
    void ProductTypeInRegistry(const wchar_t* type) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\ProductOptions", 0, nullptr,
                                  0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(key, L"ProductType", 0, REG_SZ, reinterpret_cast<const BYTE*>(type),
                                 static_cast<DWORD>((std::wcslen(type) + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
};

TEST_F(OsDescriptionTest, FamiliesBeforeTheNtLine) {
    struct Case {
        DWORD platform, major, minor;
        const wchar_t* servicePack;
        const wchar_t* text;
    };
    const Case cases[] = {
        {0, 3, 1, L"", L"Microsoft Win32s "},
        {1, 4, 0, L"", L"Microsoft Windows 95 "},
        {1, 4, 0, L" B", L"Microsoft Windows 95 OSR2 "},
        {1, 4, 0, L" C", L"Microsoft Windows 95 OSR2 "},
        {1, 4, 0, L"B", L"Microsoft Windows 95 "},  // the second character counts, not the first
        {1, 4, 10, L"", L"Microsoft Windows 98 "},
        {1, 4, 10, L" A", L"Microsoft Windows 98 SE "},
        {1, 4, 90, L" A", L"Microsoft Windows Me "},
        {1, 5, 0, L"", L""},
        {7, 6, 1, L"", L""},
    };
    for (const Case& c : cases) {
        Answer(c.platform, c.major, c.minor, c.servicePack);
        EXPECT_EQ(GetOsDescription().str(), c.text) << c.platform << " " << c.major << "." << c.minor;
    }
}

TEST_F(OsDescriptionTest, TheNtFamilyNamesItsEditionAndBuild) {
    struct Case {
        DWORD major, minor;
        BYTE productType;
        WORD suite;
        const wchar_t* text;
    };
    const Case cases[] = {
        {4, 0, VER_NT_WORKSTATION, 0, L"Microsoft Windows NT Professional version 4.0 Service Pack 6 (Build 1381)\n"},
        {3, 51, VER_NT_SERVER, 0, L"Microsoft Windows NT Server version 3.51 Service Pack 6 (Build 1381)\n"},
        {5, 0, VER_NT_SERVER, VER_SUITE_DATACENTER, L"Microsoft Windows 2000 DataCenter Server Service Pack 6 (Build 1381)\n"},
        {5, 0, VER_NT_SERVER, VER_SUITE_ENTERPRISE, L"Microsoft Windows 2000 Advanced Server Service Pack 6 (Build 1381)\n"},
        {5, 0, VER_NT_SERVER, VER_SUITE_DATACENTER | VER_SUITE_ENTERPRISE,
         L"Microsoft Windows 2000 DataCenter Server Service Pack 6 (Build 1381)\n"},
        {5, 1, VER_NT_WORKSTATION, VER_SUITE_PERSONAL, L"Microsoft Windows XP Personal Service Pack 6 (Build 1381)\n"},
        {5, 1, VER_NT_WORKSTATION, 0, L"Microsoft Windows XP Professional Service Pack 6 (Build 1381)\n"},
        {5, 1, VER_NT_DOMAIN_CONTROLLER, 0, L"Microsoft Windows XP Service Pack 6 (Build 1381)\n"},
        // Windows Server 2003 and every later one: no family name.
        {5, 2, VER_NT_SERVER, 0, L"Server Service Pack 6 (Build 1381)\n"},
        {6, 1, VER_NT_WORKSTATION, 0, L"Professional Service Pack 6 (Build 1381)\n"},
        {10, 0, VER_NT_WORKSTATION, VER_SUITE_PERSONAL, L"Personal Service Pack 6 (Build 1381)\n"},
    };
    for (const Case& c : cases) {
        Answer(VER_PLATFORM_WIN32_NT, c.major, c.minor, L"Service Pack 6", 1381, c.productType, c.suite);
        EXPECT_EQ(GetOsDescription().str(), c.text) << c.major << "." << c.minor;
    }
    Answer(VER_PLATFORM_WIN32_NT, 6, 1, L"Service Pack 1", 7601);
    EXPECT_EQ(GetOsDescription().str(), L"Professional Service Pack 1 (Build 7601)\n");
}

TEST_F(OsDescriptionTest, WithTheShortRecordTheEditionComesFromTheRegistry) {
    struct Case {
        const wchar_t* productType;  // null: no value
        const wchar_t* text;
    };
    const Case cases[] = {{nullptr, L"Microsoft Windows XP  (Build 2600)\n"},
                          {L"WinNT", L"Microsoft Windows XP Professional  (Build 2600)\n"},
                          {L"LANMANNT", L"Microsoft Windows XP Server  (Build 2600)\n"},
                          {L"servernt", L"Microsoft Windows XP Advanced Server  (Build 2600)\n"},
                          {L"Other", L"Microsoft Windows XP  (Build 2600)\n"}};
    for (const Case& c : cases) {
        if (c.productType) ProductTypeInRegistry(c.productType);
        Answer(VER_PLATFORM_WIN32_NT, 5, 1, L"", 2600, VER_NT_SERVER, VER_SUITE_DATACENTER);
        host().systemVersion().extendedAnswers = false;  // the extended record's edition must not show
        EXPECT_EQ(GetOsDescription().str(), c.text) << (c.productType ? cadhost::ToUtf8(c.productType) : "none");
    }
}

TEST_F(OsDescriptionTest, ASystemThatTellsNothingIsDescribedByNothing) {
    host().systemVersion().extendedAnswers = false;
    host().systemVersion().shortAnswers = false;
    EXPECT_EQ(GetOsDescription().str(), L"");
}

TEST_F(OsDescriptionTest, TheRunningSystemIsNamedWithALineBreakAtTheEnd) {
    CString text = GetOsDescription();
    ASSERT_FALSE(text.IsEmpty());
    EXPECT_EQ(text.str().back(), L'\n');
    EXPECT_NE(text.Find(host().systemVersion().record.szCSDVersion), -1) << cadhost::ToUtf8(text.str());
}

}  // namespace
