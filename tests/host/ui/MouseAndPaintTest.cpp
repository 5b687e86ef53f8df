// Window classes, the mouse's capture and cursor, and painting: what a
// window of a registered class hears when the pointer moves over it, when
// it is clicked, and when it paints.
#include <afxwin.h>

#include "support/DialogTestSupport.h"
#include "ui/ControlView.h"
#include "ui/UserInput.h"

namespace {

class Tracker : public CWnd {
public:
    std::vector<std::string> events;
    HCURSOR cursor = nullptr;  // set on WM_SETCURSOR when given
    COLORREF color = 0x123456;

    std::string Take() {
        std::string joined;
        for (const std::string& e : events) joined += (joined.empty() ? "" : ", ") + e;
        events.clear();
        return joined;
    }

protected:
    void OnPaint() {
        CPaintDC dc(this);
        dc.SetTextColor(color);
        dc.SetBkColor(0x00F0F0F0);
        dc.TextOut(2, 3, CString(L"hi"));
        events.push_back("paint");
    }
    BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
        events.push_back("setcursor " + std::to_string(hitTest) + " " + std::to_string(message));
        if (cursor) {
            ::SetCursor(cursor);
            return TRUE;
        }
        return CWnd::OnSetCursor(window, hitTest, message);
    }
    void OnMouseMove(UINT flags, CPoint point) {
        events.push_back("move " + std::to_string(point.x) + "," + std::to_string(point.y) +
                         (flags & MK_LBUTTON ? " down" : ""));
        CWnd::OnMouseMove(flags, point);
    }
    void OnLButtonDown(UINT, CPoint point) { events.push_back("down " + std::to_string(point.x)); }
    void OnLButtonUp(UINT, CPoint point) { events.push_back("up " + std::to_string(point.x)); }
    void OnCaptureChanged(CWnd* window) {
        events.push_back(window == this ? "lost to itself" : window ? "lost to another" : "released");
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Tracker, CWnd)
    ON_WM_PAINT()
    ON_WM_SETCURSOR()
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_CAPTURECHANGED()
END_MESSAGE_MAP()

std::string Describe(HWND window) { return cadhost::ToUtf8(cadhost::ui::DescribeControl(window)); }

class MouseAndPaintTest : public qmtest::DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        ASSERT_TRUE(m_dialog.Create(500u));
        m_dialog.ShowWindow(SW_SHOW);
        WNDCLASS windowClass{};
        windowClass.style = CS_HREDRAW | CS_VREDRAW;
        windowClass.lpfnWndProc = ::DefWindowProcW;
        windowClass.hInstance = qmtest::TestModule();
        windowClass.lpszClassName = L"TrackerWnd";
        ASSERT_TRUE(AfxRegisterClass(&windowClass));
    }
    void TearDown() override {
        m_first.DestroyWindow();
        m_second.DestroyWindow();
        m_dialog.DestroyWindow();
        DialogTest::TearDown();
    }
    void Make(Tracker& tracker, int x, int id, DWORD style = WS_CHILD | WS_VISIBLE) {
        ASSERT_TRUE(tracker.Create(L"TrackerWnd", nullptr, style, CRect(x, 10, x + 40, 30), &m_dialog, id));
    }

    CDialog m_dialog;
    Tracker m_first, m_second;
};

TEST_F(MouseAndPaintTest, AClassIsRegisteredOncePerInstance) {
    WNDCLASS again{};
    again.lpfnWndProc = ::DefWindowProcW;
    again.hInstance = qmtest::TestModule();
    again.lpszClassName = L"trackerwnd";  // names compare without regard to case
    EXPECT_EQ(::RegisterClassW(&again), 0);
    EXPECT_TRUE(AfxRegisterClass(&again));  // there already: usable
    WNDCLASS found{};
    ASSERT_TRUE(::GetClassInfoW(qmtest::TestModule(), L"TRACKERWND", &found));
    EXPECT_EQ(found.style, static_cast<UINT>(CS_HREDRAW | CS_VREDRAW));
    EXPECT_FALSE(::GetClassInfoW(nullptr, L"TrackerWnd", &found));
    again.hInstance = nullptr;  // another instance may have its own
    EXPECT_NE(::RegisterClassW(&again), 0);
    EXPECT_TRUE(::UnregisterClassW(L"TrackerWnd", nullptr));
    EXPECT_FALSE(::UnregisterClassW(L"TrackerWnd", nullptr));
    again.lpszClassName = L"";
    EXPECT_EQ(::RegisterClassW(&again), 0);
}

