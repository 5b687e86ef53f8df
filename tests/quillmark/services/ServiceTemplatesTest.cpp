// The templates of the Check for Update and About dialogs: their names,
// sizes and titles, and each control's id, kind, caption, place and state.
#include <afxwin.h>

#include "resources/resource.h"
#include "support/ModulePagesTest.h"
#include "ui/resources/ResourceScript.h"

namespace {

using cadhost::ui::DialogTemplate;
using cadhost::ui::ResourceName;

struct Control {
    int id;
    const wchar_t* className;
    const wchar_t* caption;
    int x, y, cx, cy;
    bool visible;
};

void ExpectControls(const DialogTemplate& dialog, const std::vector<Control>& controls) {
    ASSERT_EQ(dialog.controls.size(), controls.size());
    for (size_t i = 0; i < controls.size(); ++i) {
        const Control& c = controls[i];
        const auto& t = dialog.controls[i];
        EXPECT_EQ(t.id, c.id) << i;
        EXPECT_EQ(t.className, c.className) << c.id;
        EXPECT_EQ(t.text, c.caption) << c.id;
        EXPECT_EQ(t.x, c.x) << c.id;
        EXPECT_EQ(t.y, c.y) << c.id;
        EXPECT_EQ(t.cx, c.cx) << c.id;
        EXPECT_EQ(t.cy, c.cy) << c.id;
        EXPECT_EQ((t.style & WS_VISIBLE) != 0, c.visible) << c.id;
    }
}

TEST(ServiceTemplatesTest, CheckForUpdate) {
    auto script = qmtest::ModuleResourceScript();
    ASSERT_TRUE(script);
    const DialogTemplate* dialog = script->FindDialog(ResourceName::Text(L"50FC3BF2-28F7-46F4-A3C8-B7739A3F67CE"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->cx, 188);
    EXPECT_EQ(dialog->cy, 95);
    EXPECT_EQ(dialog->caption, L"Check for Update");
    ExpectControls(*dialog, {
                                {211, L"Static", L"Click Check up to see if a new version is available.", 7, 7, 174, 16, true},
                                {214, L"Button", L"&Check up", 30, 74, 50, 14, true},
                                {IDOK, L"Button", L"Close", 108, 74, 50, 14, true},
                                {212, L"Static", L"", 7, 23, 112, 9, false},
                                {213, L"Static", L"to download the new version.", 7, 40, 94, 8, true},
                            });
    EXPECT_EQ(dialog->controls[2].style & BS_TYPEMASK, static_cast<DWORD>(BS_DEFPUSHBUTTON));
}

TEST(ServiceTemplatesTest, About) {
    auto script = qmtest::ModuleResourceScript();
    ASSERT_TRUE(script);
    const DialogTemplate* dialog = script->FindDialog(ResourceName::Text(L"DEAF365F-720F-4D79-A59D-64D3B5577F27"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->cx, 249);
    EXPECT_EQ(dialog->cy, 169);
    ExpectControls(*dialog, {
                                {IDOK, L"Button", L"&OK", 191, 148, 50, 14, true},
                                {222, L"Static", L"", 7, 7, 183, 18, true},
                                {224, L"Static", L"", 7, 98, 234, 44, true},
                            });
    EXPECT_EQ(dialog->controls[0].style & BS_TYPEMASK, static_cast<DWORD>(BS_DEFPUSHBUTTON));
}

}  // namespace
