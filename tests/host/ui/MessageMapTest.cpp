// Message maps: a class's handlers before its base's, ranges, messages by
// number and by registered name, command state, and posted messages.
#include <afxwin.h>

#include "support/DialogTestSupport.h"
#include "ui/UserInput.h"

namespace {

std::vector<std::string> g_calls;

class BaseDialog : public CDialog {
public:
    BaseDialog() : CDialog(500) {}

protected:
    void OnEdit() { g_calls.push_back("base edit"); }
    void OnAuto() { g_calls.push_back("base auto"); }
    void OnOK() override { g_calls.push_back("base ok"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(BaseDialog, CDialog)
    ON_EN_CHANGE(10, &BaseDialog::OnEdit)
    ON_BN_CLICKED(18, &BaseDialog::OnAuto)
END_MESSAGE_MAP()

UINT g_registered = 0;

class DerivedDialog : public BaseDialog {
public:
    bool enableCommand = true;
    bool claimExtended = false;

protected:
    void OnEdit() { g_calls.push_back("derived edit"); }
    void OnRange(UINT id) { g_calls.push_back("range " + std::to_string(id)); }
    BOOL OnExtended(UINT id) {
        g_calls.push_back("extended " + std::to_string(id));
        return claimExtended;
    }
    void OnCommandState(CCmdUI* state) { state->Enable(enableCommand); }
    void OnMenuCommand() { g_calls.push_back("menu command"); }
    LRESULT OnApp(WPARAM wParam, LPARAM lParam) {
        g_calls.push_back("app " + std::to_string(wParam) + " " + std::to_string(lParam));
        return 42;
    }
    LRESULT OnRegistered(WPARAM wParam, LPARAM) {
        g_calls.push_back("registered " + std::to_string(wParam));
        return 7;
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(DerivedDialog, BaseDialog)
    ON_EN_CHANGE(10, &DerivedDialog::OnEdit)
    ON_CONTROL_RANGE(BN_CLICKED, 21, 23, &DerivedDialog::OnRange)
    ON_COMMAND_EX(700, &DerivedDialog::OnExtended)
    ON_UPDATE_COMMAND_UI(701, &DerivedDialog::OnCommandState)
    ON_COMMAND(701, &DerivedDialog::OnMenuCommand)
    ON_MESSAGE(WM_APP + 1, &DerivedDialog::OnApp)
    ON_REGISTERED_MESSAGE(g_registered, &DerivedDialog::OnRegistered)
END_MESSAGE_MAP()

class MessageMaps : public qmtest::DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        g_calls.clear();
        g_registered = RegisterWindowMessage(L"MessageMapTest");
        ASSERT_TRUE(m_dialog.Create(500));
        m_dialog.ShowWindow(SW_SHOW);
        g_calls.clear();
    }
    void TearDown() override {
        m_dialog.DestroyWindow();
        DialogTest::TearDown();
    }
    HWND Item(int id) { return ::GetDlgItem(m_dialog.m_hWnd, id); }

    DerivedDialog m_dialog;
};

TEST_F(MessageMaps, AClassHandlerComesBeforeItsBasesAndTheBaseTakesTheRest) {
    m_dialog.SetDlgItemText(10, L"x");
    cadhost::ui::UserClick(Item(18));
    cadhost::ui::UserClick(Item(22));
    cadhost::ui::UserClick(Item(24));  // outside the range: nobody
    cadhost::ui::UserClick(Item(IDOK));
    EXPECT_EQ(g_calls, (std::vector<std::string>{"derived edit", "base auto", "range 22", "base ok"}));
}

TEST_F(MessageMaps, CommandsOfMenusAskTheirStateFirst) {
    EXPECT_EQ(m_dialog.SendMessage(WM_COMMAND, 701, 0), 1);
    m_dialog.enableCommand = false;
    EXPECT_EQ(m_dialog.SendMessage(WM_COMMAND, 701, 0), 0);  // disabled meanwhile: not handled
    EXPECT_EQ(m_dialog.SendMessage(WM_COMMAND, 700, 0), 0);  // the handler let it go on
    m_dialog.claimExtended = true;
    EXPECT_EQ(m_dialog.SendMessage(WM_COMMAND, 700, 0), 1);
    EXPECT_EQ(m_dialog.SendMessage(WM_COMMAND, 999, 0), 0);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"menu command", "extended 700", "extended 700"}));

