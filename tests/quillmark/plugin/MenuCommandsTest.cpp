// The module's menu file: each of the nine items of its pull-down runs one
// of the nine commands, and each command does what its item says.
#include <set>

#include "app/MenuFile.h"
#include "support/DialogTestSupport.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

class MenuCommandsTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        host().desktop().SetDriver(&m_driver);
        // The dialogs close as soon as they show.
        m_driver.onModal = [](HWND dialog) { ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0); };
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "Quillmark.arx").string()).c_str(), true));
    }
    void TearDown() override {
        host().desktop().SetDriver(nullptr);
        HostTest::TearDown();
    }
    qmtest::TestDriver m_driver;
};

TEST_F(MenuCommandsTest, TheNineItemsRunTheNineCommands) {
    std::wstring error;
    std::optional<cadhost::MenuGroup> group = cadhost::ReadMenuFile(kBin / "Quillmark.cuix", error);
    ASSERT_TRUE(group) << cadhost::ToUtf8(error);
    EXPECT_EQ(group->name, L"Quillmark");
    const cadhost::PopMenu* pop = nullptr;
    for (const auto& menu : group->menus) {
        if (menu.alias == L"pop1") pop = &menu;
    }
    ASSERT_NE(pop, nullptr);

    // What each command is seen to do: the target it hands to the shell,
    // or the dialog it shows.
    struct Effect {
        const wchar_t* command;
        const wchar_t* target;  // null: a dialog, or nothing to see
        int dialogs;
    };
    const Effect effects[] = {
        {L"_Quillmark_Website", L"http://www.norvo.example", 0},
        {L"_Quillmark_Faq", L"http://www.norvo.example/redirect.php?page=faq&product=quillmark", 0},
        {L"_Quillmark_New", L"http://www.norvo.example/redirect.php?page=whatsnew&product=quillmark", 0},
        {L"_Quillmark_Demo", L"http://www.norvo.example/redirect.php?page=demo&product=quillmark", 0},
        {L"_Quillmark_Help", nullptr, 0},
        {L"_Quillmark_Support", nullptr, 0},
        {L"_Quillmark_Live_Update", nullptr, 1},
        {L"_Quillmark_Test", nullptr, 0},
        {L"_Quillmark_About", nullptr, 1},
    };
    std::set<std::wstring> run;
    for (const cadhost::MenuItem& item : pop->items) {
        if (item.label.empty()) continue;  // a separator
        ASSERT_EQ(item.macro.rfind(L"^C^C", 0), 0u) << cadhost::ToUtf8(item.macro);
        std::wstring command = item.macro.substr(4);
        const Effect* effect = nullptr;
        for (const Effect& e : effects) {
            if (command == e.command) effect = &e;
        }
        ASSERT_NE(effect, nullptr) << cadhost::ToUtf8(item.label) << " runs " << cadhost::ToUtf8(command);
        EXPECT_TRUE(run.insert(command).second) << cadhost::ToUtf8(command) << " is on the menu twice";

        size_t launches = host().shell().Count();
        int dialogs = m_driver.modalRuns;
        EXPECT_TRUE(host().processor().RunCommand(command)) << cadhost::ToUtf8(command);
        host().processor().RunIdle();
        EXPECT_EQ(m_driver.modalRuns - dialogs, effect->dialogs) << cadhost::ToUtf8(command);
        if (command == L"_Quillmark_Help") {
            ASSERT_EQ(host().shell().Count(), launches + 1);
            EXPECT_EQ(host().shell().Last()->target, cadhost::FromUtf8((kBin / "Quillmark.chm").string()));
        } else if (command == L"_Quillmark_Support") {
            ASSERT_EQ(host().shell().Count(), launches + 1);
            EXPECT_EQ(host().shell().Last()->target.rfind(L"mailto:support@norvo.example?body= Please provide", 0), 0u);
        } else if (effect->target) {
            ASSERT_EQ(host().shell().Count(), launches + 1) << cadhost::ToUtf8(command);
            EXPECT_EQ(host().shell().Last()->target, effect->target);
        } else {
            EXPECT_EQ(host().shell().Count(), launches) << cadhost::ToUtf8(command);
        }
    }
    EXPECT_EQ(run.size(), 9u);
}

}  // namespace
