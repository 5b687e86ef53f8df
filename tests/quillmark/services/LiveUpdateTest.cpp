// Check for Update against loopback servers that each test starts and
// stops: what the status line says, whether the download link shows, the
// message box of a network fault, and the two buttons afterwards.
#include <string>

#include "plugin/commands/Commands.h"
#include "services/LiveUpdateDlg.h"
#include "services/Registry.h"
#include "support/LoopbackServer.h"
#include "support/ModuleDialogTest.h"
#include "ui/UserInput.h"

namespace {

using qmtest::LoopbackReply;
using qmtest::LoopbackServer;

const wchar_t* const kUpToDate = L"Quillmark version is current and up-to-date.";

std::wstring Newer(const std::wstring& version) {
    return L"The new version " + version + L" is available.\nPlease download the new version by visiting";
}

struct Outcome {
    std::wstring before;  // the status line before the click
    std::wstring status;
    bool linkShown = false;
    bool noteShown = false;
    bool buttonsEnabled = false;
    std::vector<std::wstring> boxes;
};

class LiveUpdateTest : public qmtest::ModuleDialogTest {
protected:
    // The maker's host goes to 127.0.0.1 at the port.
    void ConnectTo(int port) {
        m_internet.connectTo = {"www.norvo.example:80:127.0.0.1:" + std::to_string(port)};
        RestartHost();
        host().desktop().SetDriver(&m_driver);
    }

    // Runs the command, clicks Check up once, and closes the dialog.
    Outcome Check() {
        Outcome outcome;
        m_driver.boxes.clear();
        m_driver.onModal = [&](HWND dialog) {
            outcome.before = Shown(dialog, IDC_UPDATE_STATUS);
            EXPECT_EQ(cadhost::ui::UserClick(::GetDlgItem(dialog, IDC_CHECK_UP)), L"");
            outcome.status = Shown(dialog, IDC_UPDATE_STATUS);
            HWND link = ::GetDlgItem(dialog, IDC_DOWNLOAD_LINK);
            EXPECT_NE(link, nullptr);
            outcome.linkShown = link && ::IsWindowVisible(link);
            outcome.noteShown = ::IsWindowVisible(::GetDlgItem(dialog, IDC_DOWNLOAD_NOTE));
            outcome.buttonsEnabled =
                ::IsWindowEnabled(::GetDlgItem(dialog, IDC_CHECK_UP)) && ::IsWindowEnabled(::GetDlgItem(dialog, IDOK));
            EXPECT_EQ(cadhost::ui::UserClick(::GetDlgItem(dialog, IDOK)), L"");
        };
        Quillmark_Live_Update();
        EXPECT_EQ(m_driver.modalRuns, 1);
        m_driver.modalRuns = 0;
        for (const auto& box : m_driver.boxes) outcome.boxes.push_back(box.text);
        return outcome;
    }

    Outcome CheckAgainst(const LoopbackReply& reply) {
        LoopbackServer server(reply);
        EXPECT_NE(server.port(), 0);
        ConnectTo(server.port());
        return Check();
    }

