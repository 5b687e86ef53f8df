// Measuring text: the host's fixed metric, fonts, device contexts and the
// system's metrics, as the list width routines use them.
#include <afxwin.h>

#include "support/DialogTestSupport.h"
#include "ui/TextMetric.h"

namespace {

LOGFONTW Font(LONG height) {
    LOGFONTW font{};
    font.lfHeight = height;
    return font;
}

TEST(TextMetric, WidthsAreThoseOfTheEightPointFontScaledByHeight) {
    using cadhost::ui::TextWidth;
    struct Case {
        LONG height;
        const wchar_t* text;
        int width;
    };
    const Case cases[] = {
        {-11, L"", 0},       {-11, L"i", 2},       {-11, L"W", 11},       {-11, L"0123456789", 60},
        {-11, L"m", 8},      {-11, L"Apple", 27},  {-11, L"2F1", 18},     {-11, L"\u00e9", 6},
        {-11, L"\t", 0},     {-22, L"i", 4},       {-22, L"Apple", 54},   {13, L"W", 11},
        {0, L"W", 11},       {-16, L"m", 12},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TextWidth(Font(c.height), c.text), c.width) << c.height << " " << testing::PrintToString(std::wstring(c.text));
    SIZE units = cadhost::ui::DialogBaseUnits(Font(-11));
    EXPECT_EQ(units.cx, 6);
    EXPECT_EQ(units.cy, 13);
    SIZE system = cadhost::ui::DialogBaseUnits(Font(16));
    EXPECT_EQ(system.cx, 8);
    EXPECT_EQ(system.cy, 16);
    EXPECT_EQ(cadhost::ui::TextMetrics(Font(-11)).tmHeight, 13);
    EXPECT_EQ(cadhost::ui::TextMetrics(Font(-11)).tmAveCharWidth, 6);
}

class Measuring : public qmtest::DialogTest {};

TEST_F(Measuring, AListIsMeasuredInItsOwnFontOnceItIsSelected) {
    qmtest::Recorder dialog;
    ASSERT_TRUE(dialog.Create(500));
    CListBox* list = static_cast<CListBox*>(dialog.GetDlgItem(12));
    CFont* font = list->GetFont();
    ASSERT_NE(font, nullptr);
    LOGFONT logFont{};
    ASSERT_EQ(font->GetLogFont(&logFont), static_cast<int>(sizeof(LOGFONT)));
    EXPECT_EQ(logFont.lfHeight, -11);
    EXPECT_EQ(std::wstring(logFont.lfFaceName), L"Microsoft Sans Serif");

    CDC* dc = list->GetDC();
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(dc->GetTextExtent(L"Apple", 5).cx, 9 + 8 + 8 + 3 + 8);  // the system font until one is chosen
    CFont* old = dc->SelectObject(font);
    EXPECT_EQ(dc->GetTextExtent(CString(L"Apple")).cx, 27);
    EXPECT_EQ(dc->GetTextExtent(L"Apple", 5).cy, 13);
    dc->SelectObject(old);
    list->ReleaseDC(dc);

    // The margin of a list of entries that hold nothing.
    list->SetHorizontalExtent(0 + 4 * GetSystemMetrics(SM_CXBORDER));
    EXPECT_EQ(list->GetHorizontalExtent(), 4);
    EXPECT_EQ(GetSystemMetrics(SM_CXVSCROLL), 17);
    EXPECT_EQ(GetSystemMetrics(SM_CXBORDER), 1);
    EXPECT_EQ(GetSystemMetrics(12345), 0);

    CFont eight;
    ASSERT_TRUE(eight.CreatePointFont(80, L"Microsoft Sans Serif"));
    eight.GetLogFont(&logFont);
    EXPECT_EQ(logFont.lfHeight, -11);
    HFONT handle = eight;
    EXPECT_TRUE(eight.DeleteObject());
    EXPECT_FALSE(::DeleteObject(handle));  // gone already
    SIZE size{};
    EXPECT_FALSE(::GetTextExtentPoint32W(nullptr, L"x", 1, &size));
    {
        CClientDC client(&dialog);
        EXPECT_NE(client.m_hDC, nullptr);
        EXPECT_EQ(client.GetDeviceCaps(LOGPIXELSY), 96);
    }
}

}  // namespace
