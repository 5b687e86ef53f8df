// The entries of lists kept in blocks, and the searches that halve a list
// whose entries stand in order, checked against a plain array and a plain
// walk.
#include <afxwin.h>

#include <random>

#include "support/DialogTestSupport.h"
#include "ui/Controls.h"
#include "ui/EntryList.h"

namespace {

using cadhost::ui::EntryList;
using cadhost::ui::ListEntry;

std::vector<std::wstring> Texts(const EntryList& list) {
    std::vector<std::wstring> texts;
    for (size_t i = 0; i < list.size(); ++i) texts.push_back(list[i].text);
    return texts;
}

TEST(EntryList, InsertionsAndRemovalsAnywhereKeepTheOrderOfAnArray) {
    EntryList list;
    std::vector<std::wstring> expected;
    std::mt19937 random(7);
    for (int step = 0; step < 6000; ++step) {
        bool remove = !expected.empty() && random() % 3 == 0;
        if (remove) {
            size_t at = random() % expected.size();
            list.erase(at);
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(at));
        } else {
            size_t at = random() % (expected.size() + 1);
            ListEntry entry;
            entry.text = std::to_wstring(step);
            list.insert(at, entry);
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(at), entry.text);
        }
        if (step % 500 == 0) {
            ASSERT_EQ(Texts(list), expected) << step;
        }
    }
    EXPECT_EQ(Texts(list), expected);
    size_t visited = 0;
    list.ForEach([&](size_t index, ListEntry& entry) {
        EXPECT_EQ(entry.text, expected[index]);
        ++visited;
    });
    EXPECT_EQ(visited, expected.size());
    EXPECT_THROW(list[list.size()], std::out_of_range);
    EXPECT_THROW(list.insert(list.size() + 1, ListEntry{}), std::out_of_range);
    list.clear();
    EXPECT_TRUE(list.empty());
}

class OrderedSearch : public qmtest::DialogTest {};

// Finds a text by walking, as the platform's list does.
int Walk(const std::vector<std::wstring>& texts, int startAfter, const std::wstring& text, bool exact) {
    int count = static_cast<int>(texts.size());
    if (count == 0) return LB_ERR;
    int start = startAfter < 0 || startAfter >= count ? 0 : startAfter + 1;
    auto lower = [](std::wstring s) {
        for (wchar_t& c : s) c = static_cast<wchar_t>(std::towlower(c));
        return s;
    };
    for (int n = 0; n < count; ++n) {
        int i = (start + n) % count;
        std::wstring entry = lower(texts[static_cast<size_t>(i)]);
        std::wstring wanted = lower(text);
        if (exact ? entry == wanted : entry.rfind(wanted, 0) == 0) return i;
    }
    return LB_ERR;
}

TEST_F(OrderedSearch, HalvingFindsWhatAWalkFinds) {
    qmtest::Recorder dialog;
    ASSERT_TRUE(dialog.Create(500));
    HWND sorted = ::GetDlgItem(dialog.m_hWnd, 12);
    HWND plain = ::GetDlgItem(dialog.m_hWnd, 13);
    std::mt19937 random(11);
    const wchar_t letters[] = L"aAbB2";
    auto word = [&] {
        std::wstring text;
        for (size_t n = 1 + random() % 3; n > 0; --n) text += letters[random() % 5];
        return text;
    };
    for (int i = 0; i < 400; ++i) {
        cadhost::ui::AddEntry(sorted, word());
        // Into the plain list at any place, so that it falls out of order.
        cadhost::ui::InsertEntry(plain, static_cast<int>(random() % (cadhost::ui::EntryCount(plain) + 1)), word());
    }
    for (HWND list : {sorted, plain}) {
        std::vector<std::wstring> texts;
        for (int i = 0; i < cadhost::ui::EntryCount(list); ++i) texts.push_back(cadhost::ui::Entry(list, i)->text);
        for (int query = 0; query < 600; ++query) {
            std::wstring text = query % 7 == 0 ? L"" : word();
            int startAfter = static_cast<int>(random() % (texts.size() + 2)) - 1;
            bool exact = query % 2 == 0;
            ASSERT_EQ(cadhost::ui::FindEntry(list, startAfter, text, exact), Walk(texts, startAfter, text, exact))
                << cadhost::ToUtf8(text) << " after " << startAfter << (exact ? " exact" : " prefix");
        }
    }
    EXPECT_TRUE(sorted->entriesInOrder);
    EXPECT_FALSE(plain->entriesInOrder);
    // A sorted list that the program put out of order still adds in place.
    cadhost::ui::InsertEntry(sorted, 0, L"zzz");
    EXPECT_FALSE(sorted->entriesInOrder);
    int at = cadhost::ui::AddEntry(sorted, L"zzz");
    EXPECT_EQ(at, cadhost::ui::EntryCount(sorted) - 1);
}

}  // namespace
