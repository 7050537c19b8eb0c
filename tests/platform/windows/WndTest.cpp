#include "platform/windows/Button.h"
#include "platform/windows/Static.h"
#include "platform/windows/SystemMetrics.h"
#include "platform/windows/Wnd.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using Log = std::vector<std::string>;

// --- Message maps -----------------------------------------------------------------------------------------

class CBaseWnd : public CWnd {
public:
    Log m_log;

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapCommand<&CBaseWnd::OnSeven>(7),
                                            MapCommand<&CBaseWnd::OnEight>(8),
                                            MapMessage<&CBaseWnd::OnUser>(WM_USER + 1)};
        static const CMessageMap map{entries, &CWnd::GetMessageMap()};
        return map;
    }
    void OnSeven() { m_log.emplace_back("base 7"); }
    void OnEight() { m_log.emplace_back("base 8"); }
    LRESULT OnUser(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) + lParam; }
};

class CDerivedWnd : public CBaseWnd {
protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapCommand<&CDerivedWnd::OnMine>(7),
                                            MapCommandRange<&CDerivedWnd::OnNote>(10100, 10311),
                                            MapNotification<&CDerivedWnd::OnSelect>(LBN_SELCHANGE, 8),
                                            MapMessage<&CDerivedWnd::OnContextMenu>(WM_CONTEXTMENU)};
        static const CMessageMap map{entries, &CBaseWnd::GetMessageMap()};
        return map;
    }
    void OnMine() { m_log.emplace_back("derived 7"); }
    void OnNote(int nId) { m_log.push_back(FormatText("note %d", nId)); }
    void OnSelect() { m_log.emplace_back("select 8"); }
    void OnContextMenu(CWnd* pWnd, POINT pt) {
        m_log.push_back(FormatText("%s %d,%d", pWnd == this ? "menu" : "other", pt.x, pt.y));
    }
};

TEST(MessageMap, TheNearestClassWinsAndCommandsGoByCodeAndRange) {
    CDerivedWnd wnd;
    ASSERT_TRUE(wnd.CreateEx(WS_CAPTION, "map", {}, nullptr, 0));
    const auto command = [&wnd](int nId, UINT nCode) {
        wnd.m_log.clear();
        wnd.SendMessage(WM_COMMAND, MakeCommandParam(nId, nCode));
        return wnd.m_log;
    };
    EXPECT_THAT(command(7, BN_CLICKED), ElementsAre("derived 7"));
    EXPECT_THAT(command(8, BN_CLICKED), ElementsAre("base 8"));
    EXPECT_THAT(command(8, LBN_SELCHANGE), ElementsAre("select 8"));
    EXPECT_THAT(command(7, LBN_SELCHANGE), IsEmpty());
    EXPECT_THAT(command(10099, BN_CLICKED), IsEmpty());
    EXPECT_THAT(command(10100, BN_CLICKED), ElementsAre("note 10100"));
    EXPECT_THAT(command(10311, BN_CLICKED), ElementsAre("note 10311"));
    EXPECT_THAT(command(10312, BN_CLICKED), IsEmpty());
    EXPECT_EQ(wnd.SendMessage(WM_USER + 1, 5, -7), -2);
    EXPECT_EQ(wnd.SendMessage(WM_USER + 2, 5, -7), 0);
    wnd.m_log.clear();
    // The default handling of the right button's release asks for the menu, in screen coordinates.
    POINT pt{-3, 12};
    wnd.SendMessage(WM_RBUTTONUP, 0, MakePointParam(pt));
    wnd.ClientToScreen(pt);
    EXPECT_THAT(wnd.m_log, ElementsAre(FormatText("menu %d,%d", pt.x, pt.y)));
}

// --- Life -------------------------------------------------------------------------------------------------

