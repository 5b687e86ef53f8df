// The link control over a placeholder of the Check for Update template:
// its window, font and colours, the pointer over it, and the click.
#include <acdocman.h>

#include "resources/resource.h"
#include "services/Hyperlink.h"
#include "support/ModuleDialogTest.h"
#include "ui/ControlView.h"
#include "ui/UserInput.h"

namespace {

class HyperlinkTest : public qmtest::ModuleDialogTest {
protected:
    void SetUp() override {
        ModuleDialogTest::SetUp();
        acDocManagerPtr()->pushResourceHandle(qmtest::TestModule());
        ASSERT_TRUE(m_dialog.Create(IDD_LIVE_UPDATE));
        m_dialog.ShowWindow(SW_SHOW);
    }
    void TearDown() override {
        m_link.DestroyWindow();
        m_dialog.DestroyWindow();
        acDocManagerPtr()->popResourceHandle();
        ModuleDialogTest::TearDown();
    }
    // A link over placeholder 212 with the colours of the update check.
    void MakeLink(int underline = TRUE, COLORREF hover = 255, COLORREF normal = 0xFF0000) {
        m_link.SetColors(hover, normal, 0xF0F0F0);
        m_link.SetCaption(L"http://www.norvo.example/download");
        m_link.SetUrl(L"http://www.norvo.example/download?from=link");
        m_link.SetLinkCursor(::LoadCursorW(nullptr, IDC_HAND));
        m_link.SetUnderline(underline);
        ASSERT_TRUE(m_link.CreateOver(m_dialog.GetDlgItem(IDC_LINK_PLACEHOLDER), IDC_DOWNLOAD_LINK));
        desktop().DeliverPosted();  // the loop comes round: the link paints
    }
    std::string Link() { return Described(m_dialog.m_hWnd, IDC_DOWNLOAD_LINK); }

