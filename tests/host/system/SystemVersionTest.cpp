// What GetVersionExW answers: the running system's pretty name and kernel
// numbers, read from texts of every shape, and the two record sizes.
#include <windows.h>

#include <sys/utsname.h>

#include "support/TestHost.h"
#include "system/SystemVersion.h"

namespace {

TEST(SystemVersionTest, PrettyNamesComeOutOfTheirQuotes) {
    struct Case {
        const char* text;
        const wchar_t* name;
    };
    const Case cases[] = {
        {"NAME=\"Debian\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nID=debian\n", L"Debian GNU/Linux 12 (bookworm)"},
        {"PRETTY_NAME='Single quoted \"x\"'", L"Single quoted \"x\""},
        {"PRETTY_NAME=Bare", L"Bare"},
        {"PRETTY_NAME=\"Escaped \\\"q\\\" \\\\ b\"", L"Escaped \"q\" \\ b"},
        {"  PRETTY_NAME=\"Indented\"  \r\n", L"Indented"},
        {"PRETTY_NAME=\"First\"\nPRETTY_NAME=\"Second\"\n", L"Second"},
        {"NAME=Debian\nVERSION=12\n", L""},
        {"", L""},
        {"XPRETTY_NAME=\"No\"\n", L""},
        {"PRETTY_NAME=\"\xC3\x9C" "ber OS\"", L"\u00DCber OS"},
    };
    for (const Case& c : cases) EXPECT_EQ(cadhost::PrettyNameOf(c.text), c.name) << c.text;
}

TEST(SystemVersionTest, KernelReleasesGiveThreeNumbers) {
    struct Case {
        const char* release;
        DWORD major, minor, patch;
    };
    const Case cases[] = {{"6.1.0-26-amd64", 6, 1, 0},   {"6.18.44-fc-v769", 6, 18, 44}, {"5.15", 5, 15, 0},
                          {"4", 4, 0, 0},                 {"", 0, 0, 0},                   {"x.1.2", 0, 0, 0},
                          {"3.10.0.1", 3, 10, 0},         {"99999999999.1.1", 0xFFFFFFFFu, 1, 1}};
    for (const Case& c : cases) {
        DWORD major = 7, minor = 7, patch = 7;
        cadhost::KernelNumbersOf(c.release, major, minor, patch);
        EXPECT_EQ(major, c.major) << c.release;
        EXPECT_EQ(minor, c.minor) << c.release;
        EXPECT_EQ(patch, c.patch) << c.release;
    }
}

class VersionRecordTest : public qmtest::HostTest {};

TEST_F(VersionRecordTest, TheRunningSystemIsAnNtWorkstationWithTheKernelsNumbers) {
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof info;
    ASSERT_TRUE(GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info)));
    EXPECT_EQ(info.dwOSVersionInfoSize, sizeof info);
    EXPECT_EQ(info.dwPlatformId, static_cast<DWORD>(VER_PLATFORM_WIN32_NT));
    EXPECT_EQ(info.wProductType, VER_NT_WORKSTATION);
    utsname system{};
    ASSERT_EQ(uname(&system), 0);
    DWORD major = 0, minor = 0, patch = 0;
    cadhost::KernelNumbersOf(system.release, major, minor, patch);
    EXPECT_EQ(info.dwMajorVersion, major);
    EXPECT_EQ(info.dwMinorVersion, minor);
    EXPECT_EQ(info.dwBuildNumber, patch);
    EXPECT_NE(info.szCSDVersion[0], L'\0');
}

TEST_F(VersionRecordTest, OnlyTheTwoRecordSizesAreAnswered) {
    OSVERSIONINFOW shortRecord{};
    shortRecord.dwOSVersionInfoSize = sizeof shortRecord;
    EXPECT_TRUE(GetVersionExW(&shortRecord));
    OSVERSIONINFOEXW wrong{};
    wrong.dwOSVersionInfoSize = sizeof(OSVERSIONINFOW) + 1;
    EXPECT_FALSE(GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&wrong)));
    EXPECT_FALSE(GetVersionExW(nullptr));

    host().systemVersion().extendedAnswers = false;
    OSVERSIONINFOEXW extended{};
    extended.dwOSVersionInfoSize = sizeof extended;
    EXPECT_FALSE(GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&extended)));
    EXPECT_TRUE(GetVersionExW(&shortRecord));
}

}  // namespace