TEST(WndLife, AWindowThatRefusesToBeCreatedLeavesNothing) {
    class CRefusing : public CRecordingWnd {
    public:
        using CRecordingWnd::CRecordingWnd;
        CButton m_button;

    protected:
        LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
            if (nMessage == WM_CREATE) {
                EXPECT_TRUE(m_button.Create("x", WS_VISIBLE, {0, 0, 10, 10}, this, 1));
                SetTimer(1, 1);
                Note("create");
                return -1;
            }
            return CRecordingWnd::WindowProc(nMessage, wParam, lParam);
        }
    };
    toolkit::RunPending();
    const int nBefore = toolkit::CountTopLevelWidgets();
    Log log;
    CRefusing wnd(log);
    EXPECT_FALSE(wnd.Open(50, 50));
    EXPECT_THAT(log, ElementsAre("create", "destroy", "gone"));
    EXPECT_FALSE(wnd.IsWindow());
    EXPECT_FALSE(wnd.m_button.IsWindow());
    EXPECT_EQ(wnd.m_button.GetParent(), nullptr);
    toolkit::RunFor(20);
    toolkit::RunPending();
    EXPECT_EQ(log.size(), 3U);
    EXPECT_EQ(toolkit::CountTopLevelWidgets(), nBefore);
}

TEST(WndLife, ClosingGoesThroughTheParentThenItsControlsAndOnlyOnce) {
    class CClosing : public CRecordingWnd {
    public:
        using CRecordingWnd::CRecordingWnd;

    protected:
        LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
            const LRESULT lResult = CRecordingWnd::WindowProc(nMessage, wParam, lParam);
            if (nMessage == WM_DESTROY) {
                // A second way of closing while the first is under way.
                EXPECT_FALSE(DestroyWindow());
                SendMessage(WM_CLOSE);
            }
            return lResult;
        }
    };
    class CNotingButton : public CButton {
    public:
        explicit CNotingButton(Log& log) : m_log(log) {}

    protected:
        LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
            if (nMessage == WM_DESTROY) {
                m_log.emplace_back("button destroy");
            }
            return CButton::WindowProc(nMessage, wParam, lParam);
        }
        void PostNcDestroy() override { m_log.emplace_back("button gone"); }

    private:
        Log& m_log;
    };
    Log log;
    CClosing wnd(log);
    CNotingButton button(log);
    ASSERT_TRUE(wnd.Open(50, 50));
    ASSERT_TRUE(button.Create("b", WS_VISIBLE, {0, 0, 20, 20}, &wnd, 3));
    wnd.ShowWindow(SW_SHOW);
    log.clear();
    toolkit::CloseBox(wnd);
    EXPECT_THAT(log, ElementsAre("close", "destroy", "close", "button destroy", "button gone", "gone"));
    EXPECT_FALSE(wnd.DestroyWindow());
    wnd.SendMessage(WM_CLOSE);
    toolkit::RunPending();
    EXPECT_EQ(log.size(), 6U);
}

TEST(WndLife, AButtonMayDestroyItsWindowAndTheWindowItsObject) {
    class CSelfDestroying : public CWnd {
    public:
        explicit CSelfDestroying(std::unique_ptr<CSelfDestroying>& pOwner) : m_pOwner(pOwner) {}
        CButton m_button;

    protected:
        const CMessageMap& GetMessageMap() const override {
            static constexpr std::array entries{MapCommand<&CSelfDestroying::OnExit>(1)};
            static const CMessageMap map{entries, &CWnd::GetMessageMap()};
            return map;
        }
        void OnExit() { DestroyWindow(); }
        void PostNcDestroy() override { m_pOwner.reset(); }

    private:
        std::unique_ptr<CSelfDestroying>& m_pOwner;
    };
    std::unique_ptr<CSelfDestroying> pWnd;
    pWnd = std::make_unique<CSelfDestroying>(pWnd);
    ASSERT_TRUE(pWnd->CreateEx(WS_CAPTION, "self", {0, 0, 100, 100}, nullptr, 0));
    ASSERT_TRUE(pWnd->m_button.Create("Exit", WS_VISIBLE, {10, 10, 60, 30}, pWnd.get(), 1));
    pWnd->ShowWindow(SW_SHOW);
    toolkit::Click(pWnd->m_button, {5, 5});
    EXPECT_EQ(pWnd, nullptr);
    toolkit::RunPending();
}

