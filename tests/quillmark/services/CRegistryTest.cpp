#include "services/Registry.h"

#include "support/TestHost.h"

namespace {

class CRegistryTest : public qmtest::HostTest {
protected:
    void TearDown() override {
        CRegistry::SetRegistryKey(nullptr, L"");  // closed again for the next test
        qmtest::HostTest::TearDown();
    }
    void SetEdition(const wchar_t* name, const wchar_t* value) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Norvo", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                                  nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                                 static_cast<DWORD>((wcslen(value) + 1) * sizeof(WCHAR))),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
};

TEST_F(CRegistryTest, AClosedStoreGivesDefaultsAndCreatesNothing) {
    CRegistry::SetRegistryKey(nullptr, L"");
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark", L"BlockSource", 7), 7u);
    EXPECT_STREQ(CRegistry::GetProfileString(L"Quillmark", L"X", L"dflt"), L"dflt");
    EXPECT_FALSE(CRegistry::WriteProfileInt(L"Quillmark", L"BlockSource", 1));
    EXPECT_FALSE(CRegistry::WriteProfileString(L"Quillmark", L"X", L"v"));
    EXPECT_EQ(CRegistry::GetAppKey(), nullptr);
}

TEST_F(CRegistryTest, TheEditionChoosesThePathAndThePlatformWord) {
    struct Case {
        const wchar_t* edition;
        const wchar_t* editionLT;
        const wchar_t* path;
        const wchar_t* word;
    };
    const Case cases[] = {
        {nullptr, nullptr, L"Norvo\\NorvoTest", L"ACAD"},
        {L"norvo2011", nullptr, L"Norvo\\Norvo2011", L"ACAD"},
        {nullptr, L"NorvoLT2010", L"Norvo\\LT2010", L"ACADLT"},
        {L"Norvo2009", L"NorvoLT2009", L"Norvo\\Norvo2009", L"ACAD"},  // the full edition is compared first
        {L"Norvo2011", L"NorvoLT2005", L"Norvo\\LT2005", L"ACADLT"},   // an older match replaces a newer one
        {L"Norvo2012", nullptr, L"Norvo\\NorvoTest", L"ACAD"},
        {L"Norvo2000", nullptr, L"Norvo\\Norvo2000", L"ACAD"},
    };
    for (const Case& c : cases) {
        RestartHost();
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS) {
            HKEY norvo = nullptr;
            if (RegOpenKeyExW(key, L"Norvo", 0, KEY_ALL_ACCESS, &norvo) == ERROR_SUCCESS) {
                RegDeleteValueW(norvo, L"Quillmark");
                RegDeleteValueW(norvo, L"QuillmarkLT");
                RegCloseKey(norvo);
            }
            RegCloseKey(key);
        }
        if (c.edition) SetEdition(L"Quillmark", c.edition);
        if (c.editionLT) SetEdition(L"QuillmarkLT", c.editionLT);
        CRegistry::OpenSettings();
        EXPECT_STREQ(CRegistry::ApplicationKeyPath(), c.path);
        EXPECT_STREQ(CRegistry::PlatformWord(), c.word);
    }
}

TEST_F(CRegistryTest, ValuesLiveBelowTheApplicationKey) {
    CRegistry::OpenSettings();
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark\\AreaField", L"Circle", 1), 1u);
    // A read creates the section, empty.
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"software\\Norvo\\NorvoTest\\Quillmark\\AreaField", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);

    EXPECT_TRUE(CRegistry::WriteProfileInt(L"Quillmark\\AreaField", L"Circle", 0));
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark\\AreaField", L"Circle", 1), 0u);
    EXPECT_TRUE(CRegistry::WriteProfileInt(L"Quillmark", L"BlockSource", 5));  // no range check
    EXPECT_EQ(CRegistry::GetProfileInt(L"Quillmark", L"BlockSource", 0), 5u);

    const wchar_t* recent = L"Quillmark\\TextFile\\Recent File List";
    EXPECT_TRUE(CRegistry::WriteProfileString(recent, L"File1", L"/data/notes.txt"));
    EXPECT_TRUE(CRegistry::WriteProfileString(recent, L"File2", L""));
    EXPECT_STREQ(CRegistry::GetProfileString(recent, L"File1", L""), L"/data/notes.txt");
    EXPECT_STREQ(CRegistry::GetProfileString(recent, L"File2", L"dflt"), L"");
    EXPECT_STREQ(CRegistry::GetProfileString(recent, L"File3", L"dflt"), L"dflt");
    EXPECT_TRUE(CRegistry::WriteProfileString(recent, L"File1", nullptr));
    EXPECT_STREQ(CRegistry::GetProfileString(recent, L"File1", L"gone"), L"gone");
    EXPECT_TRUE(CRegistry::WriteProfileString(recent, nullptr, nullptr));
    EXPECT_STREQ(CRegistry::GetProfileString(recent, L"File2", L"section gone"), L"section gone");
}

}  // namespace
