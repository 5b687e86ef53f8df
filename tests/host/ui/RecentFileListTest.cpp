// The framework's list of recent files: the order Add keeps, the names a
// menu shows, the menu items UpdateMenu makes, and the profile the list is
// kept in.
#include <afxadv.h>
#include <direct.h>
#include <shlwapi.h>

#include <string>
#include <vector>

#include "support/TestHost.h"

namespace {

class RecentFileListTest : public qmtest::HostTest {
protected:
    static std::vector<std::wstring> Slots(CRecentFileList& list) {
        std::vector<std::wstring> slots;
        for (int i = 0; i < list.GetSize(); ++i) slots.push_back(list[i].str());
        return slots;
    }
    static std::wstring File(int n) { return L"/proj/file" + std::to_wstring(n) + L".txt"; }

    // A popup with the one item the entries replace, and a CCmdUI on it.
    struct Popup {
        CMenu menu;
        CCmdUI item;
        Popup() {
            menu.CreatePopupMenu();
            menu.AppendMenu(MF_STRING | MF_GRAYED, 32769, L"Recent file");
            item.m_pMenu = &menu;
            item.m_nIndex = 0;
            item.m_nID = 32769;
            item.m_nIndexMax = menu.GetMenuItemCount();
        }
        std::vector<std::wstring> Items() {
            std::vector<std::wstring> items;
            for (UINT i = 0; i < menu.GetMenuItemCount(); ++i) {
                CString text;
                menu.GetMenuString(i, text, MF_BYPOSITION);
                UINT state = menu.GetMenuState(i, MF_BYPOSITION);
                items.push_back(std::to_wstring(menu.GetMenuItemID(static_cast<int>(i))) + L" " + text.str() +
                                ((state & (MF_GRAYED | MF_DISABLED)) ? L" (inactive)" : L""));
            }
            return items;
        }
    };
};

TEST_F(RecentFileListTest, TenFilesPushTheFirstOutAndTheNewestStandsFirst) {
    CRecentFileList list(0, L"Section", L"File%d", 9);
    for (int n = 1; n <= 10; ++n) list.Add(File(n).c_str());
    std::vector<std::wstring> expected;
    for (int n = 10; n >= 2; --n) expected.push_back(File(n));
    EXPECT_EQ(Slots(list), expected);
}

TEST_F(RecentFileListTest, AFileInTheListMovesToTheFrontAndTheOthersKeepTheirOrder) {
    CRecentFileList list(0, L"Section", L"File%d", 9);
    for (int n = 9; n >= 1; --n) list.Add(File(n).c_str());  // file1 first ... file9 last
    list.Add(File(5).c_str());                                // slot 4
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{File(5), File(1), File(2), File(3), File(4), File(6), File(7),
                                                      File(8), File(9)}));
    // The same file written in other letters is the same file; the new
    // spelling stands in front.
    list.Add(L"/PROJ/File8.TXT");
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{L"/PROJ/File8.TXT", File(5), File(1), File(2), File(3), File(4),
                                                      File(6), File(7), File(9)}));
    // The last slot is not looked at: a file there goes out and comes in front.
    list.Add(File(9).c_str());
    EXPECT_EQ(list[0].str(), File(9));
    EXPECT_EQ(list[8].str(), File(7));
}

TEST_F(RecentFileListTest, AddMakesPathsAbsoluteAndIgnoresNothing) {
    qmtest::TempFolder folder;
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    std::wstring here = cadhost::FromUtf8(std::filesystem::current_path().string());
    CRecentFileList list(0, L"Section", L"File%d", 4);
    list.Add(L"notes.txt");
    list.Add(L"sub/../other.txt");
    list.Add(L"");
    list.Add(nullptr);
    std::filesystem::current_path(before);
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{here + L"/other.txt", here + L"/notes.txt", L"", L""}));
}

TEST_F(RecentFileListTest, RemoveMovesTheRestUpAndIndexesOutsideTouchNoSlot) {
    CRecentFileList list(0, L"Section", L"File%d", 4);
    for (int n = 4; n >= 1; --n) list.Add(File(n).c_str());
    list.Remove(1);
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{File(1), File(3), File(4), L""}));
    list.Remove(7);
    list.Remove(-1);
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{File(1), File(3), File(4), L""}));
    list[9] = L"/elsewhere.txt";
    EXPECT_TRUE(list[9].IsEmpty());
    EXPECT_EQ(Slots(list), (std::vector<std::wstring>{File(1), File(3), File(4), L""}));
}