TEST(WndLife, ParentAndControlObjectsDieInAnyOrder) {
    Log log;
    auto pWnd = std::make_unique<CRecordingWnd>(log);
    auto pFirst = std::make_unique<CButton>();
    CButton last;
    ASSERT_TRUE(pWnd->Open(50, 50));
    ASSERT_TRUE(pFirst->Create("1", WS_VISIBLE, {0, 0, 20, 20}, pWnd.get(), 1));
    ASSERT_TRUE(last.Create("2", WS_VISIBLE, {0, 20, 20, 40}, pWnd.get(), 2));
    pWnd->ShowWindow(SW_SHOW);
    EXPECT_EQ(pWnd->GetDlgItem(1), pFirst.get());
    pFirst.reset();
    EXPECT_EQ(pWnd->GetDlgItem(1), nullptr);
    EXPECT_EQ(pWnd->GetDlgItem(2), &last);
    log.clear();
    pWnd.reset();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_FALSE(last.IsWindow());
    last.EnableWindow(false);
    last.SetWindowText("still harmless");
    EXPECT_FALSE(last.Create("3", WS_VISIBLE, {0, 0, 1, 1}, nullptr, 3));
    toolkit::RunPending();
}

TEST(WndTimer, TicksUntilKilledAndNeverAfterTheEnd) {
    Log log;
    CRecordingWnd wnd(log);
    EXPECT_FALSE(wnd.SetTimer(1, 1));
    ASSERT_TRUE(wnd.Open(50, 50));
    EXPECT_TRUE(wnd.SetTimer(1, 3));
    EXPECT_TRUE(wnd.SetTimer(2, 60000));
    EXPECT_TRUE(toolkit::WaitUntil([&log] { return log.size() > 4; }));
    EXPECT_THAT(log, Contains("timer:1"));
    EXPECT_THAT(log, Not(Contains("timer:2")));
    EXPECT_TRUE(wnd.KillTimer(1));
    EXPECT_FALSE(wnd.KillTimer(1));
    EXPECT_TRUE(wnd.SetTimer(2, 3));
    log.clear();
    EXPECT_TRUE(toolkit::WaitUntil([&log] { return log.size() > 2; }));
    EXPECT_THAT(log, Not(Contains("timer:1")));
    wnd.DestroyWindow();
    log.clear();
    toolkit::RunFor(20);
    EXPECT_THAT(log, IsEmpty());
}

// --- Place ------------------------------------------------------------------------------------------------

TEST(WndPlace, TheClientAreaIsExactAndTheFrameIsReckonedTheSameWayEverywhere) {
    Log log;
    CRecordingWnd wnd(log);
    ASSERT_TRUE(wnd.Open(500, 396));
    wnd.CenterWindow();
    wnd.ShowWindow(SW_SHOWNORMAL);
    toolkit::RunPending();
    EXPECT_EQ(wnd.GetClientRect(), (RECT{0, 0, 500, 396}));
    const auto shot = toolkit::GrabScreen(wnd);
    EXPECT_EQ(shot.nWidth, 500);
    EXPECT_EQ(shot.nHeight, 396);
    POINT pt{17, 23};
    wnd.ClientToScreen(pt);
    const RECT rc = wnd.GetWindowRect();
    EXPECT_EQ(pt.x - rc.left - GetSystemMetrics(SM_CXFIXEDFRAME), 17);
    EXPECT_EQ(pt.y - rc.top - GetSystemMetrics(SM_CYMENU) - GetSystemMetrics(SM_CYFIXEDFRAME), 23);
    wnd.ScreenToClient(pt);
    EXPECT_EQ(pt.x, 17);
    EXPECT_EQ(pt.y, 23);
}