    void ExpectFault(const Outcome& outcome, const std::wstring& box) {
        EXPECT_EQ(outcome.status, L"Network connection failed.");
        EXPECT_FALSE(outcome.linkShown);
        EXPECT_TRUE(outcome.buttonsEnabled);
        ASSERT_EQ(outcome.boxes.size(), 1u);
        EXPECT_EQ(outcome.boxes[0], box);
    }
};

TEST_F(LiveUpdateTest, TheListDecidesBetweenUpToDateAndNewer) {
    struct Case {
        const char* list;
        std::wstring status;
        bool link;
    };
    const Case cases[] = {
        {"ACAD*QUILLMARK:   3.0.0.0  \n", Newer(L"3.0.0.0"), true},
        {"ACAD*Quillmark: 2.10.0.0\n", Newer(L"2.10.0.0"), true},  // numbers, not text
        {"ACAD*Quillmark: 2.6.9.9\n", kUpToDate, false},           // decided at the second part
        {"ACAD*Quillmark: 2.7.1.0.1\n", kUpToDate, false},         // the shorter row ends it
        {"ACAD*Quillmark: 2.7.1.0\n", kUpToDate, false},
        {"ACAD*Other: 9.0.0.0\nACADLT*Quillmark: 9.0.0.0\n", kUpToDate, false},  // no line with the key
        {"ACAD*Quillmark: 9.0\nACAD*Quillmark: 2.0\n", kUpToDate, false},        // the last line wins
        {"ACAD*Quillmark: 2.0\nACAD*Quillmark: 9.0\n", Newer(L"9.0"), true},
        {"ACAD*Quillmark: 3.1\r\nACAD*Other: 1\r\n", Newer(L"3.1"), true},  // CR LF
        {"ACAD*Quillmark: 3.2", Newer(L"3.2"), true},                       // no line end at all
        // The key in the middle: the version is what stands behind as many
        // characters from the left as the key has.
        {"0123456789abcde3.0.0.0 ACAD*Quillmark:\n", Newer(L"3.0.0.0 ACAD*Quillmark:"), true},
        {"## ACAD*Quillmark: 9.0.0.0\n", kUpToDate, false},
        {"ACAD*Quillmark:\n", kUpToDate, false},
        {"", kUpToDate, false},
    };
    for (const Case& c : cases) {
        Outcome outcome = CheckAgainst(LoopbackReply{LoopbackServer::Ok(c.list)});
        EXPECT_EQ(outcome.before, L"Click Check up to see if a new version is available.");
        EXPECT_EQ(outcome.status, c.status) << c.list;
        EXPECT_EQ(outcome.linkShown, c.link) << c.list;
        EXPECT_FALSE(outcome.noteShown);
        EXPECT_TRUE(outcome.buttonsEnabled);
        EXPECT_TRUE(outcome.boxes.empty()) << c.list;
    }
}

TEST_F(LiveUpdateTest, BinaryGarbageInTheListIsNoNewerVersion) {
    std::string garbage;
    for (int i = 0; i < 4096; ++i) garbage += static_cast<char>((i * 37 + 11) % 256);
    Outcome outcome = CheckAgainst(LoopbackReply{LoopbackServer::Ok(garbage)});
    EXPECT_EQ(outcome.status, kUpToDate);
    EXPECT_TRUE(outcome.boxes.empty());
}

TEST_F(LiveUpdateTest, AnHttpStatusOtherThan200IsTold) {
    for (int code : {404, 500}) {
        Outcome outcome = CheckAgainst(LoopbackReply{LoopbackServer::Status(code, "No", "ACAD*Quillmark: 9.0\n")});
        EXPECT_EQ(outcome.status, L"Network connection failed: " + std::to_wstring(code) + L".");
        EXPECT_FALSE(outcome.linkShown);
        EXPECT_TRUE(outcome.buttonsEnabled);
        EXPECT_TRUE(outcome.boxes.empty());
    }
}

TEST_F(LiveUpdateTest, ARefusedConnectionFailsWithTheReasonInABox) {
    ConnectTo(LoopbackServer::UnusedPort());
    ExpectFault(Check(), L"A connection with the server could not be established.");
}

TEST_F(LiveUpdateTest, AServerThatNeverAnswersFailsAfterTheTimeLimit) {
    LoopbackReply silent;
    silent.silent = true;
    ExpectFault(CheckAgainst(silent), L"The operation timed out.");
}

TEST_F(LiveUpdateTest, AListDrippingOneByteASecondFailsAfterTheTimeLimit) {
    LoopbackReply drip{LoopbackServer::Ok("ACAD*Quillmark: 3.0.0.0\n")};
    drip.dripMilliseconds = 1000;
    ExpectFault(CheckAgainst(drip), L"The operation timed out.");
}

TEST_F(LiveUpdateTest, AHundredMegabytesAreRefused) {
    LoopbackReply flood;
    flood.floodBytes = 100u * 1000 * 1000;
    ExpectFault(CheckAgainst(flood), L"The connection with the server was terminated abnormally: the answer is larger "
                                     L"than 1 MiB and was refused.");
}

TEST_F(LiveUpdateTest, GarbageInsteadOfAnAnswerFails) {
    ExpectFault(CheckAgainst(LoopbackReply{std::string("\x7F\x45LF\x02\x01\x01\x00garbage", 15)}),
                L"The server returned an invalid or unrecognized response.");
}

TEST_F(LiveUpdateTest, TheCheckCanRunAgainInTheSameDialogAndTheCommandAgainAtOnce) {
    LoopbackServer server(LoopbackReply{LoopbackServer::Ok("ACAD*Quillmark: 3.0.0.0\n")});
    ConnectTo(server.port());
    std::vector<std::wstring> statuses;
    m_driver.onModal = [&](HWND dialog) {
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(cadhost::ui::UserClick(::GetDlgItem(dialog, IDC_CHECK_UP)), L"");
            statuses.push_back(Shown(dialog, IDC_UPDATE_STATUS));
        }
        ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
    };
    Quillmark_Live_Update();
    Quillmark_Live_Update();
    EXPECT_EQ(m_driver.modalRuns, 2);
    EXPECT_EQ(statuses, std::vector<std::wstring>(4, Newer(L"3.0.0.0")));
    EXPECT_EQ(server.requests(), 4);
}

