// The standard controls: entries, selection, checks and text, what they
// tell their parent, and what a user can and cannot do to them.
#include <afxwin.h>

#include "ui/Controls.h"
#include "support/DialogTestSupport.h"
#include "ui/UserInput.h"

namespace {

using namespace cadhost::ui;

class Controls : public qmtest::DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        ASSERT_TRUE(m_dialog.Create(500));
        m_dialog.ShowWindow(SW_SHOW);
        m_dialog.Take();
    }
    void TearDown() override {
        m_dialog.DestroyWindow();
        DialogTest::TearDown();
    }
    HWND Item(int id) { return ::GetDlgItem(m_dialog.m_hWnd, id); }
    template <class T>
    T* As(int id) {
        return static_cast<T*>(m_dialog.GetDlgItem(id));
    }
    std::vector<std::wstring> Texts(int id) {
        std::vector<std::wstring> texts;
        for (int i = 0; i < EntryCount(Item(id)); ++i) texts.push_back(Entry(Item(id), i)->text);
        return texts;
    }

    qmtest::Recorder m_dialog;
};

TEST_F(Controls, ASortedListPutsEntriesInTextOrderNotRegardingCase) {
    CListBox* sorted = As<CListBox>(12);
    ASSERT_TRUE(sorted->IsKindOf(RUNTIME_CLASS(CListBox)));
    for (const wchar_t* text : {L"pear", L"Apple", L"fig", L"banana", L"apple", L"2A1", L"2A"}) sorted->AddString(text);
    EXPECT_EQ(Texts(12), (std::vector<std::wstring>{L"2A", L"2A1", L"Apple", L"apple", L"banana", L"fig", L"pear"}));
    EXPECT_EQ(sorted->AddString(L"Banana"), 5);  // after the equal "banana"

    CListBox* plain = As<CListBox>(13);
    for (const wchar_t* text : {L"pear", L"Apple", L"fig"}) plain->AddString(text);
    EXPECT_EQ(Texts(13), (std::vector<std::wstring>{L"pear", L"Apple", L"fig"}));
    EXPECT_EQ(plain->InsertString(1, L"kiwi"), 1);
    EXPECT_EQ(plain->InsertString(-1, L"last"), 4);
    EXPECT_EQ(plain->InsertString(9, L"beyond"), LB_ERR);
    EXPECT_EQ(Texts(13), (std::vector<std::wstring>{L"pear", L"kiwi", L"Apple", L"fig", L"last"}));
    EXPECT_EQ(m_dialog.Take(), "");  // the program's changes tell nobody
}

TEST_F(Controls, SelectionFollowsInsertionsAndDeletions) {
    CListBox* list = As<CListBox>(13);
    for (const wchar_t* text : {L"a", L"b", L"c"}) list->AddString(text);
    EXPECT_EQ(list->GetCurSel(), LB_ERR);
    EXPECT_EQ(list->SetCurSel(1), 1);
    list->InsertString(0, L"first");
    EXPECT_EQ(list->GetCurSel(), 2);
    list->DeleteString(0);
    EXPECT_EQ(list->GetCurSel(), 1);
    EXPECT_EQ(list->DeleteString(1), 2);
    EXPECT_EQ(list->GetCurSel(), LB_ERR);
    EXPECT_EQ(list->SetCurSel(7), LB_ERR);
    EXPECT_EQ(list->DeleteString(7), LB_ERR);
    list->ResetContent();
    EXPECT_EQ(list->GetCount(), 0);
}

TEST_F(Controls, SearchesIgnoreCaseAndGoRoundFromTheEntryAfterTheStart) {
    CListBox* list = As<CListBox>(13);
    for (const wchar_t* text : {L"apple", L"Banana", L"apricot", L"APPLE"}) list->AddString(text);
    struct Case {
        int start;
        const wchar_t* text;
        bool exact;
        int found;
    };
    const Case cases[] = {
        {-1, L"ap", false, 0}, {0, L"ap", false, 2},      {2, L"ap", false, 3},  {3, L"ap", false, 0},
        {-1, L"apple", true, 0}, {0, L"Apple", true, 3},  {3, L"apple", true, 0}, {-1, L"appl", true, LB_ERR},
        {-1, L"b", false, 1},  {-1, L"cherry", false, LB_ERR}, {99, L"banana", true, 1}, {-1, L"", false, 0},
    };
    for (const Case& c : cases) {
        int found = c.exact ? list->FindStringExact(c.start, c.text) : list->FindString(c.start, c.text);
        EXPECT_EQ(found, c.found) << c.start << " " << testing::PrintToString(std::wstring(c.text));
    }
    EXPECT_EQ(As<CListBox>(12)->FindStringExact(-1, L"x"), LB_ERR);  // empty list
}