    CDialog m_dialog;
    CHyperlink m_link;
};

TEST_F(HyperlinkTest, TheLinkTakesThePlaceholdersPlaceAndFont) {
    MakeLink();
    CWnd* placeholder = m_dialog.GetDlgItem(IDC_LINK_PLACEHOLDER);
    CRect mine, its;
    m_link.GetWindowRect(mine);
    placeholder->GetWindowRect(its);
    EXPECT_EQ(mine, its);
    EXPECT_EQ(m_link.GetParent(), &m_dialog);
    EXPECT_EQ(m_link.GetDlgCtrlID(), IDC_DOWNLOAD_LINK);
    EXPECT_TRUE(m_link.IsWindowVisible());
    EXPECT_FALSE(placeholder->IsWindowVisible());  // the placeholder stays where it was, hidden
    wchar_t className[32] = L"";
    ::GetClassNameW(m_link.m_hWnd, className, 32);
    EXPECT_STREQ(className, L"HyperlinkWnd");
    WNDCLASS registered{};
    ASSERT_TRUE(::GetClassInfoW(qmtest::TestModule(), L"HyperlinkWnd", &registered));
    EXPECT_EQ(registered.style, static_cast<UINT>(CS_HREDRAW | CS_VREDRAW));
    EXPECT_EQ(registered.hCursor, nullptr);

    // Painted at the top left in the placeholder's face, underlined.
    EXPECT_EQ(Link(), "3556 window enabled visible \"\" class \"HyperlinkWnd\" painted "
                      "\"http://www.norvo.example/download\" at 0,0 color 0xFF0000 on 0xF0F0F0 underlined");
    const HWND window = m_link.m_hWnd;
    const cadhost::ui::PaintedText& text = window->painting.texts.at(0);
    LOGFONT face{};
    placeholder->GetFont()->GetLogFont(&face);
    EXPECT_STREQ(text.font.lfFaceName, face.lfFaceName);
    EXPECT_EQ(text.font.lfHeight, face.lfHeight);
}

TEST_F(HyperlinkTest, WithoutUnderlineTheFontIsThePlaceholdersAsItIs) {
    MakeLink(FALSE);
    EXPECT_EQ(Link().find("underlined"), std::string::npos) << Link();
}

TEST_F(HyperlinkTest, BeforeThePointerMovesTheTextShowsInTheFirstColourWhateverWasSet) {
    MakeLink(TRUE, 0x00AA00, 0x0000BB);
    EXPECT_EQ(m_link.TextColor(), 0xFF0000u);
    EXPECT_NE(Link().find("color 0xFF0000"), std::string::npos) << Link();
}

TEST_F(HyperlinkTest, ThePointerOverTheLinkTakesTheCaptureAndTheHoverColour) {
    MakeLink(TRUE, 0x00AA00, 0x0000BB);
    ASSERT_EQ(cadhost::ui::UserHover(m_link.m_hWnd), L"");
    desktop().DeliverPosted();
    EXPECT_EQ(m_link.TextColor(), 0x00AA00u);
    EXPECT_EQ(::GetCapture(), m_link.m_hWnd);
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_HAND));
    EXPECT_NE(Link().find("color 0x00AA00 on 0xF0F0F0 underlined, pointer over it with cursor hand, holds the capture"),
              std::string::npos)
        << Link();

    // Moving on to a button: the link still has the capture, hears the
    // move outside itself, and lets go.
    ASSERT_EQ(cadhost::ui::UserHover(::GetDlgItem(m_dialog.m_hWnd, IDC_CHECK_UP)), L"");
    desktop().DeliverPosted();
    EXPECT_EQ(m_link.TextColor(), 0x0000BBu);
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_NE(Link().find("color 0x0000BB"), std::string::npos) << Link();

    cadhost::ui::UserHover(m_link.m_hWnd);
    cadhost::ui::UserHoverNowhere();
    EXPECT_EQ(m_link.TextColor(), 0x0000BBu);
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(HyperlinkTest, LosingTheCaptureToAnotherWindowRestoresTheNormalColour) {
    MakeLink(TRUE, 0x00AA00, 0x0000BB);
    cadhost::ui::UserHover(m_link.m_hWnd);
    ::SetCapture(m_link.m_hWnd);  // towards the link itself: nothing changes
    EXPECT_EQ(m_link.TextColor(), 0x00AA00u);
    EXPECT_EQ(::GetCapture(), m_link.m_hWnd);
    ::SetCapture(::GetDlgItem(m_dialog.m_hWnd, IDOK));
    EXPECT_EQ(m_link.TextColor(), 0x0000BBu);
    // The link released the mouse as it lost the capture.
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(HyperlinkTest, TheReleaseOfTheButtonOpensTheAddressWhereverThePressWas) {
    MakeLink();
    ASSERT_EQ(cadhost::ui::UserClick(m_link.m_hWnd), L"");
    ASSERT_TRUE(host().shell().Last());
    EXPECT_EQ(host().shell().Last()->target, L"http://www.norvo.example/download?from=link");
    EXPECT_EQ(host().shell().Last()->verb, L"open");
    EXPECT_EQ(host().shell().Last()->show, SW_SHOW);

    // Pressed over the status line, moved onto the link, released there.
    cadhost::ui::UserHover(::GetDlgItem(m_dialog.m_hWnd, IDC_UPDATE_STATUS));
    desktop().mouse().Press(desktop());
    cadhost::ui::UserHover(m_link.m_hWnd);
    desktop().mouse().Release(desktop());
    EXPECT_EQ(host().shell().Count(), 2u);

    // Released elsewhere, with the pointer gone from the link: nothing.
    cadhost::ui::UserHover(::GetDlgItem(m_dialog.m_hWnd, IDC_UPDATE_STATUS));
    desktop().mouse().Release(desktop());
    EXPECT_EQ(host().shell().Count(), 2u);
}

TEST_F(HyperlinkTest, ALinkCanBeMadeAgainOverTheSameClass) {
    MakeLink();
    m_link.DestroyWindow();
    CHyperlink second;
    second.SetCaption(L"again");
    EXPECT_TRUE(second.CreateOver(m_dialog.GetDlgItem(IDC_LINK_PLACEHOLDER), IDC_DOWNLOAD_LINK));
    desktop().DeliverPosted();
    EXPECT_NE(Link().find("painted \"again\""), std::string::npos) << Link();
    second.DestroyWindow();
}

TEST_F(HyperlinkTest, WithoutAPlaceholderNoLinkIsMade) {
    CHyperlink link;
    EXPECT_FALSE(link.CreateOver(nullptr, IDC_DOWNLOAD_LINK));
    EXPECT_FALSE(link.CreateOver(&m_dialog, IDC_DOWNLOAD_LINK));  // a dialog without a parent
    EXPECT_EQ(link.GetSafeHwnd(), nullptr);
}

}  // namespace
