// Dialogs: templates of the current resources, modal runs through the user
// interface driver, modeless pages made children, places in pixels, and the
// platform's message boxes, file dialog and popup menus.
#include <acdocman.h>
#include <afxdlgs.h>

#include "support/DialogTestSupport.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"
#include "ui/resources/ModuleResources.h"
#include "ui/resources/ResourceLookup.h"

namespace {

class Dialogs : public qmtest::DialogTest {};

class MenuOwner : public CDialog {
public:
    MenuOwner() : CDialog(500) {}
    std::vector<UINT> commands;

protected:
    void OnItem(UINT id) { commands.push_back(id); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(MenuOwner, CDialog)
    ON_COMMAND_RANGE(601, 603, &MenuOwner::OnItem)
END_MESSAGE_MAP()

TEST_F(Dialogs, AModalRunLastsUntilEndDialogAndLeavesNoWindowBehind) {
    qmtest::Recorder dialog;
    CListBox list;
    size_t windows = desktop().WindowCount();
    HWND seen = nullptr;
    m_driver.onModal = [&](HWND window) {
        seen = window;
        EXPECT_EQ(desktop().InnermostModal(), window);
        EXPECT_TRUE(::IsWindowVisible(window));
        EXPECT_TRUE(list.SubclassWindow(::GetDlgItem(window, 12)));
        EXPECT_FALSE(desktop().ModalEnded(window));
        EXPECT_EQ(cadhost::ui::UserClick(::GetDlgItem(window, 19)), L"");
        EXPECT_FALSE(desktop().ModalEnded(window));
        EXPECT_EQ(cadhost::ui::UserClick(::GetDlgItem(window, IDCANCEL)), L"");
        EXPECT_TRUE(desktop().ModalEnded(window));
    };
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(m_driver.modalRuns, 1);
    EXPECT_EQ(dialog.Take(), "clicked 19");
    EXPECT_FALSE(::IsWindow(seen));
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(list.m_hWnd, nullptr);  // members let go of their controls with the window
    EXPECT_EQ(desktop().WindowCount(), windows);
    EXPECT_EQ(desktop().ModalDepth(), 0u);
}

TEST_F(Dialogs, ADriverThatGivesUpCancelsTheDialog) {
    qmtest::Recorder dialog;
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);  // the driver returned with the dialog open

    class EndsAtOnce : public CDialog {
    public:
        EndsAtOnce() : CDialog(500) {}
        BOOL OnInitDialog() override {
            CDialog::OnInitDialog();
            EndDialog(77);
            return TRUE;
        }
    };
    EndsAtOnce early;
    m_driver.modalRuns = 0;
    EXPECT_EQ(early.DoModal(), 77);
    EXPECT_EQ(m_driver.modalRuns, 0);  // ended before the user came
}

TEST_F(Dialogs, ModalDialogsNestAndTheInnerOneIsOwnedByTheOuter) {
    qmtest::Recorder outer;
    std::vector<std::string> order;
    m_driver.onModal = [&](HWND window) {
        if (window == outer.m_hWnd) {
            order.push_back("outer");
            qmtest::Recorder inner(500);
            INT_PTR result = inner.DoModal();
            order.push_back("inner ended " + std::to_string(result));
            EXPECT_EQ(desktop().InnermostModal(), window);
            outer.EndDialog(5);
            return;
        }
        order.push_back("inner");
        EXPECT_EQ(desktop().ModalDepth(), 2u);
        EXPECT_EQ(::GetParent(window), outer.m_hWnd);
        CWnd::FromHandle(window)->SendMessage(WM_COMMAND, IDOK, 0);
    };
    EXPECT_EQ(outer.DoModal(), 5);
    EXPECT_EQ(order, (std::vector<std::string>{"outer", "inner", "inner ended 1"}));
}

TEST_F(Dialogs, TemplatesComeFromTheCurrentResourcesOnly) {
    acDocManagerPtr()->popResourceHandle();  // the test's script is off the stack now
    qmtest::Recorder outside;
    EXPECT_EQ(outside.DoModal(), -1);
    EXPECT_NE(TakeOutput().find("The dialog template 500 is not in the current resources."), std::string::npos);
    EXPECT_FALSE(outside.Create(500));
    EXPECT_EQ(m_driver.modalRuns, 0);
    EXPECT_NE(AfxFindResourceHandle(MAKEINTRESOURCE(500), RT_DIALOG), m_resources);
    EXPECT_FALSE(cadhost::ui::FindDialogTemplate(AfxGetResourceHandle(), MAKEINTRESOURCE(500)));

    acDocManagerPtr()->pushResourceHandle(m_resources);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(500), RT_DIALOG), m_resources);
    EXPECT_EQ(AfxFindResourceHandle(L"named", RT_DIALOG), m_resources);
    EXPECT_TRUE(FindResourceW(m_resources, L"#500", RT_DIALOG));
    EXPECT_FALSE(FindResourceW(m_resources, MAKEINTRESOURCE(500), RT_MENU));
    EXPECT_TRUE(FindResourceW(m_resources, MAKEINTRESOURCE(510), RT_MENU));
    CDialog named(L"Named");
    m_driver.onModal = [](HWND window) { ::SendMessageW(window, WM_CLOSE, 0, 0); };
    EXPECT_EQ(named.DoModal(), IDCANCEL);
}