    // CCmdUI asks the same handler; without one the item can be disabled.
    CCmdUI state;
    state.m_nID = 701;
    state.DoUpdate(&m_dialog, TRUE);
    EXPECT_TRUE(state.m_bEnableChanged);
}

TEST_F(MessageMaps, MessagesByNumberAndByRegisteredNameReachTheirHandlers) {
    EXPECT_EQ(m_dialog.SendMessage(WM_APP + 1, 3, 4), 42);
    EXPECT_EQ(m_dialog.SendMessage(g_registered, 9, 0), 7);
    EXPECT_EQ(m_dialog.SendMessage(WM_APP + 2, 0, 0), 0);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"app 3 4", "registered 9"}));

    UINT again = RegisterWindowMessage(L"messagemaptest");
    UINT other = RegisterWindowMessage(L"AnotherName");
    EXPECT_EQ(again, g_registered);  // the same name, in any case, the same number
    EXPECT_NE(other, g_registered);
    EXPECT_GE(g_registered, 0xC000u);
    EXPECT_EQ(RegisterWindowMessage(L""), 0u);
}

TEST_F(MessageMaps, PostedMessagesWaitForTheLoopAndComeInOrder) {
    EXPECT_TRUE(m_dialog.PostMessage(WM_APP + 1, 1, 0));
    EXPECT_TRUE(m_dialog.PostMessage(g_registered, 2, 0));
    EXPECT_TRUE(g_calls.empty());
    EXPECT_EQ(desktop().DeliverPosted(), 2u);
    EXPECT_EQ(g_calls, (std::vector<std::string>{"app 1 0", "registered 2"}));
    EXPECT_EQ(desktop().DeliverPosted(), 0u);

    g_calls.clear();
    m_dialog.PostMessage(WM_APP + 1, 5, 0);
    HWND gone = m_dialog.m_hWnd;
    m_dialog.DestroyWindow();
    EXPECT_FALSE(::IsWindow(gone));
    EXPECT_EQ(desktop().DeliverPosted(), 0u);  // for a window that is gone: dropped
    EXPECT_TRUE(g_calls.empty());
    EXPECT_FALSE(::PostMessageW(gone, WM_APP + 1, 0, 0));
}

TEST_F(MessageMaps, NotificationsWaitWhileTheDialogExchangesItsData) {
    class Exchanging : public DerivedDialog {
    protected:
        void DoDataExchange(CDataExchange* pDX) override {
            CString text = L"exchanged";
            DDX_Text(pDX, 10, text);
        }
    };
    Exchanging dialog;
    ASSERT_TRUE(dialog.Create(500));
    g_calls.clear();
    EXPECT_TRUE(dialog.UpdateData(FALSE));  // the edit tells, the dialog does not hear
    EXPECT_TRUE(g_calls.empty());
    dialog.SetDlgItemText(10, L"later");
    EXPECT_EQ(g_calls, (std::vector<std::string>{"derived edit"}));
}

TEST_F(MessageMaps, HandlesThatNameNoWindowGetTheFailureAnswer) {
    HWND nothing = reinterpret_cast<HWND>(0x1234);
    EXPECT_EQ(::SendMessageW(nothing, WM_APP, 0, 0), 0);
    EXPECT_FALSE(::IsWindow(nothing));
    EXPECT_FALSE(::SetWindowTextW(nothing, L"x"));
    wchar_t buffer[8] = L"old";
    EXPECT_EQ(::GetWindowTextW(nothing, buffer, 8), 0);
    EXPECT_EQ(buffer[0], L'\0');
    EXPECT_EQ(::GetDlgItem(nothing, 1), nullptr);
    EXPECT_EQ(CWnd::FromHandle(nothing), nullptr);
    EXPECT_FALSE(::DestroyWindow(nothing));
    RECT rect{};
    EXPECT_FALSE(::GetWindowRect(nothing, &rect));
}

}  // namespace
