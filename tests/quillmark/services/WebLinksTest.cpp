// The commands that open web pages, a support mail and the help file: the
// target each hands to the shell.
#include <unistd.h>

#include <cwchar>

#include "plugin/commands/Commands.h"
#include "services/WebLinks.h"
#include "support/ModuleDialogTest.h"

namespace {

class WebLinksTest : public qmtest::ModuleDialogTest {
protected:
    std::wstring Launched() {
        const auto& last = host().shell().Last();
        return last ? last->target : L"(nothing)";
    }
    int LaunchedShow() { return host().shell().Last() ? host().shell().Last()->show : -1; }
};

TEST_F(WebLinksTest, EachPageCommandOpensItsAddress) {
    struct Case {
        void (*command)();
        const wchar_t* target;
    };
    const Case cases[] = {
        {&Quillmark_Website, L"http://www.norvo.example"},
        {&Quillmark_Faq, L"http://www.norvo.example/redirect.php?page=faq&product=quillmark"},
        {&Quillmark_New, L"http://www.norvo.example/redirect.php?page=whatsnew&product=quillmark"},
        {&Quillmark_Demo, L"http://www.norvo.example/redirect.php?page=demo&product=quillmark"},
    };
    size_t count = 0;
    for (const Case& c : cases) {
        c.command();
        EXPECT_EQ(host().shell().Count(), ++count);
        EXPECT_EQ(Launched(), c.target);
        EXPECT_EQ(host().shell().Last()->verb, L"open");
        EXPECT_EQ(LaunchedShow(), SW_SHOWNORMAL);
    }
    OpenFaq(L"otherproduct");
    EXPECT_EQ(Launched(), L"http://www.norvo.example/redirect.php?page=faq&product=otherproduct");
    OpenWhatsNew(L"x");
    EXPECT_EQ(Launched(), L"http://www.norvo.example/redirect.php?page=whatsnew&product=x");
}

TEST_F(WebLinksTest, TheSupportMailNamesSystemPlatformProductAndVersionUnescaped) {
    cadhost::SystemVersion& version = host().systemVersion();
    version.record.dwPlatformId = VER_PLATFORM_WIN32_NT;
    version.record.dwMajorVersion = 6;
    version.record.dwMinorVersion = 1;
    version.record.dwBuildNumber = 7601;
    version.record.wProductType = VER_NT_WORKSTATION;
    version.record.wSuiteMask = 0;
    std::wcscpy(version.record.szCSDVersion, L"Service Pack 1 & \"more\" 100%");
    Quillmark_Support();
    EXPECT_EQ(Launched(),
              L"mailto:support@norvo.example?body= Please provide the following info to help us troubleshooting. "
              L"Thanks. %0a%0d Operation System: Professional Service Pack 1 & \"more\" 100% (Build 7601)\n %0a%0d "
              L"CAD Platform Version: 18.0 (cadhost) %0a%0d Product: Quillmark %0a%0d Product Version: 2.7.1.0 "
              L"%0a%0d Problem Description: (Step by Step) %0a%0d Screenshot(s): (Optional) %0a%0d Please attach "
              L"sample files (.dwg and/or .xls) to help us troubleshooting if applicable. %0a%0d We will working on "
              L"your problem and give you answers ASAP.");
    EXPECT_EQ(LaunchedShow(), SW_SHOWNORMAL);
}

TEST_F(WebLinksTest, TheHelpFileIsLookedForInTheModulesFolderWhateverTheCurrentFolder) {
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.path());
    Quillmark_Help();
    std::filesystem::current_path(before);
    std::filesystem::path expected = std::filesystem::path(QM_OUTPUT_DIR) / "Quillmark.chm";
    EXPECT_EQ(Launched(), cadhost::FromUtf8(expected.string()));
    EXPECT_TRUE(std::filesystem::exists(expected)) << "the build puts the help file beside the module";
    OpenHelpFile(L"Other.chm");
    EXPECT_EQ(Launched(), cadhost::FromUtf8((std::filesystem::path(QM_OUTPUT_DIR) / "Other.chm").string()));
}

}  // namespace
