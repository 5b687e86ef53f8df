// The templates of the Additional Format dialog (103) and the Objects
// Filter dialog (106) as the module's resource script gives them: every
// control in its order, with its kind, caption, place, style, and which
// ones stay hidden.
#include <afxwin.h>

#include "support/ModulePagesTest.h"
#include "ui/resources/ResourceScript.h"

namespace {

using cadhost::ui::ControlTemplate;
using cadhost::ui::DialogTemplate;
using cadhost::ui::ResourceName;

struct Control {
    int id;
    const wchar_t* className;
    DWORD type;  // BS_ type of a button, CBS_ type of a combo box; 0 for the others
    const wchar_t* caption;
    int x, y, cx, cy;
    bool visible;
    DWORD required;  // other style bits that must be set
    DWORD refused;   // and bits that must not
};

void CheckDialog(WORD id, const wchar_t* caption, int cx, int cy, const std::vector<Control>& expected) {
    auto script = qmtest::ModuleResourceScript();
    ASSERT_TRUE(script);
    const DialogTemplate* dialog = script->FindDialog(ResourceName::Number(id));
    ASSERT_NE(dialog, nullptr) << id;
    EXPECT_EQ(dialog->caption, caption);
    EXPECT_EQ(dialog->cx, cx);
    EXPECT_EQ(dialog->cy, cy);
    ASSERT_TRUE(dialog->font);
    EXPECT_EQ(dialog->font->face, L"Microsoft Sans Serif");
    EXPECT_EQ(dialog->font->pointSize, 8);
    EXPECT_TRUE(dialog->style & WS_POPUP);
    EXPECT_TRUE(dialog->style & WS_CAPTION);
    EXPECT_FALSE(dialog->style & WS_CHILD);
    ASSERT_EQ(dialog->controls.size(), expected.size()) << id;
    for (size_t i = 0; i < expected.size(); ++i) {
        const Control& e = expected[i];
        const ControlTemplate& c = dialog->controls[i];
        std::string where = std::to_string(id) + " #" + std::to_string(i) + " (" + std::to_string(e.id) + ")";
        EXPECT_EQ(c.id, e.id) << where;
        EXPECT_EQ(c.className, e.className) << where;
        EXPECT_EQ(c.text, e.caption) << where;
        EXPECT_EQ(c.x, e.x) << where;
        EXPECT_EQ(c.y, e.y) << where;
        EXPECT_EQ(c.cx, e.cx) << where;
        EXPECT_EQ(c.cy, e.cy) << where;
        EXPECT_EQ((c.style & WS_VISIBLE) != 0, e.visible) << where;
        if (c.className == L"Button") {
            EXPECT_EQ(c.style & BS_TYPEMASK, e.type) << where;
        }
        if (c.className == L"ComboBox") {
            EXPECT_EQ(c.style & 0x3, e.type) << where;
        }
        EXPECT_EQ(c.style & e.required, e.required) << where;
        EXPECT_EQ(c.style & e.refused, 0u) << where;
    }
}

TEST(MeasureDialogTemplates, AdditionalFormatHasItsControlsAndTheHiddenSeparatorLists) {
    const DWORD group = BS_GROUPBOX, check = BS_AUTOCHECKBOX;
    CheckDialog(103, L"Additional Format", 186, 254,
                {
                    {-1, L"Button", group, L"Current value", 7, 7, 172, 29, true, 0, 0},
                    {108, L"Static", 0, L"", 15, 20, 155, 8, true, 0, 0},
                    {-1, L"Button", group, L"Preview", 7, 40, 172, 29, true, 0, 0},
                    {109, L"Edit", 0, L"", 15, 53, 155, 12, true, ES_READONLY, WS_BORDER},
                    {-1, L"Button", group, L"&Conversion factor", 7, 75, 172, 39, true, 0, 0},
                    {110, L"Edit", 0, L"", 15, 91, 155, 14, true, WS_TABSTOP, ES_READONLY},
                    {-1, L"Button", group, L"Additional text", 7, 121, 172, 46, true, 0, 0},
                    {-1, L"Static", 0, L"&Prefix:", 15, 134, 20, 8, true, 0, 0},
                    {111, L"Edit", 0, L"", 15, 144, 73, 14, true, 0, ES_READONLY},
                    {-1, L"Static", 0, L"&Suffix:", 97, 134, 20, 8, true, 0, 0},
                    {112, L"Edit", 0, L"", 97, 144, 73, 14, true, 0, ES_READONLY},
                    {-1, L"Button", group, L"Zero suppression", 7, 175, 172, 44, true, 0, 0},
                    {115, L"Button", check, L"Leading", 15, 188, 41, 10, true, 0, 0},
                    {116, L"Button", check, L"Trailing", 15, 204, 39, 10, true, 0, 0},
                    {117, L"Button", check, L"0 feet", 97, 188, 34, 10, true, 0, 0},
                    {118, L"Button", check, L"0 inches", 97, 204, 43, 10, true, 0, 0},
                    {1, L"Button", BS_DEFPUSHBUTTON, L"OK", 19, 233, 50, 14, true, 0, 0},
                    {2, L"Button", BS_PUSHBUTTON, L"Cancel", 115, 233, 50, 14, true, 0, 0},
                    {-1, L"Button", group, L"Number separators", 7, 175, 172, 45, false, 0, 0},
                    {-1, L"Static", 0, L"&Decimal:", 15, 186, 28, 8, false, 0, 0},
                    {113, L"ComboBox", CBS_DROPDOWNLIST, L"", 15, 198, 73, 82, false, 0, CBS_SORT},
                    {-1, L"Static", 0, L"&Thousands:", 97, 186, 38, 8, false, 0, 0},
                    {114, L"ComboBox", CBS_DROPDOWNLIST, L"", 97, 198, 73, 73, false, 0, CBS_SORT},
                });
}

TEST(MeasureDialogTemplates, ObjectsFilterHasASortedCheckListAndEightTypeBoxes) {
    const DWORD check = BS_AUTOCHECKBOX;
    CheckDialog(106, L"Objects Filter", 186, 185,
                {
                    {-1, L"Static", 0, L"Layer:", 7, 7, 22, 8, true, 0, 0},
                    {120, L"ListBox", 0, L"", 7, 18, 172, 71, true,
                     LBS_SORT | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | WS_HSCROLL | WS_VSCROLL,
                     LBS_MULTIPLESEL | LBS_EXTENDEDSEL},
                    {124, L"Button", BS_PUSHBUTTON, L"Select All", 24, 96, 50, 14, true, 0, 0},
                    {125, L"Button", BS_PUSHBUTTON, L"Unselect All", 112, 96, 50, 14, true, 0, 0},
                    {227, L"Button", check, L"Polyline", 7, 121, 40, 10, true, 0, 0},
                    {226, L"Button", check, L"Line", 63, 121, 29, 10, true, 0, 0},
                    {228, L"Button", check, L"Circle", 102, 121, 33, 10, true, 0, 0},
                    {229, L"Button", check, L"Arc", 148, 121, 27, 10, true, 0, 0},
                    {233, L"Button", check, L"Block Ref", 7, 139, 47, 10, true, 0, 0},
                    {231, L"Button", check, L"Text", 63, 139, 30, 10, true, 0, 0},
                    {230, L"Button", check, L"MText", 102, 139, 36, 10, true, 0, 0},
                    {232, L"Button", check, L"Solid", 148, 139, 31, 10, true, 0, 0},
                    {1, L"Button", BS_DEFPUSHBUTTON, L"OK", 24, 164, 50, 14, true, 0, 0},
                    {2, L"Button", BS_PUSHBUTTON, L"Cancel", 112, 164, 50, 14, true, 0, 0},
                });
}

}  // namespace
