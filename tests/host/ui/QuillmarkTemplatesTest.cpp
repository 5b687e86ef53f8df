// The module's option page templates as its resource script gives them,
// and how the host finds them in the loaded module.
#include <acdocman.h>
#include <afxwin.h>


#include "support/ModulePagesTest.h"
#include "ui/Controls.h"
#include "ui/resources/ModuleResources.h"
#include "ui/resources/ResourceLookup.h"

namespace {

using cadhost::ui::ControlTemplate;
using cadhost::ui::DialogTemplate;
using cadhost::ui::ResourceName;

using qmtest::ModuleResourceScript;

TEST(QuillmarkTemplates, EveryPageHasItsSizeFontAndStyle) {
    auto script = ModuleResourceScript();
    ASSERT_TRUE(script);
    struct Page {
        WORD id;
        int cx, cy;
        bool popup;
        size_t controls;
    };
    const Page pages[] = {{102, 192, 183, false, 12}, {104, 192, 183, false, 12}, {105, 217, 198, false, 13},
                          {213, 217, 106, true, 13},  {215, 195, 76, true, 4},    {216, 217, 57, true, 6}};
    for (const Page& p : pages) {
        const DialogTemplate* page = script->FindDialog(ResourceName::Number(p.id));
        ASSERT_NE(page, nullptr) << p.id;
        EXPECT_EQ(page->cx, p.cx) << p.id;
        EXPECT_EQ(page->cy, p.cy) << p.id;
        EXPECT_EQ(page->controls.size(), p.controls) << p.id;
        ASSERT_TRUE(page->font) << p.id;
        EXPECT_EQ(page->font->face, L"Microsoft Sans Serif");
        EXPECT_EQ(page->font->pointSize, 8);
        EXPECT_TRUE(page->caption.empty()) << p.id;
        EXPECT_EQ((page->style & WS_POPUP) != 0, p.popup) << p.id;
        EXPECT_EQ((page->style & WS_CHILD) != 0, !p.popup) << p.id;
    }
}

TEST(QuillmarkTemplates, ControlsHaveTheirIdsKindsCaptionsPlacesAndStyles) {
    auto script = ModuleResourceScript();
    ASSERT_TRUE(script);
    struct Row {
        WORD page;
        int id;
        const wchar_t* className;
        const wchar_t* caption;  // null: not checked (several statics share -1)
        int x, y, cx, cy;
        DWORD required;  // style bits that must be set
        DWORD refused;   // and bits that must not
    };
    const DWORD sortedSingle = LBS_SORT | LBS_NOTIFY;
    const DWORD multiple = LBS_MULTIPLESEL | LBS_EXTENDEDSEL;
    const Row rows[] = {
        {104, 101, L"ListBox", L"", 7, 19, 84, 105, sortedSingle, multiple},
        {104, 203, L"Button", L"Select", 7, 137, 36, 14, 0, BS_TYPEMASK},
        {104, 204, L"Button", L"Remove", 55, 137, 36, 14, 0, 0},
        {104, 234, L"Button", L"Filter...", 7, 162, 84, 14, 0, 0},
        {104, 104, L"Edit", L"", 106, 19, 79, 14, ES_READONLY, 0},
        {104, 105, L"ListBox", L"", 105, 50, 80, 74, LBS_NOTIFY, LBS_SORT | multiple},
        {104, 207, L"ComboBox", L"", 105, 138, 80, 75, CBS_DROPDOWNLIST, CBS_SORT},
        {104, 107, L"Button", L"Additional Format ...", 105, 162, 80, 14, 0, 0},
        {102, 101, L"ListBox", L"", 7, 19, 84, 106, sortedSingle, multiple},
        {102, 203, L"Button", L"Select", 7, 139, 36, 14, 0, 0},
        {102, 204, L"Button", L"Remove", 55, 139, 36, 14, 0, 0},
        {102, 207, L"ComboBox", L"", 105, 138, 80, 75, CBS_DROPDOWNLIST, CBS_SORT},
        {105, 103, L"Button", L"Entire Drawing", 37, 7, 64, 10, BS_AUTORADIOBUTTON | WS_GROUP, 0},
        {105, 105, L"Button", L"Window", 105, 7, 40, 10, BS_AUTORADIOBUTTON, WS_GROUP},
        {105, 203, L"Button", L"<", 149, 5, 16, 14, WS_GROUP, 0},
        {105, 207, L"ListBox", L"", 7, 36, 120, 126, sortedSingle | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS,
         multiple | WS_HSCROLL},
        {105, 210, L"Button", L"Check All", 7, 167, 58, 14, 0, 0},
        {105, 211, L"Button", L"Uncheck All", 69, 167, 58, 14, 0, 0},
        {105, 119, L"Button", L"Filter...", 136, 148, 74, 14, 0, 0},
        {105, 102, L"Button", L"Include nested blocks", 7, 185, 100, 10, BS_AUTOCHECKBOX, 0},
        {105, 104, L"Edit", L"", 136, 36, 74, 14, ES_READONLY, 0},
        {105, 107, L"Button", L"Additional Format ...", 136, 167, 74, 14, 0, 0},
        {213, 200, L"Edit", L"", 0, 10, 172, 14, ES_AUTOHSCROLL, ES_READONLY},
        {213, 101, L"Button", L">", 175, 10, 16, 14, 0, 0},
        {213, 201, L"Button", L"...", 194, 10, 16, 14, 0, 0},
        {213, 100, L"Edit", L"", 39, 32, 171, 14, ES_READONLY, 0},
        {213, 276, L"Edit", L"", 40, 55, 27, 14, ES_READONLY, 0},
        {213, 205, L"Edit", L"", 95, 55, 27, 14, ES_READONLY, 0},
        {213, 277, L"Button", L"Get &Active Cell", 133, 54, 77, 14, 0, 0},
        {213, 206, L"ComboBox", L"", 40, 76, 65, 30, CBS_DROPDOWNLIST, CBS_SORT},
        {215, 200, L"Button", L"&Cell", 3, 10, 30, 14, 0, 0},
        {215, 202, L"Edit", L"", 38, 10, 150, 14, ES_READONLY, 0},
        {215, 104, L"Edit", L"", 3, 42, 184, 23, ES_READONLY | ES_MULTILINE | WS_VSCROLL, 0},
        {216, 200, L"Edit", L"", 0, 10, 170, 14, ES_AUTOHSCROLL, ES_READONLY},
        {216, 101, L"Button", L">", 174, 10, 16, 14, 0, 0},
        {216, 201, L"Button", L"...", 194, 10, 16, 14, 0, 0},
        {216, 206, L"ComboBox", L"", 39, 32, 53, 30, CBS_DROPDOWNLIST, CBS_SORT},
    };
    for (const Row& row : rows) {
        const DialogTemplate* page = script->FindDialog(ResourceName::Number(row.page));
        ASSERT_NE(page, nullptr);
        const ControlTemplate* control = nullptr;
        for (const ControlTemplate& c : page->controls) {
            if (c.id == row.id) control = &c;
        }
        ASSERT_NE(control, nullptr) << row.page << "/" << row.id;
        EXPECT_EQ(control->className, row.className) << row.page << "/" << row.id;
        if (row.caption) EXPECT_EQ(control->text, row.caption) << row.page << "/" << row.id;
        EXPECT_EQ(control->x, row.x) << row.page << "/" << row.id;
        EXPECT_EQ(control->y, row.y) << row.page << "/" << row.id;
        EXPECT_EQ(control->cx, row.cx) << row.page << "/" << row.id;
        EXPECT_EQ(control->cy, row.cy) << row.page << "/" << row.id;
        EXPECT_EQ(control->style & row.required, row.required) << row.page << "/" << row.id;
        EXPECT_EQ(control->style & row.refused, 0u) << row.page << "/" << row.id;
        if (row.className == std::wstring(L"ComboBox"))
            EXPECT_EQ(control->style & 0x3, static_cast<DWORD>(CBS_DROPDOWNLIST)) << row.page << "/" << row.id;
    }
    // The static texts of the Objects Area page, in their places.
    const DialogTemplate* area = script->FindDialog(ResourceName::Number(104));
    std::vector<std::wstring> statics;
    for (const ControlTemplate& c : area->controls) {
        if (c.id == -1) statics.push_back(c.text);
    }
    EXPECT_EQ(statics, (std::vector<std::wstring>{L"Object Handle:", L"Preview:", L"Format:", L"Precision:"}));
}

TEST(QuillmarkTemplates, TheRecentFileMenuHasOneInactiveItem) {
    auto script = ModuleResourceScript();
    ASSERT_TRUE(script);
    const auto* menu = script->FindMenu(ResourceName::Text(L"029DA631-CAF4-4096-984F-808D80049830"));
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->items.size(), 1u);
    EXPECT_EQ(menu->items[0].text, L"_MRU_");
    ASSERT_EQ(menu->items[0].items.size(), 1u);
    const auto& item = menu->items[0].items[0];
    EXPECT_EQ(item.text, L"Recent file");
    EXPECT_EQ(item.id, 32769u);
    EXPECT_TRUE(item.flags & MF_DISABLED);
}

