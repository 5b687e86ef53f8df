#include "ArxUtils/ArxUtils.h"
#include "support/DialogTestSupport.h"

namespace {

// The host's text metric: digits are 6 pixels wide and a blank 3; a border
// is 1 pixel and a vertical scroll bar 17.
class ListRoutinesTest : public qmtest::DialogTest {
protected:
    void SetUp() override {
        qmtest::DialogTest::SetUp();
        ASSERT_TRUE(m_dialog.Create(500, nullptr));
        m_list.Attach(m_dialog.GetDlgItem(13)->GetSafeHwnd());
        m_combo.Attach(m_dialog.GetDlgItem(16)->GetSafeHwnd());
    }
    void TearDown() override {
        m_list.Detach();
        m_combo.Detach();
        m_dialog.DestroyWindow();
        qmtest::DialogTest::TearDown();
    }
    CDialog m_dialog{500};
    CListBox m_list;
    CComboBox m_combo;
};

TEST_F(ListRoutinesTest, ItemDataFindsTheFirstEntryThatCarriesIt) {
    EXPECT_EQ(FindListItemByData(m_list, 0), -1);  // an empty list
    const DWORD data[] = {0, static_cast<DWORD>(-1), 2, 4, 2};
    for (DWORD d : data) {
        m_list.SetItemData(m_list.AddString(L"x"), d);
        m_combo.SetItemData(m_combo.AddString(L"x"), d);
    }
    EXPECT_EQ(FindListItemByData(m_list, 2), 2);
    EXPECT_EQ(FindComboItemByData(m_combo, 2), 2);
    EXPECT_EQ(FindListItemByData(m_list, static_cast<DWORD>(-1)), 1);
    EXPECT_EQ(FindComboItemByData(m_combo, 4), 3);
    EXPECT_EQ(FindListItemByData(m_list, 6), -1);
    EXPECT_EQ(FindComboItemByData(m_combo, 6), -1);
}

TEST_F(ListRoutinesTest, ListExtentIsTheWidestEntryAndFourBorders) {
    FitListExtent(m_list);
    EXPECT_EQ(m_list.GetHorizontalExtent(), 4);  // entries that hold nothing get the margin alone
    m_list.AddString(L"");
    FitListExtent(m_list);
    EXPECT_EQ(m_list.GetHorizontalExtent(), 4);
    m_list.AddString(L"12");
    m_list.AddString(L"1234");
    m_list.AddString(L"123");
    FitListExtent(m_list);
    EXPECT_EQ(m_list.GetHorizontalExtent(), 24 + 4);
}

TEST_F(ListRoutinesTest, DropWidthIsTheWidestEntryWithAScrollBarAndABlank) {
    FitComboDropWidth(m_combo);
    EXPECT_EQ(m_combo.GetDroppedWidth(), 3);  // an empty combo box: the blank alone
    m_combo.AddString(L"1");
    m_combo.AddString(L"123");
    FitComboDropWidth(m_combo);
    EXPECT_EQ(m_combo.GetDroppedWidth(), 18 + 17 + 3);
}

}  // namespace