TEST(WndPlace, MinimisingAndRestoringAreMoves) {
    class CMoving : public CWnd {
    public:
        Log m_log;

    protected:
        const CMessageMap& GetMessageMap() const override {
            static constexpr std::array entries{MapMessage<&CMoving::OnMove>(WM_MOVE)};
            static const CMessageMap map{entries, &CWnd::GetMessageMap()};
            return map;
        }
        void OnMove(POINT /*pt*/) { m_log.emplace_back(IsIconic() ? "minimised" : "normal"); }
    };
    CMoving wnd;
    ASSERT_TRUE(wnd.CreateEx(WS_CAPTION, "moving", {40, 40, 240, 240}, nullptr, 0));
    wnd.ShowWindow(SW_SHOWNORMAL);
    toolkit::RunPending();
    wnd.m_log.clear();
    wnd.ShowWindow(SW_MINIMIZE);
    EXPECT_THAT(wnd.m_log, Contains("minimised"));
    EXPECT_TRUE(wnd.IsIconic());
    wnd.m_log.clear();
    wnd.ShowWindow(SW_RESTORE);
    EXPECT_THAT(wnd.m_log, Contains("normal"));
    EXPECT_FALSE(wnd.IsIconic());
}

// --- Mouse and keyboard -----------------------------------------------------------------------------------

struct CRecordingButton : CButton {
    explicit CRecordingButton(Log& log) : m_log(log) {}
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        if (nMessage >= WM_KEYDOWN && nMessage <= WM_CHAR) {
            m_log.push_back(FormatText("button %u:%d", nMessage - WM_KEYDOWN, static_cast<int>(wParam)));
        }
        if (nMessage == WM_NCHITTEST) {
            m_ptHit = PointOfParam(lParam);
        }
        return CButton::WindowProc(nMessage, wParam, lParam);
    }
    Log& m_log;
    std::optional<POINT> m_ptHit;
};

class WndInput : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_wnd.Open(200, 100));
        ASSERT_TRUE(m_button.Create("&Go", WS_VISIBLE | WS_TABSTOP, {10, 20, 60, 40}, &m_wnd, 5));
        ASSERT_TRUE(m_other.Create("Other", WS_VISIBLE | WS_TABSTOP, {10, 50, 60, 70}, &m_wnd, 6));
        ASSERT_TRUE(m_static.Create("text", WS_VISIBLE, {80, 20, 150, 40}, &m_wnd, -1));
        ASSERT_TRUE(m_group.Create("group", WS_VISIBLE | BS_GROUPBOX, {0, 0, 100, 90}, &m_wnd, 7));
        m_wnd.ShowWindow(SW_SHOW);
        // The window system gives the keyboard to the window when it gets round to it.
        ASSERT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &m_wnd; }));
        m_log.clear();
    }

    Log m_log;
    CRecordingWnd m_wnd{m_log};
    CRecordingButton m_button{m_log};
    CButton m_other;
    CStatic m_static;
    CButton m_group;
};

TEST_F(WndInput, TheMouseReachesTheWindowWithClientCoordinates) {
    toolkit::Press(m_wnd, {120, 80});
    toolkit::Release(m_wnd, {121, 81});
    EXPECT_THAT(m_log, ElementsAre("ldown(120,80)", "lup(121,81)"));
    m_log.clear();
    // The window class knows no double click: the second press is a press like any other.
    toolkit::DoubleClick(m_wnd, {5, 95});
    EXPECT_THAT(m_log, ElementsAre("ldown(5,95)"));
    m_log.clear();
    toolkit::Press(m_wnd, {1, 2}, true);
    toolkit::Release(m_wnd, {3, 4}, true);
    POINT pt{3, 4};
    m_wnd.ClientToScreen(pt);
    EXPECT_THAT(m_log, ElementsAre("rdown(1,2)", "rup(3,4)", FormatText("context(%d,%d)", pt.x, pt.y)));
}