// Below a module's handle, the host's own resources answer what the module
// does not hold.
TEST_F(Dialogs, TheHostsOwnResourcesAnswerWhatTheCurrentHandleLacks) {
    HINSTANCE hostModule = cadhost::ui::HostResourceHandle();
    auto kept = cadhost::ui::ResourcesOf(hostModule);
    cadhost::ui::ParseResult parsed = cadhost::ui::ParseResourceScript(
        {{L"Host.rc", "900 DIALOG 0,0,50,20 CAPTION \"Host\" BEGIN END\n500 DIALOG 0,0,9,9 BEGIN END\n"}});
    ASSERT_TRUE(parsed.script);
    cadhost::ui::AttachResources(hostModule, parsed.script);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(900), RT_DIALOG), hostModule);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(500), RT_DIALOG), m_resources);  // the module's comes first
    CDialog hosted(900);
    std::wstring caption;
    m_driver.onModal = [&](HWND window) {
        caption = cadhost::ui::GetText(window);
        ::EndDialog(window, IDOK);
    };
    EXPECT_EQ(hosted.DoModal(), IDOK);
    EXPECT_EQ(caption, L"Host");
    cadhost::ui::AttachResources(hostModule, kept);
}

TEST_F(Dialogs, APopupPageBecomesAChildOfItsParent) {
    qmtest::Recorder host(500);
    ASSERT_TRUE(host.Create(500));
    class Page : public CDialog {
    public:
        Page() : CDialog(502) {}
    } page;
    ASSERT_TRUE(page.Create(502, &host));
    EXPECT_EQ(::GetParent(page.m_hWnd), host.m_hWnd);  // owned, not a child
    EXPECT_FALSE(::IsChild(host.m_hWnd, page.m_hWnd));
    RECT before{};
    page.GetClientRect(&before);
    page.ModifyStyle(WS_POPUP | WS_CHILD | WS_THICKFRAME, WS_CHILD);
    page.SetParent(&host);
    EXPECT_TRUE(::IsChild(host.m_hWnd, page.m_hWnd));
    EXPECT_EQ(page.GetStyle() & (WS_POPUP | WS_THICKFRAME | WS_CHILD), static_cast<DWORD>(WS_CHILD));
    RECT after{};
    page.GetClientRect(&after);
    EXPECT_EQ(after.right - before.right, 8);  // the thick frame's edges are client area now
    EXPECT_EQ(host.SetParent(&page), nullptr);  // a window cannot go under its own child

    class Child : public CDialog {
    public:
        Child() : CDialog(501) {}
    } child;
    ASSERT_TRUE(child.Create(501, &host));
    EXPECT_TRUE(::IsChild(host.m_hWnd, child.m_hWnd));
    EXPECT_EQ(::GetFocus(), ::GetDlgItem(child.m_hWnd, 10));  // the first tab stop of a shown page
}

TEST_F(Dialogs, PlacesAreInPixelsOfTheDialogFont) {
    qmtest::Recorder dialog;
    ASSERT_TRUE(dialog.Create(500));
    RECT units{4, 8, 8, 16};
    dialog.MapDialogRect(&units);
    EXPECT_EQ(units.left, 6);  // Microsoft Sans Serif 8: 6 by 13 per 4 by 8 units
    EXPECT_EQ(units.top, 13);
    EXPECT_EQ(units.right, 12);
    EXPECT_EQ(units.bottom, 26);

    RECT window{};
    dialog.GetWindowRect(&window);
    // At 10, 20 units on the screen; the client of 200 by 150 units with a
    // modal frame of 3 pixels and a caption of 19.
    EXPECT_EQ(window.left, 15);
    EXPECT_EQ(window.top, 33);
    EXPECT_EQ(window.right - window.left, 300 + 6);
    EXPECT_EQ(window.bottom - window.top, MulDiv(150, 13, 8) + 6 + 19);

    RECT edit{};
    dialog.GetDlgItem(10)->GetWindowRect(&edit);  // at 7, 7 units, 60 by 14
    EXPECT_EQ(edit.left, window.left + 3 + MulDiv(7, 6, 4));
    EXPECT_EQ(edit.top, window.top + 22 + MulDiv(7, 13, 8));
    EXPECT_EQ(edit.right - edit.left, 90);
    EXPECT_EQ(edit.bottom - edit.top, MulDiv(14, 13, 8));
    POINT corner{edit.left, edit.top};
    dialog.ScreenToClient(&corner);
    EXPECT_EQ(corner.x, MulDiv(7, 6, 4));
    EXPECT_EQ(corner.y, MulDiv(7, 13, 8));
    RECT combo{};
    dialog.GetDlgItem(16)->GetWindowRect(&combo);  // a drop-down's height is that of its edit part
    EXPECT_EQ(combo.bottom - combo.top, MulDiv(14, 13, 8));
    EXPECT_EQ(dialog.GetDefID(), MAKELONG(IDOK, DC_HASDEFID));
}