TEST_F(RecentFileListTest, DisplayNamesAreShortAndKeepTheFilesName) {
    struct Case {
        const wchar_t* path;
        const wchar_t* current;  // the folder the name is read from
        BOOL atLeastName;
        const wchar_t* shown;
    };
    const Case cases[] = {
        {L"/proj/site/notes.txt", L"/proj/site/", TRUE, L"notes.txt"},
        {L"/proj/site/notes.txt", L"/PROJ/SITE/", TRUE, L"notes.txt"},
        {L"/proj/site/sub/notes.txt", L"/proj/site/", TRUE, L"/proj/site/sub/notes.txt"},
        {L"/proj/site/notes.txt", L"/elsewhere/", TRUE, L"/proj/site/notes.txt"},
        {L"/home/user/projects/site/notes.txt", L"/", TRUE, L"/home/.../site/notes.txt"},
        {L"/home/user/projects/a/very/deep/site/notes.txt", L"/", TRUE, L"/home/.../deep/site/notes.txt"},
        {L"/home/user/a-name-of-twenty-six-chars.txt", L"/", TRUE, L"a-name-of-twenty-six-chars.txt"},
        {L"/home/user/a-file-name-longer-than-thirty.txt", L"/", TRUE, L"a-file-name-longer-than-thirty.txt"},
        {L"/home/user/a-file-name-longer-than-thirty.txt", L"/", FALSE, L""},
        {L"/a-rather-long-folder-name/notes.txt", L"/", TRUE, L"/.../notes.txt"},
        {L"just-a-name-without-any-folder-at-all.txt", L"/", TRUE, L"just-a-name-without-any-folder-at-all.txt"},
    };
    CRecentFileList list(0, L"Section", L"File%d", 1, 30);
    for (const Case& c : cases) {
        list[0] = c.path;
        CString shown;
        ASSERT_TRUE(list.GetDisplayName(shown, 0, c.current, static_cast<int>(std::wcslen(c.current)), c.atLeastName))
            << cadhost::ToUtf8(c.path);
        EXPECT_EQ(shown.str(), c.shown) << cadhost::ToUtf8(c.path);
        EXPECT_LE(shown.GetLength(), std::max(30, static_cast<int>(std::wcslen(PathFindFileNameW(c.path)))));
    }
    list[0].Empty();
    CString shown = L"kept";
    EXPECT_FALSE(list.GetDisplayName(shown, 0, L"/", 1));
    EXPECT_FALSE(list.GetDisplayName(shown, 3, L"/", 1));
    EXPECT_EQ(shown.str(), L"kept");
}

TEST_F(RecentFileListTest, UpdateMenuPutsOneNumberedItemASlotUpToTheFirstEmptyOne) {
    CRecentFileList list(0, L"Section", L"File%d", 9);
    list[0] = L"/proj/R&D/notes.txt";
    list[1] = L"/proj/site/plan.csv";
    list[3] = L"/proj/after-a-gap.txt";  // behind the empty slot 2: not shown
    Popup popup;
    list.UpdateMenu(&popup.item);
    EXPECT_EQ(popup.Items(), (std::vector<std::wstring>{L"32769 &1 /proj/R&&D/notes.txt", L"32770 &2 /proj/site/plan.csv"}));
    EXPECT_EQ(list.m_strOriginal.str(), L"Recent file");
    EXPECT_EQ(popup.item.m_nIndex, 1u);  // the last item put in
    EXPECT_EQ(popup.item.m_nIndexMax, 2u);

    // Counting from another first number; the tenth is "1&0".
    CRecentFileList later(8, L"Section", L"File%d", 3);
    later[0] = L"/a.txt";
    later[1] = L"/b.txt";
    later[2] = L"/c.txt";
    Popup second;
    later.UpdateMenu(&second.item);
    EXPECT_EQ(second.Items(), (std::vector<std::wstring>{L"32769 &9 /a.txt", L"32770 1&0 /b.txt", L"32771 11 /c.txt"}));
}

TEST_F(RecentFileListTest, AnEmptyFirstSlotLeavesTheOriginalItemInactive) {
    CRecentFileList list(0, L"Section", L"File%d", 9);
    list[1] = L"/proj/second.txt";
    Popup popup;
    list.UpdateMenu(&popup.item);
    EXPECT_EQ(popup.Items(), (std::vector<std::wstring>{L"32769 Recent file (inactive)"}));
}

TEST_F(RecentFileListTest, TheApplicationsProfileKeepsTheList) {
    {
        CRecentFileList list(0, L"Recent File List", L"File%d", 3);
        list.Add(L"/proj/b.txt");
        list.Add(L"/proj/a.txt");
        list.WriteList();
    }
    CRecentFileList again(0, L"Recent File List", L"File%d", 3);
    again[2] = L"/stale.txt";  // read anew: the profile has no third value
    again.ReadList();
    EXPECT_EQ(Slots(again), (std::vector<std::wstring>{L"/proj/a.txt", L"/proj/b.txt", L""}));
}

}  // namespace