class LoadedModule : public qmtest::HostTest {};

// The script travels in Quillmark.arx; its pages are found through the
// module's handle only while that handle is on the resource stack.
TEST_F(LoadedModule, ThePagesAreReachableOnlyInsideTheModulesScope) {
    const auto* app = host().linker().Find(L"Quillmark.arx");
    if (!app) {
        ASSERT_TRUE(host().linker().loadModule(L"Quillmark.arx", false));
        app = host().linker().Find(L"Quillmark.arx");
    }
    ASSERT_NE(app, nullptr);
    HINSTANCE module = app->module;
    for (WORD id : {102, 103, 104, 105, 106, 213, 215, 216}) {
        EXPECT_TRUE(FindResourceW(module, MAKEINTRESOURCE(id), RT_DIALOG)) << id;
        EXPECT_NE(AfxFindResourceHandle(MAKEINTRESOURCE(id), RT_DIALOG), module) << id;
    }
    EXPECT_TRUE(FindResourceW(module, L"029DA631-CAF4-4096-984F-808D80049830", RT_MENU));

    // A page is a child: it needs a window to go into.
    class Page : public CDialog {
    public:
        Page() : CDialog(104) {}
    };
    CWnd frame;
    ASSERT_TRUE(frame.CreateEx(0, L"FieldDialog", L"Field", WS_POPUP | WS_VISIBLE, CRect(0, 0, 400, 300), nullptr, 0));
    Page outside;
    EXPECT_FALSE(outside.Create(104, &frame));
    acDocManagerPtr()->pushResourceHandle(module);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(104), RT_DIALOG), module);
    Page inside;
    ASSERT_TRUE(inside.Create(104, &frame));
    EXPECT_TRUE(::IsChild(frame.m_hWnd, inside.m_hWnd));
    EXPECT_EQ(cadhost::ui::ShownText(::GetDlgItem(inside.m_hWnd, 107)), L"Additional Format ...");
    RECT place{};
    inside.GetWindowRect(&place);
    EXPECT_EQ(place.right - place.left, 288);  // 192 units of 6 pixels per 4
    EXPECT_EQ(place.bottom - place.top, MulDiv(183, 13, 8));
    acDocManagerPtr()->popResourceHandle();
}

}  // namespace
