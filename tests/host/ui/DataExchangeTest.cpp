// Data exchange: texts read into numbers (and refused with the framework's
// message), checks, radio groups, bound controls, and OK that stays open
// while a value is refused.
#include <afxwin.h>

#include <cmath>

#include "support/DialogTestSupport.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"

namespace {

class Exchanger : public CDialog {
public:
    Exchanger() : CDialog(500) {}
    CString m_text;
    int m_int = 0;
    UINT m_unsigned = 0;
    double m_double = 0;
    short m_short = 0;
    int m_check = 0;
    int m_radio = -1;
    int m_limited = 5;
    CListBox m_list;
    bool validate = false;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        CDialog::DoDataExchange(pDX);
        DDX_Control(pDX, 12, m_list);
        DDX_Text(pDX, 10, m_text);
        DDX_Check(pDX, 18, m_check);
        DDX_Radio(pDX, 21, m_radio);
        if (validate) {
            DDX_Text(pDX, 28, m_limited);
            DDV_MinMaxInt(pDX, m_limited, 1, 10);
        }
    }
};

class DataExchange : public qmtest::DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        ASSERT_TRUE(m_dialog.Create(500));
        m_dialog.ShowWindow(SW_SHOW);
    }
    void TearDown() override {
        m_dialog.DestroyWindow();
        DialogTest::TearDown();
    }
    HWND Item(int id) { return ::GetDlgItem(m_dialog.m_hWnd, id); }
    // Reads the text of control 10 as a value of type T.
    template <class T>
    bool Read(const wchar_t* text, T& value) {
        m_dialog.SetDlgItemText(10, text);
        CDataExchange exchange(&m_dialog, TRUE);
        try {
            DDX_Text(&exchange, 10, value);
            return true;
        } catch (CUserException* e) {
            e->Delete();
            return false;
        }
    }
    template <class T>
    std::wstring Write(T value) {
        CDataExchange exchange(&m_dialog, FALSE);
        DDX_Text(&exchange, 10, value);
        CString text;
        m_dialog.GetDlgItemText(10, text);
        return text.str();
    }
    std::wstring LastBox() { return m_driver.boxes.empty() ? L"" : m_driver.boxes.back().text; }

    Exchanger m_dialog;
};

TEST_F(DataExchange, WholeNumbersReadWithBlanksAroundAndNothingElse) {
    struct Case {
        const wchar_t* text;
        bool ok;
        int value;
    };
    const Case cases[] = {
        {L"12", true, 12},          {L" -7 ", true, -7},     {L"+3", true, 3},    {L"12a", false, 0},
        {L"", false, 0},            {L"   ", false, 0},      {L"1.5", false, 0},  {L"99999999999", false, 0},
        {L"2147483647", true, INT32_MAX}, {L"-2147483648", true, INT32_MIN}, {L"2147483648", false, 0},
    };
    for (const Case& c : cases) {
        int value = -1;
        size_t boxes = m_driver.boxes.size();
        EXPECT_EQ(Read(c.text, value), c.ok) << testing::PrintToString(std::wstring(c.text));
        if (c.ok) {
            EXPECT_EQ(value, c.value);
            EXPECT_EQ(m_driver.boxes.size(), boxes);
        } else {
            EXPECT_EQ(value, -1);  // a refused value leaves the member alone
            EXPECT_EQ(LastBox(), L"Please enter an integer.");
            EXPECT_EQ(::GetFocus(), Item(10));
        }
    }
    UINT positive = 9;
    EXPECT_FALSE(Read(L"-1", positive));
    EXPECT_EQ(LastBox(), L"Please enter a positive integer.");
    short small = 0;
    EXPECT_FALSE(Read(L"40000", small));
    EXPECT_TRUE(Read(L"-32768", small));
    EXPECT_EQ(small, -32768);
    BYTE byte = 0;
    EXPECT_FALSE(Read(L"256", byte));
    EXPECT_EQ(LastBox(), L"Please enter an integer between 0 and 255.");
}

TEST_F(DataExchange, NumbersReadAsTheRuntimeReadsThemButFiniteOnly) {
    struct Case {
        const wchar_t* text;
        bool ok;
        double value;
    };
    const Case cases[] = {
        {L"2.5", true, 2.5}, {L" 1e3 ", true, 1000}, {L"-0.125", true, -0.125}, {L".5", true, 0.5},
        {L"abc", false, 0},  {L"", false, 0},        {L"1,5", false, 0},        {L"inf", false, 0},
        {L"nan", false, 0},  {L"1e999", false, 0},
    };
    for (const Case& c : cases) {
        double value = -1;
        EXPECT_EQ(Read(c.text, value), c.ok) << testing::PrintToString(std::wstring(c.text));
        if (c.ok) {
            EXPECT_EQ(value, c.value);
        }
        else EXPECT_EQ(LastBox(), L"Please enter a number.");
    }
}