TEST_F(WndInput, TextAndFramesLetTheMouseThroughAndButtonsTellThatItIsOverThem) {
    toolkit::MoveOver(m_wnd, {90, 30});
    EXPECT_THAT(m_log, ElementsAre("move(90,30)"));
    toolkit::MoveOver(m_wnd, {5, 85});
    EXPECT_THAT(m_log, ElementsAre("move(90,30)", "move(5,85)"));
    m_log.clear();
    toolkit::MoveOver(m_wnd, {30, 25});
    EXPECT_THAT(m_log, IsEmpty());
    ASSERT_TRUE(m_button.m_ptHit.has_value());
    POINT pt = *m_button.m_ptHit;
    m_wnd.ScreenToClient(pt);
    EXPECT_EQ(pt.x, 30);
    EXPECT_EQ(pt.y, 25);
    // The group box was made last, around the buttons, and lies behind them.
    toolkit::ClickInto(m_wnd, {30, 25});
    EXPECT_THAT(m_log, ElementsAre("command:5/0"));
    m_log.clear();
    m_button.EnableWindow(false);
    toolkit::ClickInto(m_wnd, {30, 25});
    EXPECT_THAT(m_log, Not(Contains("command:5/0")));
}

TEST_F(WndInput, AKeyGoesToOneWindowAsKeyAndCharacter) {
    toolkit::Key(m_wnd, 'P', "p");
    EXPECT_THAT(m_log, ElementsAre("keydown:80", "char:112", "keyup:80"));
    m_log.clear();
    toolkit::Key(m_button, 'P', "p");
    EXPECT_THAT(m_log, ElementsAre("button 0:80", "button 2:112", "button 1:80"));
    m_log.clear();
    constexpr int nF1 = 0x01000030;
    constexpr int nLeft = 0x01000012;
    toolkit::Key(m_wnd, nF1);
    toolkit::Key(m_wnd, nLeft);
    EXPECT_THAT(m_log, ElementsAre("keydown:112", "keyup:112", "keydown:37", "keyup:37"));
}

TEST_F(WndInput, TabIsACharacterAndMovesNothingByItself) {
    constexpr int nTab = 0x01000001;
    m_button.SetFocus();
    ASSERT_EQ(CWnd::GetFocus(), &m_button);
    toolkit::Key(m_button, nTab, "\t");
    EXPECT_THAT(m_log, ElementsAre("button 0:9", "button 2:9", "button 1:9"));
    EXPECT_EQ(CWnd::GetFocus(), &m_button);
    m_wnd.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &m_wnd);
    toolkit::Click(m_other, {5, 5});
    EXPECT_EQ(CWnd::GetFocus(), &m_other);
}

TEST_F(WndInput, SpacePressesTheButtonWhenItComesUp) {
    constexpr int nSpace = 0x20;
    m_button.SetFocus();
    toolkit::KeyDown(m_button, nSpace, " ");
    EXPECT_THAT(m_log, Not(Contains("command:5/0")));
    toolkit::KeyUp(m_button, nSpace, " ");
    EXPECT_THAT(m_log, Contains("command:5/0"));
}

TEST(WndWithoutWindow, AnswersEverythingWithNothing) {
    CButton wnd;
    EXPECT_FALSE(wnd.IsWindow());
    EXPECT_FALSE(wnd.DestroyWindow());
    EXPECT_FALSE(wnd.IsWindowEnabled());
    EXPECT_FALSE(wnd.IsIconic());
    EXPECT_EQ(wnd.SendMessage(WM_CLOSE), 0);
    EXPECT_EQ(wnd.GetWindowRect(), RECT{});
    EXPECT_EQ(wnd.GetClientRect(), RECT{});
    EXPECT_EQ(wnd.GetParent(), nullptr);
    wnd.ShowWindow(SW_SHOW);
    wnd.UpdateWindow();
    wnd.SetFocus();
    wnd.CenterWindow();
    EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

}  // namespace