TEST_F(MouseAndPaintTest, AShownWindowPaintsWhenTheLoopComesRound) {
    Make(m_first, 10, 40);
    EXPECT_EQ(Describe(m_first.m_hWnd),
              "40 window enabled visible \"\" class \"TrackerWnd\" not painted");
    desktop().DeliverPosted();
    EXPECT_EQ(m_first.Take(), "paint");
    EXPECT_EQ(Describe(m_first.m_hWnd),
              "40 window enabled visible \"\" class \"TrackerWnd\" painted \"hi\" at 2,3 color 0x123456 on 0xF0F0F0");
    desktop().DeliverPosted();
    EXPECT_EQ(m_first.Take(), "");  // valid now: nothing to paint

    m_first.color = 0xFF;
    m_first.Invalidate();
    m_first.Invalidate();  // twice, painted once
    desktop().DeliverPosted();
    EXPECT_EQ(m_first.Take(), "paint");
    EXPECT_NE(Describe(m_first.m_hWnd).find("color 0x0000FF"), std::string::npos);

    m_first.ShowWindow(SW_HIDE);
    m_first.Invalidate();
    desktop().DeliverPosted();
    EXPECT_EQ(m_first.Take(), "");  // a hidden window waits
    m_first.ShowWindow(SW_SHOW);
    desktop().DeliverPosted();
    EXPECT_EQ(m_first.Take(), "paint");

    m_first.Invalidate();
    m_first.UpdateWindow();  // at once
    EXPECT_EQ(m_first.Take(), "paint");
}

TEST_F(MouseAndPaintTest, ThePointerAsksTheWindowUnderItForACursorAndTellsItOfTheMove) {
    Make(m_first, 10, 40);
    m_first.cursor = ::LoadCursorW(nullptr, IDC_HAND);
    ASSERT_EQ(cadhost::ui::UserHover(m_first.m_hWnd), L"");
    EXPECT_EQ(m_first.Take(), "setcursor 1 512, move 20,10");  // the middle of 40 by 20
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_HAND));
    EXPECT_NE(Describe(m_first.m_hWnd).find(", pointer over it with cursor hand"), std::string::npos);

    // A window without a cursor of its own leaves it to its parent, the
    // dialog, whose class shows the arrow.
    m_first.cursor = nullptr;
    cadhost::ui::UserHover(m_first.m_hWnd);
    EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_ARROW));

    cadhost::ui::UserHoverNowhere();
    m_first.Take();
    EXPECT_EQ(Describe(m_first.m_hWnd).find("pointer"), std::string::npos);
}

TEST_F(MouseAndPaintTest, TheCaptureTakesEveryMouseMessageWhereverThePointerIs) {
    Make(m_first, 10, 40);
    Make(m_second, 100, 41);
    m_first.SetCapture();
    EXPECT_EQ(CWnd::GetCapture(), &m_first);
    cadhost::ui::UserHover(m_second.m_hWnd);
    EXPECT_EQ(m_second.Take(), "");  // neither asked for a cursor nor told
    EXPECT_EQ(m_first.Take(), "move 110,10");  // in the first one's client co-ordinates
    cadhost::ui::UserHoverNowhere();
    EXPECT_EQ(m_first.Take().rfind("move -", 0), 0u);
    EXPECT_NE(Describe(m_first.m_hWnd).find(", holds the capture"), std::string::npos);

    m_first.SetCapture();
    EXPECT_EQ(m_first.Take(), "lost to itself");
    m_second.SetCapture();
    EXPECT_EQ(m_first.Take(), "lost to another");
    ::ReleaseCapture();
    EXPECT_EQ(m_second.Take(), "released");
    EXPECT_EQ(::GetCapture(), nullptr);

    m_second.SetCapture();
    m_second.DestroyWindow();  // a window that goes lets go of the capture
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(MouseAndPaintTest, AClickOnAWindowMovesThereThenPressesAndReleases) {
    Make(m_first, 10, 40);
    ASSERT_EQ(cadhost::ui::UserClick(m_first.m_hWnd), L"");
    EXPECT_EQ(m_first.Take(), "setcursor 1 512, move 20,10, down 20, up 20");

    m_first.EnableWindow(FALSE);
    EXPECT_EQ(cadhost::ui::UserClick(m_first.m_hWnd), L"control 40 is disabled");
    m_first.EnableWindow(TRUE);
    m_first.ShowWindow(SW_HIDE);
    EXPECT_EQ(cadhost::ui::UserHover(m_first.m_hWnd), L"control 40 is hidden");
}

}  // namespace