TEST_F(Dialogs, MessageBoxesShowTheirButtonsAndAnswerWithOne) {
    struct Case {
        UINT type;
        std::vector<int> buttons;
        int defaultButton;
    };
    const Case cases[] = {
        {MB_OK, {IDOK}, IDOK},
        {MB_OKCANCEL | MB_DEFBUTTON2, {IDOK, IDCANCEL}, IDCANCEL},
        {MB_YESNO | MB_ICONQUESTION, {IDYES, IDNO}, IDYES},
        {MB_YESNOCANCEL | MB_DEFBUTTON3, {IDYES, IDNO, IDCANCEL}, IDCANCEL},
        {MB_YESNO | MB_DEFBUTTON3, {IDYES, IDNO}, IDYES},  // no third button: the first
        {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}, IDRETRY},
        {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}, IDABORT},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(::MessageBoxW(nullptr, L"text", L"caption", c.type), c.defaultButton) << c.type;
        EXPECT_EQ(m_driver.boxes.back().buttons, c.buttons) << c.type;
    }
    m_driver.answers = {IDNO, IDRETRY};
    EXPECT_EQ(AfxMessageBox(L"Keep?", MB_YESNO), IDNO);
    EXPECT_EQ(AfxMessageBox(L"Keep?", MB_YESNO), IDYES);  // an answer of no button: the default
    ASSERT_TRUE(desktop().LastMessage());
    EXPECT_EQ(desktop().LastMessage()->caption, L"cadhost");
    EXPECT_EQ(desktop().LastMessage()->text, L"Keep?");
    EXPECT_EQ(desktop().LastMessage()->answer, IDYES);
    TakeOutput();
    CWnd nobody;
    nobody.MessageBox(L"Line one\nline two", L"Norvo Quillmark", MB_OK | MB_ICONINFORMATION);
    ::MessageBoxW(nullptr, L"no caption", nullptr, MB_OK);
    EXPECT_EQ(TakeOutput(), "[Norvo Quillmark] Line one\nline two\n[Error] no caption\n");
    EXPECT_EQ(AfxMessageBox(16u), IDOK);
    EXPECT_EQ(desktop().LastMessage()->text, L"sixteen");
}

TEST_F(Dialogs, TheFileDialogGivesThePathThatTheUserChose) {
    CFileDialog open(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, L"Text Files(*.prn;*.txt;*.csv)|*.prn;*.txt;*.csv||");
    EXPECT_EQ(open.DoModal(), IDCANCEL);
    ASSERT_EQ(m_driver.fileDialogs.size(), 1u);
    EXPECT_TRUE(m_driver.fileDialogs[0].open);
    EXPECT_EQ(m_driver.fileDialogs[0].filter, L"Text Files(*.prn;*.txt;*.csv)|*.prn;*.txt;*.csv||");
    EXPECT_NE(TakeOutput().find("[Open] Text Files(*.prn;*.txt;*.csv)|*.prn;*.txt;*.csv||"), std::string::npos);
    // The record holds the filter with zeros for the bars.
    EXPECT_EQ(std::wstring(open.m_ofn.lpstrFilter), L"Text Files(*.prn;*.txt;*.csv)");

    m_driver.file = L"/data/book.v2.xls";
    EXPECT_EQ(open.DoModal(), IDOK);
    EXPECT_EQ(open.GetPathName(), L"/data/book.v2.xls");
    EXPECT_EQ(open.GetFileName(), L"book.v2.xls");
    EXPECT_EQ(open.GetFileExt(), L"xls");
    EXPECT_EQ(open.GetFileTitle(), L"book.v2");
    EXPECT_EQ(open.GetFolderPath(), L"/data");

    CFileDialog save(FALSE, L"dxf", L"drawing");
    m_driver.file = L"/tmp/out";
    EXPECT_EQ(save.DoModal(), IDOK);
    EXPECT_EQ(save.GetPathName(), L"/tmp/out.dxf");  // the default extension comes on
    EXPECT_FALSE(m_driver.fileDialogs.back().open);
    EXPECT_EQ(m_driver.fileDialogs.back().initialName, L"drawing");
    m_driver.file = std::wstring(400, L'x');
    EXPECT_EQ(save.DoModal(), IDCANCEL);  // no room for the path
}

