#include "support/DialogTestSupport.h"

#include <acdocman.h>

#include "app/Modules.h"
#include "ui/resources/ModuleResources.h"

namespace qmtest {

const char* const kTestDialogs = R"rc(
#include <windows.h>
500 DIALOGEX 10, 20, 200, 150
STYLE DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION
CAPTION "Test"
FONT 8, "Microsoft Sans Serif"
BEGIN
    EDITTEXT        10,7,7,60,14,ES_AUTOHSCROLL
    EDITTEXT        11,70,7,60,14,ES_READONLY
    LISTBOX         12,7,24,40,40,LBS_SORT | WS_VSCROLL
    LISTBOX         13,50,24,40,40,WS_VSCROLL
    LISTBOX         14,93,24,40,40,LBS_SORT | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS
    LISTBOX         15,136,24,40,40,LBS_EXTENDEDSEL | NOT LBS_NOTIFY
    COMBOBOX        16,7,68,60,50,CBS_DROPDOWNLIST
    COMBOBOX        17,70,68,60,50,CBS_DROPDOWN | CBS_SORT
    AUTOCHECKBOX    "Auto",18,7,86,40,10
    CHECKBOX        "Manual",19,50,86,40,10
    CONTROL         "Three",20,"Button",BS_AUTO3STATE | WS_TABSTOP,93,86,40,10
    CONTROL         "R1",21,"Button",BS_AUTORADIOBUTTON | WS_GROUP,7,100,30,10
    CONTROL         "R2",22,"Button",BS_AUTORADIOBUTTON,40,100,30,10
    CONTROL         "R3",23,"Button",BS_RADIOBUTTON,73,100,30,10
    CONTROL         "R4",24,"Button",BS_AUTORADIOBUTTON | WS_GROUP,106,100,30,10
    LTEXT           "Static",25,7,114,30,8
    CONTROL         "Notify",26,"Static",SS_NOTIFY,40,114,30,8
    GROUPBOX        "Group",27,73,112,50,20
    EDITTEXT        28,130,112,30,14,ES_NUMBER
    DEFPUSHBUTTON   "OK",IDOK,90,130,50,14
    PUSHBUTTON      "Cancel",IDCANCEL,145,130,50,14
END

501 DIALOGEX 0, 0, 100, 50
STYLE DS_SETFONT | WS_CHILD | WS_VISIBLE
FONT 8, "Microsoft Sans Serif"
BEGIN
    EDITTEXT        10,4,4,60,14
    PUSHBUTTON      "Go",30,4,24,30,14
END

502 DIALOGEX 0, 0, 100, 50
STYLE DS_SETFONT | WS_POPUP | WS_THICKFRAME
FONT 8, "Microsoft Sans Serif"
BEGIN
    EDITTEXT        10,4,4,60,14
END

"NAMED" DIALOG 0, 0, 60, 30
CAPTION "Named"
BEGIN
    PUSHBUTTON      "OK",IDOK,4,4,30,14
END

510 MENU
BEGIN
    POPUP "Popup"
    BEGIN
        MENUITEM "&One", 601
        MENUITEM SEPARATOR
        MENUITEM "Two", 602, GRAYED
        POPUP "More"
        BEGIN
            MENUITEM "Three", 603
        END
    END
END

STRINGTABLE
BEGIN
    1 "one"
    16 "sixteen"
    17 "seventeen"
END
)rc";

HINSTANCE TestModule() {
    return cadhost::ModuleTable::Instance().FromAddress(reinterpret_cast<const void*>(&TestModule));
}

HINSTANCE AttachScript(const std::string& script) {
    cadhost::ui::ParseResult parsed = cadhost::ui::ParseResourceScript({{L"Test.rc", script}});
    EXPECT_TRUE(parsed.script) << cadhost::ToUtf8(parsed.error);
    HINSTANCE module = TestModule();
    cadhost::ui::AttachResources(module, parsed.script);
    return module;
}

void TestDriver::RunModal(HWND dialog) {
    ++modalRuns;
    if (onModal) onModal(dialog);
}

int TestDriver::AnswerMessageBox(const cadhost::ui::MessageBoxRequest& request) {
    boxes.push_back(request);
    if (answers.empty()) return request.defaultButton;
    int answer = answers.front();
    answers.pop_front();
    return answer;
}

std::optional<std::wstring> TestDriver::AnswerFileDialog(const cadhost::ui::FileDialogRequest& request) {
    fileDialogs.push_back(request);
    return file;
}

int TestDriver::AnswerPopupMenu(const cadhost::ui::PopupMenuRequest& request) {
    menus.push_back(request);
    return menuChoice;
}

void DialogTest::SetUp() {
    HostTest::SetUp();
    m_resources = AttachScript(kTestDialogs);
    desktop().SetDriver(&m_driver);
    acDocManagerPtr()->pushResourceHandle(m_resources);
}

void DialogTest::TearDown() {
    acDocManagerPtr()->popResourceHandle();
    desktop().SetDriver(nullptr);
    cadhost::ui::AttachResources(TestModule(), nullptr);
    HostTest::TearDown();
}

std::string Recorder::Take() {
    std::string joined;
    for (const std::string& event : events) joined += (joined.empty() ? "" : ", ") + event;
    events.clear();
    return joined;
}

BEGIN_MESSAGE_MAP(Recorder, CDialog)
    ON_CONTROL_RANGE(BN_CLICKED, 10, 40, &Recorder::OnClicked)
    ON_CONTROL_RANGE(LBN_SELCHANGE, 10, 40, &Recorder::OnSelChange)
    ON_CONTROL_RANGE(CBN_EDITCHANGE, 10, 40, &Recorder::OnEditChange)
    ON_CONTROL_RANGE(CBN_EDITUPDATE, 10, 40, &Recorder::OnEditUpdate)
    ON_CONTROL_RANGE(CBN_DROPDOWN, 10, 40, &Recorder::OnDropDown)
    ON_CONTROL_RANGE(CBN_CLOSEUP, 10, 40, &Recorder::OnCloseUp)
    ON_CONTROL_RANGE(EN_CHANGE, 10, 40, &Recorder::OnChange)
    ON_CONTROL_RANGE(EN_UPDATE, 10, 40, &Recorder::OnUpdate)
    ON_CONTROL_RANGE(CLBN_CHKCHANGE, 10, 40, &Recorder::OnCheckChange)
END_MESSAGE_MAP()

}  // namespace qmtest