TEST_F(Controls, ItemDataBelongsToItsEntry) {
    CListBox* list = As<CListBox>(12);
    list->SetItemData(list->AddString(L"b"), 2);
    list->SetItemData(list->AddString(L"a"), 1);
    EXPECT_EQ(list->GetItemData(0), 1u);
    EXPECT_EQ(list->GetItemData(1), 2u);
    EXPECT_EQ(list->SetItemData(5, 9), LB_ERR);
    EXPECT_EQ(list->GetItemData(5), static_cast<DWORD_PTR>(LB_ERR));
    CString text;
    list->GetText(5, text);
    EXPECT_TRUE(text.IsEmpty());
}

TEST_F(Controls, AComboBoxEditPartShowsTheSelectionAndADropDownListFollowsItsText) {
    CComboBox* typed = As<CComboBox>(17);
    typed->AddString(L"zeta");
    typed->AddString(L"Alpha");
    EXPECT_EQ(typed->SetCurSel(1), 1);
    CString text;
    typed->GetWindowText(text);
    EXPECT_EQ(text, L"zeta");
    typed->SetWindowText(L"free text");
    typed->GetWindowText(text);
    EXPECT_EQ(text, L"free text");
    EXPECT_EQ(typed->GetCurSel(), 1);  // the program's text leaves the selection
    typed->SetCurSel(-1);
    typed->GetWindowText(text);
    EXPECT_TRUE(text.IsEmpty());

    CComboBox* list = As<CComboBox>(16);
    list->AddString(L"Full Path");
    list->AddString(L"Relative Path");
    list->SetWindowText(L"relative path");
    EXPECT_EQ(list->GetCurSel(), 1);
    list->GetWindowText(text);
    EXPECT_EQ(text, L"Relative Path");
    list->SetWindowText(L"nothing like it");
    EXPECT_EQ(list->GetCurSel(), 1);
    list->ResetContent();
    list->GetWindowText(text);
    EXPECT_TRUE(text.IsEmpty());

    EXPECT_EQ(typed->GetDroppedWidth(), MulDiv(60, 6, 4));  // the control's width until set
    EXPECT_EQ(typed->SetDroppedWidth(123), 123);
    EXPECT_EQ(typed->GetDroppedWidth(), 123);
    EXPECT_EQ(m_dialog.Take(), "");
}

TEST_F(Controls, AnEditTellsEveryChangeByProgramOrUserUpdateFirst) {
    CEdit* edit = As<CEdit>(10);
    edit->SetWindowText(L"one");
    EXPECT_EQ(m_dialog.Take(), "update 10, change 10");
    edit->SetWindowText(L"one");  // the same text again is still a change
    EXPECT_EQ(m_dialog.Take(), "update 10, change 10");
    m_dialog.SetDlgItemText(10, L"two");
    EXPECT_EQ(m_dialog.Take(), "update 10, change 10");
    EXPECT_EQ(UserType(Item(10), L"three"), L"");
    EXPECT_EQ(m_dialog.Take(), "update 10, change 10");
    CString text;
    m_dialog.GetDlgItemText(10, text);
    EXPECT_EQ(text, L"three");
    // A read-only box changes by program, and the user cannot type into it.
    m_dialog.SetDlgItemText(11, L"shown");
    EXPECT_EQ(m_dialog.Take(), "update 11, change 11");
    EXPECT_EQ(UserType(Item(11), L"typed"), L"control 11 is read-only");
    EXPECT_EQ(UserType(Item(28), L"12a"), L"control 28 takes digits only");
    EXPECT_EQ(UserType(Item(28), L"12"), L"");
}

