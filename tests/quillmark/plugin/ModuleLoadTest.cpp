// The module as the host loads it: registrations, messages, the version
// handshake, the menu, and unloading.
#include <dlfcn.h>
#include <rxregsvc.h>

#include <fstream>

#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

std::wstring Wide(const std::filesystem::path& p) { return cadhost::FromUtf8(p.string()); }

class ModuleLoadTest : public qmtest::HostTest {
protected:
    bool Load(const std::filesystem::path& module = kBin / "Quillmark.arx") {
        return host().linker().loadModule(Wide(module).c_str(), true);
    }
    std::vector<const cadhost::CommandStack::Command*> ModuleCommands() {
        std::vector<const cadhost::CommandStack::Command*> found;
        for (const auto& c : host().commands().Commands()) {
            if (c.group == L"Norvo") found.push_back(&c);
        }
        return found;
    }
};

TEST_F(ModuleLoadTest, RegistersTheNineCommandsInTableOrder) {
    ASSERT_TRUE(Load()) << TakeOutput();
    const wchar_t* names[] = {L"Test", L"Website", L"About", L"Support", L"Faq",
                              L"New",  L"Demo",    L"Help",  L"Live_Update"};
    auto commands = ModuleCommands();
    ASSERT_EQ(commands.size(), 9u);
    const cadhost::DynamicLinker::App* app = host().linker().Find(L"Quillmark.arx");
    ASSERT_NE(app, nullptr);
    for (size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(commands[i]->global, std::wstring(L"_Quillmark_") + names[i]);
        EXPECT_EQ(commands[i]->local, std::wstring(L"Quillmark_") + names[i]);
        EXPECT_EQ(commands[i]->flags, ACRX_CMD_TRANSPARENT);
        EXPECT_EQ(commands[i]->functionCode, -1);
        EXPECT_EQ(commands[i]->uiContext, nullptr);
        EXPECT_EQ(commands[i]->resource, app->module);
    }
    EXPECT_TRUE(app->unlocked);
    EXPECT_TRUE(app->mdiAware);
    EXPECT_NE(host().linker().Find(L"QuillmarkEval.dbx"), nullptr);  // the companion comes along
}

TEST_F(ModuleLoadTest, UnloadRemovesWhatItAddedAndNothingElse) {
    ASSERT_TRUE(Load());
    host().processor().RunIdle();
    ASSERT_EQ(host().commands().addCommand(L"Other", L"_Quillmark_Test", nullptr, 0, [] {}), Acad::eOk);
    size_t before = host().commands().Commands().size();
    ASSERT_TRUE(host().linker().unloadModule(L"Quillmark.arx"));
    EXPECT_TRUE(ModuleCommands().empty());
    EXPECT_EQ(host().commands().Commands().size(), before - 9);
    EXPECT_NE(host().commands().Lookup(L"MENULOAD"), nullptr);
    EXPECT_EQ(host().commands().Lookup(L"_Quillmark_Test")->group, L"Other");
    // The companion and the menu stay.
    EXPECT_NE(host().linker().Find(L"QuillmarkEval.dbx"), nullptr);
    EXPECT_TRUE(host().menus().IsGroupLoaded(L"Quillmark"));
}

TEST_F(ModuleLoadTest, MessagesAboveFifteenAreAnsweredWithNothingDone) {
    ASSERT_TRUE(Load());
    auto* app = const_cast<cadhost::DynamicLinker::App*>(host().linker().Find(L"Quillmark.arx"));
    size_t commands = host().commands().Commands().size();
    for (int message : {16, 17, 255, 1 << 20}) {
        EXPECT_EQ(host().linker().Send(*app, static_cast<AcRx::AppMsgCode>(message), app), AcRx::kRetOK);
    }
    EXPECT_EQ(host().commands().Commands().size(), commands);
    EXPECT_EQ(host().linker().Send(*app, AcRx::kNullMsg, app), AcRx::kRetOK);
    EXPECT_EQ(host().linker().Send(*app, AcRx::kEndDialogMsg, app), AcRx::kRetOK);
}

TEST(ApiVersion, HandshakeFoldsTheTokenIntoItsState) {
    void* library = dlopen((kBin / "Quillmark.arx").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    auto version = reinterpret_cast<AcRxGetApiVersionFunction>(dlsym(library, "acrxGetApiVersion"));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version(5), 0x120000u);
    EXPECT_EQ(version(0), 0x120000u ^ 5u);  // the state, which is cleared after
    EXPECT_EQ(version(7), 0x120000u);
    EXPECT_EQ(version(3), 0x120000u ^ 7u ^ 3u);
    EXPECT_EQ(version(0), 0x120000u ^ 7u ^ 3u);
    EXPECT_EQ(version(0), 0x120000u);
    EXPECT_EQ(version(0), 0x120000u);  // from a cleared state a token of 0 gives the version
    for (const char* symbol : {"acrxEntryPoint", "acrxGetApiVersion"}) EXPECT_NE(dlsym(library, symbol), nullptr);
    dlclose(library);
}