TEST_F(DataExchange, NumbersGoIntoTheirControlsWithFifteenDigits) {
    EXPECT_EQ(Write(0.1), L"0.1");
    EXPECT_EQ(Write(1.0 / 3), L"0.333333333333333");
    EXPECT_EQ(Write(1e20), L"1e+020");
    EXPECT_EQ(Write(2.5f), L"2.5");
    EXPECT_EQ(Write(-5), L"-5");
    EXPECT_EQ(Write(4000000000u), L"4000000000");
}

TEST_F(DataExchange, ChecksRadioGroupsAndBoundControlsGoBothWays) {
    m_dialog.m_check = 7;  // out of range: no check
    m_dialog.m_radio = 1;
    m_dialog.m_text = L"hello";
    ASSERT_TRUE(m_dialog.UpdateData(FALSE));
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(18), 0u);
    EXPECT_EQ(m_dialog.m_check, 0);
    EXPECT_EQ(m_dialog.GetCheckedRadioButton(21, 24), 22);
    EXPECT_EQ(m_dialog.GetDlgItem(12), &m_dialog.m_list);  // the bound member is the control's object
    CString text;
    m_dialog.GetDlgItemText(10, text);
    EXPECT_EQ(text, L"hello");

    cadhost::ui::UserClick(Item(18));
    cadhost::ui::UserClick(Item(23));  // a manual radio button: no check by a click
    m_dialog.CheckDlgButton(23, 1);
    m_dialog.CheckDlgButton(22, 0);
    ASSERT_TRUE(m_dialog.UpdateData(TRUE));
    EXPECT_EQ(m_dialog.m_check, 1);
    EXPECT_EQ(m_dialog.m_radio, 2);  // the place among the group's radio buttons
    m_dialog.CheckDlgButton(23, 0);
    ASSERT_TRUE(m_dialog.UpdateData(TRUE));
    EXPECT_EQ(m_dialog.m_radio, -1);

    // A control has one object bound to it.
    CListBox other;
    CDataExchange exchange(&m_dialog, FALSE);
    bool failed = false;
    try {
        DDX_Control(&exchange, 12, m_dialog.m_list);  // bound already: nothing to do
        other.SubclassWindow(Item(12));
    } catch (CUserException* e) {
        e->Delete();
        failed = true;
    }
    EXPECT_FALSE(failed);
    EXPECT_EQ(other.m_hWnd, nullptr);
}

TEST_F(DataExchange, AMissingControlFailsTheExchangeWithAMessage) {
    class Missing : public CDialog {
    public:
        Missing() : CDialog(500) {}
        int m_value = 0;

    protected:
        void DoDataExchange(CDataExchange* pDX) override { DDX_Text(pDX, 77, m_value); }
    };
    Missing dialog;
    ASSERT_TRUE(dialog.Create(500));
    EXPECT_FALSE(dialog.UpdateData(TRUE));
    EXPECT_NE(TakeOutput().find("The dialog has no control 77 to exchange data with."), std::string::npos);
}

TEST_F(DataExchange, OKStaysOpenWhileAValueIsRefused) {
    m_dialog.DestroyWindow();
    Exchanger modal;
    modal.validate = true;
    std::vector<std::string> steps;
    m_driver.onModal = [&](HWND window) {
        CWnd* dialog = CWnd::FromHandle(window);
        cadhost::ui::UserType(::GetDlgItem(window, 28), L"12");
        cadhost::ui::UserClick(::GetDlgItem(window, IDOK));
        steps.push_back(desktop().ModalEnded(window) ? "ended" : "open");
        steps.push_back(cadhost::ToUtf8(LastBox()));
        steps.push_back(::GetFocus() == ::GetDlgItem(window, 28) ? "focus on 28" : "focus elsewhere");
        dialog->SetDlgItemText(28, L"4");
        cadhost::ui::UserClick(::GetDlgItem(window, IDOK));
        steps.push_back(desktop().ModalEnded(window) ? "ended" : "open");
    };
    EXPECT_EQ(modal.DoModal(), IDOK);
    EXPECT_EQ(steps, (std::vector<std::string>{"open", "Please enter an integer between 1 and 10.", "focus on 28", "ended"}));
    EXPECT_EQ(modal.m_limited, 4);
}

}  // namespace