TEST_F(LiveUpdateTest, AnEditionForTheLightPlatformLooksForItsOwnKey) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Norvo", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS);
    const wchar_t edition[] = L"NorvoLT2011";
    ASSERT_EQ(RegSetValueExW(key, L"QuillmarkLT", 0, REG_SZ, reinterpret_cast<const BYTE*>(edition), sizeof edition),
              ERROR_SUCCESS);
    RegCloseKey(key);
    CRegistry::OpenSettings();
    EXPECT_EQ(CLiveUpdateDlg::UpdateKey().str(), L"acadlt*quillmark:");

    Outcome outcome = CheckAgainst(LoopbackReply{LoopbackServer::Ok("ACAD*Quillmark: 9.0.0.0\nACADLT*Quillmark: 2.7.1.0\n")});
    EXPECT_EQ(outcome.status, kUpToDate);
    outcome = CheckAgainst(LoopbackReply{LoopbackServer::Ok("ACADLT*Quillmark: 3.5\nACAD*Quillmark: 2.0\n")});
    EXPECT_EQ(outcome.status, Newer(L"3.5"));

    // Without an edition the platform is the full one again.
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Norvo", 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    RegDeleteValueW(key, L"QuillmarkLT");
    RegCloseKey(key);
    CRegistry::OpenSettings();
    EXPECT_EQ(CLiveUpdateDlg::UpdateKey().str(), L"acad*quillmark:");
}

TEST_F(LiveUpdateTest, VersionsCompareByTheirNumericParts) {
    CLiveUpdateDlg dialog;
    struct Case {
        std::wstring server;
        int upToDate;
    };
    std::wstring thousand = L"2.7.1.0";
    for (int i = 0; i < 996; ++i) thousand += L".9";
    std::wstring thousandNewer = L"2.7.1.1";
    for (int i = 0; i < 996; ++i) thousandNewer += L".0";
    const Case cases[] = {
        {L"2.7.1.0", 1},  {L"2.10.0.0", 0}, {L"2.6.9.9", 1},     {L"2.7.1.0.1", 1},
        {L"2.7.1.1", 0},  {L"2.7.0.99", 1}, {L"3", 0},           {L"2", 1},
        {L"2.8", 0},      {L"2.x", 1},      {L"", 1},            {L"99999999999999999999", 0},
        {L"-5.0", 1},     {L" 2 . 8", 0},   {L"2..9", 1},        {L"x.y.z", 1},
        {thousand, 1},    {thousandNewer, 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(dialog.ComparedUpToDate(c.server.c_str()) != 0, c.upToDate != 0) << cadhost::ToUtf8(c.server.substr(0, 40));
}

TEST_F(LiveUpdateTest, ALineGivesAVersionOnlyWhenItHoldsTheKey) {
    struct Case {
        const wchar_t* line;
        bool found;
        const wchar_t* version;
    };
    const Case cases[] = {{L"ACAD*Quillmark: 2.8", true, L"2.8"},
                          {L"acad*quillmark:2.8", true, L"2.8"},
                          {L"  ACAD*Quillmark: 2.8", true, L"k: 2.8"},
                          {L"ACAD*Quillmark 2.8", false, L"kept"},
                          {L"ACAD * Quillmark: 2.8", false, L"kept"},
                          {L"ACAD*Quillmark:", true, L""},
                          {L"short", false, L"kept"}};
    for (const Case& c : cases) {
        CString version = L"kept";
        EXPECT_EQ(CLiveUpdateDlg::VersionFromLine(c.line, L"acad*quillmark:", version) != 0, c.found)
            << cadhost::ToUtf8(c.line);
        EXPECT_EQ(version.str(), c.version) << cadhost::ToUtf8(c.line);
    }
}

}  // namespace