TEST_F(Controls, TheUsersChoiceOfAnEntryIsReportedWhereTheListNotifies) {
    for (const wchar_t* text : {L"b", L"a"}) As<CListBox>(12)->AddString(text);
    EXPECT_EQ(UserChoose(Item(12), 1), L"");
    EXPECT_EQ(As<CListBox>(12)->GetCurSel(), 1);
    EXPECT_EQ(m_dialog.Take(), "selchange 12");
    EXPECT_EQ(UserChoose(Item(12), 1), L"");  // a click on the selected entry is reported again
    EXPECT_EQ(m_dialog.Take(), "selchange 12");
    EXPECT_EQ(UserChoose(Item(12), 2), L"control 12 has no entry 2 (it has 2 entries)");

    // Extended selection: a click selects that entry alone; no LBS_NOTIFY,
    // no report.
    CListBox* multiple = As<CListBox>(15);
    for (const wchar_t* text : {L"x", L"y", L"z"}) multiple->AddString(text);
    multiple->SetSel(0);
    multiple->SetSel(2);
    EXPECT_EQ(multiple->GetSelCount(), 2);
    EXPECT_EQ(UserChoose(Item(15), 1), L"");
    EXPECT_EQ(multiple->GetSelCount(), 1);
    EXPECT_EQ(multiple->GetSel(1), 1);
    EXPECT_EQ(multiple->GetCurSel(), 1);
    EXPECT_EQ(m_dialog.Take(), "");
}

TEST_F(Controls, ComboBoxesReportChoiceTypingAndDropDown) {
    CComboBox* typed = As<CComboBox>(17);
    typed->AddString(L"one");
    typed->AddString(L"two");
    EXPECT_EQ(UserDropDown(Item(17)), L"");
    EXPECT_TRUE(typed->GetDroppedState());
    EXPECT_EQ(UserDropDown(Item(17)), L"");  // dropped already: nothing more
    EXPECT_EQ(UserChoose(Item(17), 1), L"");
    EXPECT_FALSE(typed->GetDroppedState());
    EXPECT_EQ(m_dialog.Take(), "dropdown 17, selchange 17, closeup 17");
    CString text;
    typed->GetWindowText(text);
    EXPECT_EQ(text, L"two");

    EXPECT_EQ(UserType(Item(17), L"three"), L"");
    EXPECT_EQ(m_dialog.Take(), "editupdate 17, editchange 17");
    EXPECT_EQ(typed->GetCurSel(), CB_ERR);
    typed->GetWindowText(text);
    EXPECT_EQ(text, L"three");

    EXPECT_EQ(UserType(Item(16), L"x"), L"control 16 is a combo box with no text to type into");
    EXPECT_EQ(UserChoose(Item(16), 0), L"control 16 has no entry 0 (it has 0 entries)");
    EXPECT_EQ(UserDropDown(Item(12)), L"control 12 is a list box with no list to drop down");
}

TEST_F(Controls, ATickSelectsItsEntryAndTellsSelectionBeforeTick) {
    CCheckListBox ticks;
    ASSERT_TRUE(ticks.SubclassWindow(Item(14)));
    for (const wchar_t* text : {L"WIN", L"DOOR", L"desk"}) ticks.AddString(text);
    EXPECT_EQ(Texts(14), (std::vector<std::wstring>{L"desk", L"DOOR", L"WIN"}));
    ticks.SetCheck(1, 1);  // the program's tick: no report
    EXPECT_EQ(m_dialog.Take(), "");
    EXPECT_EQ(UserTick(Item(14), 2, true), L"");
    EXPECT_EQ(ticks.GetCheck(2), 1);
    EXPECT_EQ(ticks.GetCurSel(), 2);
    EXPECT_EQ(m_dialog.Take(), "selchange 14, chkchange 14");
    EXPECT_EQ(UserTick(Item(14), 2, true), L"");  // ticked already: no click
    EXPECT_EQ(m_dialog.Take(), "");
    EXPECT_EQ(UserTick(Item(14), 1, false), L"");  // DOOR loses its tick
    EXPECT_EQ(ticks.GetCheck(1), 0);
    EXPECT_EQ(ticks.GetCurSel(), 1);
    EXPECT_EQ(m_dialog.Take(), "selchange 14, chkchange 14");

    ticks.Enable(0, FALSE);
    EXPECT_EQ(UserTick(Item(14), 0, true), L"entry 0 of control 14 is disabled");
    ticks.SetCheckStyle(BS_CHECKBOX);
    EXPECT_EQ(UserTick(Item(14), 1, true), L"the ticks of control 14 change only by the program");
    EXPECT_EQ(UserTick(Item(12), 0, true), L"control 12 is a list box, not a check list box");
    ticks.UnsubclassWindow();
}

