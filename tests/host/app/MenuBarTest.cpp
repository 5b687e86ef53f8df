#include "app/MenuBar.h"

#include <adsdef.h>
#include <zip.h>

#include <fstream>

#include "support/TestHost.h"

namespace {

// Writes a customization package holding the given MenuGroup.cui text.
void WritePackage(const std::filesystem::path& file, const std::string& cui, const char* partName = "MenuGroup.cui") {
    int error = 0;
    zip_t* archive = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    ASSERT_NE(archive, nullptr);
    zip_source_t* source = zip_source_buffer(archive, cui.data(), cui.size(), 0);
    ASSERT_GE(zip_file_add(archive, partName, source, ZIP_FL_OVERWRITE), 0);
    ASSERT_EQ(zip_close(archive), 0);
}

const char* kGroup = R"(<CustSection><MenuGroup Name="Tools"><PopMenu Alias="pop1" Name="Tools Menu">
<Item Name="Run" Macro="^C^C_RUN"/><Separator/></PopMenu><PopMenu Alias="pop2" Name="Second"/></MenuGroup></CustSection>)";

TEST(MenuBar, QueriesAnswerKeywordWhileTheMenuExists) {
    cadhost::MenuBar bar;
    bar.SetHostMenus(2);
    EXPECT_EQ(bar.MenuCommand(L"P1.1=?"), RTKWORD);
    EXPECT_EQ(bar.MenuCommand(L"p2.1=?"), RTKWORD);
    EXPECT_EQ(bar.MenuCommand(L"P3.1=?"), RTERROR);
    EXPECT_EQ(bar.MenuCommand(L"P0.1=?"), RTERROR);
    EXPECT_EQ(bar.MenuCommand(L"P1.2=?"), RTERROR);  // a host menu has one item here
    for (const wchar_t* bad : {L"", L"P", L"Px.1=?", L"P1.1=", L"Q1.1=?", L"P1=+", L"P1=+nodot", L"P99999999999.1=?"})
        EXPECT_EQ(bar.MenuCommand(bad), RTERROR) << testing::PrintToString(std::wstring(bad));
}

TEST(MenuBar, InsertsAGroupsMenuInFrontOfTheGivenPlace) {
    qmtest::TempFolder folder;
    std::filesystem::path file = folder.path() / "Tools.cuix";
    WritePackage(file, kGroup);
    cadhost::MenuBar bar;
    bar.SetHostMenus(3);
    std::wstring error;
    ASSERT_TRUE(bar.LoadGroup(file, error)) << cadhost::ToUtf8(error);
    EXPECT_TRUE(bar.IsGroupLoaded(L"TOOLS"));
    EXPECT_FALSE(bar.LoadGroup(file, error));  // a group loads once
    EXPECT_EQ(bar.MenuCommand(L"P2=+Tools.pop1"), RTNORM);
    ASSERT_EQ(bar.PullDowns().size(), 4u);
    EXPECT_EQ(bar.PullDowns()[1].title, L"Tools Menu");
    EXPECT_EQ(bar.PullDowns()[1].items.size(), 2u);
    EXPECT_EQ(bar.MenuCommand(L"P9=+tools.POP2"), RTNORM);  // beyond the end: appended
    EXPECT_EQ(bar.PullDowns().back().title, L"Second");
    EXPECT_EQ(bar.MenuCommand(L"P1=+Tools.pop9"), RTERROR);
    EXPECT_EQ(bar.MenuCommand(L"P1=+Other.pop1"), RTERROR);
    EXPECT_EQ(bar.MenuCommand(L"P2=-"), RTNORM);
    EXPECT_EQ(bar.PullDowns()[1].title, L"Edit");
}

TEST(MenuBar, BadPackagesAreRefusedWithAReason) {
    qmtest::TempFolder folder;
    struct Case {
        std::string name;
        std::function<void(const std::filesystem::path&)> make;
        std::wstring reason;
    };
    const Case cases[] = {
        {"plain.cuix", [](const auto& p) { std::ofstream(p) << "not a zip"; }, L"not a customization package"},
        {"other.cuix", [](const auto& p) { WritePackage(p, kGroup, "Other.xml"); }, L"holds no MenuGroup.cui"},
        {"broken.cuix", [](const auto& p) { WritePackage(p, "<CustSection><MenuGroup Name=\"X\">"); }, L"line 1"},
        {"nameless.cuix", [](const auto& p) { WritePackage(p, "<CustSection/>"); }, L"names no menu group"},
        {"missing.cuix", [](const auto&) {}, L"not a customization package"},
    };
    for (const Case& c : cases) {
        std::filesystem::path file = folder.path() / c.name;
        c.make(file);
        cadhost::MenuBar bar;
        std::wstring error;
        EXPECT_FALSE(bar.LoadGroup(file, error)) << c.name;
        EXPECT_NE(error.find(c.reason), std::wstring::npos) << c.name << ": " << cadhost::ToUtf8(error);
    }
}

}  // namespace