TEST_F(Dialogs, PopupMenusSendTheChosenCommandToTheirOwnerLater) {
    MenuOwner owner;
    ASSERT_TRUE(owner.Create(500));
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(510));
    CMenu* popup = menu.GetSubMenu(0);
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->GetMenuItemCount(), 4u);
    EXPECT_EQ(popup->GetMenuItemID(0), 601u);
    EXPECT_EQ(popup->GetMenuItemID(1), 0u);  // a separator
    EXPECT_EQ(popup->GetMenuItemID(3), 0xFFFFFFFFu);  // a submenu
    EXPECT_EQ(popup->GetMenuState(602, MF_BYCOMMAND) & MF_GRAYED, static_cast<UINT>(MF_GRAYED));
    EXPECT_EQ(popup->GetSubMenu(3)->GetMenuItemID(0), 603u);

    m_driver.menuChoice = 0;
    EXPECT_TRUE(popup->TrackPopupMenu(0, 10, 20, &owner));
    EXPECT_EQ(m_driver.menus.back().x, 10);
    EXPECT_TRUE(owner.commands.empty());  // the command comes once the menu has closed
    desktop().DeliverPosted();
    EXPECT_EQ(owner.commands, (std::vector<UINT>{601}));
    m_driver.menuChoice = 2;  // grayed: nothing
    EXPECT_FALSE(popup->TrackPopupMenu(0, 0, 0, &owner));
    m_driver.menuChoice = -1;
    EXPECT_FALSE(popup->TrackPopupMenu(0, 0, 0, &owner));
    m_driver.menuChoice = 0;
    EXPECT_EQ(popup->TrackPopupMenu(TPM_RETURNCMD, 0, 0, &owner), 601);
    desktop().DeliverPosted();
    EXPECT_EQ(owner.commands.size(), 1u);

    // The recent-file list's way with the popup: remember, delete, insert.
    CString kept;
    popup->GetMenuString(0, kept, MF_BYPOSITION);
    EXPECT_EQ(kept, L"&One");
    EXPECT_TRUE(popup->DeleteMenu(601, MF_BYCOMMAND));
    EXPECT_FALSE(popup->DeleteMenu(601, MF_BYCOMMAND));
    EXPECT_TRUE(popup->InsertMenu(0, MF_STRING | MF_BYPOSITION, 32769, L"&1 notes.txt"));
    CCmdUI state;
    state.m_pMenu = popup;
    state.m_nIndex = 0;
    state.m_nID = 32769;
    state.Enable(FALSE);
    EXPECT_EQ(popup->GetMenuState(0, MF_BYPOSITION) & (MF_GRAYED | MF_DISABLED),
              static_cast<UINT>(MF_GRAYED | MF_DISABLED));
    state.SetText(L"renamed");
    popup->GetMenuString(32769, kept, MF_BYCOMMAND);
    EXPECT_EQ(kept, L"renamed");

    CMenu other;
    other.CreatePopupMenu();
    EXPECT_FALSE(popup->InsertMenu(0, MF_POPUP | MF_BYPOSITION, reinterpret_cast<UINT_PTR>(menu.m_hMenu), L"loop"));
    EXPECT_TRUE(other.AppendMenu(MF_STRING, 9, L"nine"));
    HMENU destroyed = menu.m_hMenu;
    EXPECT_TRUE(menu.DestroyMenu());
    EXPECT_FALSE(::IsMenu(destroyed));
    EXPECT_EQ(::GetMenuItemCount(destroyed), -1);
}

TEST_F(Dialogs, StringsOfTheResourcesLoadWithThePlatformsBufferRules) {
    wchar_t buffer[8] = L"zzzzzzz";
    EXPECT_EQ(LoadStringW(m_resources, 17, buffer, 8), 7);
    EXPECT_EQ(std::wstring(buffer), L"sevente");  // cut to fit, and ended
    EXPECT_EQ(LoadStringW(m_resources, 1, buffer, 8), 3);
    EXPECT_EQ(std::wstring(buffer), L"one");
    const wchar_t* inPlace = nullptr;
    EXPECT_EQ(LoadStringW(m_resources, 16, reinterpret_cast<LPWSTR>(&inPlace), 0), 7);
    EXPECT_EQ(std::wstring(inPlace, 7), L"sixteen");
    EXPECT_EQ(LoadStringW(m_resources, 2, buffer, 8), 0);
    EXPECT_EQ(buffer[0], L'\0');
    EXPECT_EQ(LoadStringW(nullptr, 1, buffer, 8), 0);
    CString text;
    EXPECT_TRUE(text.LoadString(16));  // through the resource stack
    EXPECT_EQ(text, L"sixteen");
}

}  // namespace
