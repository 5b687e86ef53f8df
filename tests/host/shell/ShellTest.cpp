// The host's shell: every target is shown and kept; when the host
// launches, the target reaches the opener as one argument, untouched by
// any shell.
#include <shellapi.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "support/TestHost.h"

namespace {

class ShellTest : public qmtest::HostTest {};

INT_PTR Open(LPCWSTR target, INT show = SW_SHOWNORMAL) {
    return reinterpret_cast<INT_PTR>(::ShellExecuteW(nullptr, L"open", target, nullptr, nullptr, show));
}

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST_F(ShellTest, ATargetIsShownAndKeptWithItsShowState) {
    EXPECT_GT(Open(L"http://www.norvo.example/a b", SW_SHOW), 32);
    ASSERT_TRUE(host().shell().Last());
    EXPECT_EQ(host().shell().Last()->target, L"http://www.norvo.example/a b");
    EXPECT_EQ(host().shell().Last()->verb, L"open");
    EXPECT_EQ(host().shell().Last()->show, SW_SHOW);
    EXPECT_EQ(TakeOutput(), "[shell] open \"http://www.norvo.example/a b\", show 5\n");

    EXPECT_GT(Open(L"mailto:x@norvo.example?body=one\ntwo \"q\""), 32);
    EXPECT_EQ(host().shell().Count(), 2u);
    EXPECT_EQ(TakeOutput(), "[shell] open \"mailto:x@norvo.example?body=one\\ntwo \\\"q\\\"\", show 1\n");
}

TEST_F(ShellTest, NoTargetIsAnError) {
    EXPECT_LE(Open(L""), 32);
    EXPECT_LE(Open(nullptr), 32);
    EXPECT_FALSE(host().shell().Last());
}

TEST_F(ShellTest, LaunchingHandsTheTargetAsItStandsToTheOpener) {
    // A stand-in opener that writes down its arguments.
    std::filesystem::path opener = m_folder.path() / "opener.sh";
    std::filesystem::path record = m_folder.path() / "arguments";
    {
        std::ofstream script(opener);
        script << "#!/bin/sh\nprintf '%s|' \"$#\" > '" << record.string() << ".tmp'\n"
               << "for a in \"$@\"; do printf '%s' \"$a\" >> '" << record.string() << ".tmp'; done\n"
               << "mv '" << record.string() << ".tmp' '" << record.string() << "'\n";
    }
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    host().shell().SetOpener(opener.string());
    host().shell().SetLaunching(true);

    const wchar_t* hostile = L"http://www.norvo.example/?q=\"a b\";rm -rf x;$(touch pwned)`id`\nnext line";
    EXPECT_GT(Open(hostile), 32);
    ASSERT_TRUE(host().shell().WaitForOpeners(10000));
    EXPECT_EQ(ReadAll(record), "1|" + cadhost::ToUtf8(hostile));
    EXPECT_FALSE(std::filesystem::exists(m_folder.path() / "pwned"));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::current_path() / "pwned"));
}

TEST_F(ShellTest, AnOpenerThatIsNotThereIsSaidAndFails) {
    host().shell().SetOpener((m_folder.path() / "no-such-opener").string());
    host().shell().SetLaunching(true);
    EXPECT_LE(Open(L"http://www.norvo.example"), 32);
    std::string output = TakeOutput();
    EXPECT_NE(output.find("The desktop could not open http://www.norvo.example"), std::string::npos) << output;
    ASSERT_TRUE(host().shell().Last());  // it was handed over all the same
}

}  // namespace