class MenuPlaceTest : public ModuleLoadTest, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(MenuPlaceTest, PutsTheMenuInFrontOfTheLastTwo) {
    auto [menus, place] = GetParam();
    host().menus().SetHostMenus(menus);
    ASSERT_TRUE(Load());
    std::wstring folder = Wide(kBin);
    std::wstring expected = L"(command \"_.menuload\" \"" + folder + L"/Quillmark.cuix\")(princ)\n(menucmd \"P" +
                            std::to_wstring(place) + L"=+Quillmark.pop1\")";
    EXPECT_EQ(host().processor().LastQueued(), expected);
    host().processor().RunIdle();
    ASSERT_EQ(host().menus().PullDowns().size(), static_cast<size_t>(menus + 1));
    EXPECT_EQ(host().menus().PullDowns()[place - 1].group, L"Quillmark");
    EXPECT_EQ(host().menus().PullDowns()[place - 1].alias, L"pop1");

    // A second load in the same run finds the group loaded and asks nothing.
    ASSERT_TRUE(host().linker().unloadModule(L"Quillmark.arx"));
    size_t queued = host().processor().QueuedCount();
    ASSERT_TRUE(Load());
    EXPECT_EQ(host().processor().QueuedCount(), queued);
}

INSTANTIATE_TEST_SUITE_P(MenuBars, MenuPlaceTest,
                         testing::Values(std::pair{0, 1}, std::pair{1, 2}, std::pair{2, 1}, std::pair{3, 2},
                                         std::pair{10, 9}, std::pair{11, 10}));

// A copy of the module in a folder of the test's choosing.
std::filesystem::path PlaceModule(const std::filesystem::path& folder, bool withMenu) {
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(kBin / "Quillmark.arx", folder / "Quillmark.arx");
    if (withMenu) std::filesystem::copy_file(kBin / "Quillmark.cuix", folder / "Quillmark.cuix");
    return folder / "Quillmark.arx";
}

TEST_F(ModuleLoadTest, AMissingMenuFileIsReportedAndTheModuleRunsOn) {
    std::filesystem::path module = PlaceModule(m_folder.path() / "nomenu", false);
    TakeOutput();
    ASSERT_TRUE(Load(module));
    std::string out = TakeOutput();
    EXPECT_NE(out.find("Failed to find the menu file: " + (m_folder.path() / "nomenu" / "Quillmark.cuix").string() + "."),
              std::string::npos)
        << out;
    EXPECT_EQ(host().processor().QueuedCount(), 0u);
    EXPECT_EQ(ModuleCommands().size(), 9u);
    // Its companion is not beside it: that shows only when a field is made.
    EXPECT_EQ(host().linker().Find(L"QuillmarkEval.dbx"), nullptr);
}

TEST_F(ModuleLoadTest, AFolderWithADoubleQuoteQueuesNothing) {
    std::filesystem::path module = PlaceModule(m_folder.path() / "we\"ird", true);
    TakeOutput();
    ASSERT_TRUE(Load(module));
    EXPECT_NE(TakeOutput().find("holds a double quote"), std::string::npos);
    EXPECT_EQ(host().processor().QueuedCount(), 0u);
}

TEST_F(ModuleLoadTest, BackslashesInTheFolderBecomeForwardSlashes) {
    std::filesystem::path module = PlaceModule(m_folder.path() / "back\\slash", true);
    ASSERT_TRUE(Load(module));
    const std::wstring& queued = host().processor().LastQueued();
    EXPECT_EQ(queued.find(L'\\'), std::wstring::npos);
    EXPECT_NE(queued.find(L"back/slash/Quillmark.cuix"), std::wstring::npos);
}

TEST_F(ModuleLoadTest, ModulesThatAreNotModulesAreRefused) {
    std::filesystem::path text = m_folder.path() / "fake.arx";
    std::ofstream(text) << "not a shared object";
    TakeOutput();
    EXPECT_FALSE(Load(text));
    EXPECT_NE(TakeOutput().find("Unable to load"), std::string::npos);
    EXPECT_FALSE(Load(m_folder.path() / "absent.arx"));
    EXPECT_NE(TakeOutput().find("no such file"), std::string::npos);
    EXPECT_FALSE(host().linker().loadModule((Wide(kBin) + L"/libcadhost.so").c_str(), true));
    EXPECT_NE(TakeOutput().find("is not a module of this host"), std::string::npos);
    ASSERT_TRUE(Load());
    EXPECT_FALSE(Load());
    EXPECT_NE(TakeOutput().find("already loaded"), std::string::npos);
    EXPECT_FALSE(host().linker().unloadModule(L"Nothing.arx"));
    EXPECT_NE(TakeOutput().find("is not loaded"), std::string::npos);
}

}  // namespace