TEST_F(Controls, ButtonsChangeTheirCheckByKindBeforeTheClickIsReported) {
    EXPECT_EQ(UserClick(Item(18)), L"");
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(18), 1u);
    EXPECT_EQ(UserClick(Item(18)), L"");
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(18), 0u);
    EXPECT_EQ(UserClick(Item(19)), L"");  // a plain check box waits for its program
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(19), 0u);
    std::vector<UINT> states;
    for (int i = 0; i < 3; ++i) {
        UserClick(Item(20));
        states.push_back(m_dialog.IsDlgButtonChecked(20));
    }
    EXPECT_EQ(states, (std::vector<UINT>{1, 2, 0}));
    EXPECT_EQ(m_dialog.Take(), "clicked 18, clicked 18, clicked 19, clicked 20, clicked 20, clicked 20");

    m_dialog.CheckDlgButton(23, 1);
    m_dialog.CheckDlgButton(24, 1);
    EXPECT_EQ(UserClick(Item(22)), L"");
    EXPECT_EQ(m_dialog.GetCheckedRadioButton(21, 24), 22);
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(23), 0u);  // the group's radio buttons all let go
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(24), 1u);  // another group keeps its own
    EXPECT_EQ(UserClick(Item(22)), L"");
    EXPECT_EQ(m_dialog.IsDlgButtonChecked(22), 1u);
    EXPECT_EQ(m_dialog.Take(), "clicked 22, clicked 22");
    EXPECT_EQ(RadioGroup(Item(23)), (std::vector<HWND>{Item(21), Item(22), Item(23)}));

    EXPECT_EQ(UserClick(Item(27)), L"control 27 is a group box, not a button");
    EXPECT_EQ(UserClick(Item(25)), L"control 25 is a static text that takes no clicks");
    EXPECT_EQ(UserClick(Item(26)), L"");
    EXPECT_EQ(UserClick(Item(10)), L"control 10 is an edit box, not a button");
    EXPECT_EQ(m_dialog.Take(), "clicked 26");
}

TEST_F(Controls, DisabledAndHiddenControlsAreOutOfTheUsersReach) {
    m_dialog.GetDlgItem(18)->EnableWindow(FALSE);
    EXPECT_EQ(UserClick(Item(18)), L"control 18 is disabled");
    m_dialog.GetDlgItem(18)->EnableWindow(TRUE);
    m_dialog.GetDlgItem(18)->ShowWindow(SW_HIDE);
    EXPECT_EQ(UserClick(Item(18)), L"control 18 is hidden");
    EXPECT_FALSE(m_dialog.GetDlgItem(18)->IsWindowVisible());
    m_dialog.GetDlgItem(18)->ShowWindow(SW_SHOW);
    m_dialog.ShowWindow(SW_HIDE);
    EXPECT_EQ(UserClick(Item(18)), L"the window that holds control 18 is hidden");
    m_dialog.ShowWindow(SW_SHOW);
    m_dialog.EnableWindow(FALSE);
    EXPECT_EQ(UserType(Item(10), L"x"), L"the window that holds control 10 is disabled");
    EXPECT_EQ(m_dialog.Take(), "");
}

TEST_F(Controls, StylesAndTheStateOfWindowsAreTheirOwn) {
    CWnd* edit = m_dialog.GetDlgItem(10);
    EXPECT_TRUE(edit->IsWindowEnabled());
    EXPECT_FALSE(edit->EnableWindow(FALSE));  // it was not disabled before
    EXPECT_TRUE(edit->EnableWindow(TRUE));
    EXPECT_TRUE(edit->ModifyStyle(0, ES_READONLY));
    EXPECT_FALSE(edit->ModifyStyle(0, ES_READONLY));  // nothing changed
    EXPECT_TRUE(edit->GetStyle() & ES_READONLY);
    EXPECT_EQ(UserType(Item(10), L"x"), L"control 10 is read-only");
    EXPECT_EQ(edit->GetDlgCtrlID(), 10);
    EXPECT_EQ(edit->GetParent(), &m_dialog);
    EXPECT_EQ(m_dialog.GetDlgItem(99), nullptr);
    CString text;
    EXPECT_EQ(m_dialog.GetDlgItemText(99, text), 0);
}

}  // namespace
