#include "platform/windows/Button.h"
#include "platform/windows/Slider.h"
#include "platform/windows/Static.h"
#include "platform/windows/Wnd.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <tuple>
#include <utility>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class CMapped : public CRecordingWnd {
public:
    using CRecordingWnd::CRecordingWnd;
    std::string m_strCalled;

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapCommand<&CMapped::OnSeven>(7),
                                            MapNotification<&CMapped::OnSelect>(LBN_SELCHANGE, 8),
                                            MapCommandRange<&CMapped::OnNote>(100, 311)};
        static const CMessageMap map{entries, &CRecordingWnd::GetMessageMap()};
        return map;
    }
    void OnSeven() { m_strCalled = "seven"; }
    void OnSelect() { m_strCalled = "select"; }
    void OnNote(int nId) { m_strCalled = FormatText("note %d", nId); }
};

TEST(MessageMap, CommandsGoByCodeAndRange) {
    Log log;
    CMapped wnd(log);
    ASSERT_TRUE(wnd.Open(50, 50));
    for (const auto& [nId, nCode, szCalled] : {std::tuple{7, BN_CLICKED, "seven"},
                                               {7, LBN_SELCHANGE, ""},
                                               {8, LBN_SELCHANGE, "select"},
                                               {8, BN_CLICKED, ""},
                                               {99, BN_CLICKED, ""},
                                               {100, BN_CLICKED, "note 100"},
                                               {311, BN_CLICKED, "note 311"},
                                               {312, BN_CLICKED, ""}}) {
        wnd.m_strCalled.clear();
        wnd.SendMessage(WM_COMMAND, MakeCommandParam(nId, nCode));
        EXPECT_EQ(wnd.m_strCalled, szCalled) << nId << "/" << nCode;
    }
}

TEST(Slider, StaysInItsRangeAndMovesByAFifthOfIt) {
    Log log;
    CRecordingWnd wnd(log);
    CSliderCtrl slider;
    ASSERT_TRUE(wnd.Open(200, 60));
    ASSERT_TRUE(slider.Create(WS_VISIBLE, {10, 10, 170, 40}, &wnd, 1));
    wnd.ShowWindow(SW_SHOW);
    slider.SetRange(-20, 30);
    for (const auto& [nPos, nExpected] : {std::pair{99, 30}, {-99, -20}}) {
        slider.SetPos(nPos);
        EXPECT_EQ(slider.GetPos(), nExpected);
    }
    toolkit::Click(slider, {120, 10});
    EXPECT_EQ(slider.GetPos(), -10);
}

class WndLife : public ::testing::Test {
protected:
    // With a button, and without the notes of that.
    void OpenAndShow() {
        ASSERT_TRUE(m_pWnd->Open(100, 100));
        ASSERT_TRUE(m_pButton->Create("b", WS_VISIBLE, {0, 0, 20, 20}, m_pWnd.get(), 3));
        m_pWnd->ShowWindow(SW_SHOW);
        m_log.clear();
    }
    void TearDown() override { toolkit::RunPending(); }

    Log m_log;
    std::unique_ptr<CRecordingWnd> m_pWnd = std::make_unique<CRecordingWnd>(m_log);
    std::unique_ptr<CButton> m_pButton = std::make_unique<CRecording<CButton>>(m_log, "button ");
};

TEST_F(WndLife, AWindowThatRefusesToBeCreatedLeavesNothing) {
    toolkit::RunPending();
    const int nBefore = toolkit::CountTopLevelWidgets();
    CButton button;
    m_pWnd->m_on[WM_CREATE] = [&] {
        EXPECT_TRUE(button.Create("x", WS_VISIBLE, {0, 0, 10, 10}, m_pWnd.get(), 1));
        m_pWnd->SetTimer(1, 1);
        return -1;
    };
    EXPECT_FALSE(m_pWnd->Open(50, 50));
    toolkit::RunFor(20);
    toolkit::RunPending();
    EXPECT_THAT(m_log, ElementsAre("create", "destroy", "gone"));
    EXPECT_FALSE(m_pWnd->IsWindow() || button.IsWindow());
    EXPECT_EQ(button.GetParent(), nullptr);
    EXPECT_EQ(toolkit::CountTopLevelWidgets(), nBefore);
}

TEST_F(WndLife, ClosingGoesThroughTheParentThenItsControlsAndOnlyOnce) {
    m_pWnd->m_on[WM_DESTROY] = [this] {
        // A second way of closing while the first is under way.
        EXPECT_FALSE(m_pWnd->DestroyWindow());
        m_pWnd->SendMessage(WM_CLOSE);
        return 0;
    };
    OpenAndShow();
    toolkit::CloseBox(*m_pWnd);
    m_pWnd->SendMessage(WM_CLOSE);
    toolkit::RunPending();
    EXPECT_THAT(m_log, ElementsAre("close", "destroy", "close", "button destroy", "button gone", "gone"));
}

TEST_F(WndLife, AButtonMayDestroyItsWindowAndTheWindowItsObject) {
    m_pWnd->m_on[WM_COMMAND] = [this] { return m_pWnd->DestroyWindow() ? 1 : 0; };
    m_pWnd->m_fnGone = [this] { m_pWnd.reset(); };
    OpenAndShow();
    toolkit::Click(*m_pButton, {5, 5});
    EXPECT_EQ(m_pWnd, nullptr);
}

TEST_F(WndLife, ParentAndControlObjectsDieInAnyOrder) {
    OpenAndShow();
    CButton last;
    ASSERT_TRUE(last.Create("2", WS_VISIBLE, {0, 20, 20, 40}, m_pWnd.get(), 2));
    m_pButton.reset();
    EXPECT_EQ(m_pWnd->GetDlgItem(3), nullptr);
    EXPECT_EQ(m_pWnd->GetDlgItem(2), &last);
    m_log.clear();
    m_pWnd.reset();
    EXPECT_THAT(m_log, IsEmpty());
    EXPECT_FALSE(last.IsWindow());
    last.EnableWindow(false);
    last.SetWindowText("still harmless");
    EXPECT_EQ(last.SendMessage(WM_CLOSE), 0);
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

class WndInput : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_wnd.Open(200, 100));
        ASSERT_TRUE(m_button.Create("&Go", WS_VISIBLE | WS_TABSTOP, {10, 20, 60, 40}, &m_wnd, 5));
        ASSERT_TRUE(m_static.Create("text", WS_VISIBLE, {80, 20, 150, 40}, &m_wnd, -1));
        ASSERT_TRUE(m_group.Create("group", WS_VISIBLE | BS_GROUPBOX, {0, 0, 100, 90}, &m_wnd, 7));
        m_wnd.ShowWindow(SW_SHOW);
        // The window system gives the keyboard to the window when it gets round to it.
        ASSERT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &m_wnd; }));
        m_log.clear();
    }
    // What was written down since it was asked last.
    Log Take() { return std::exchange(m_log, {}); }
    std::string OnScreen(const char* szName, POINT pt) const {
        m_wnd.ClientToScreen(pt);
        return FormatText("%s(%d,%d)", szName, pt.x, pt.y);
    }

    Log m_log;
    CRecordingWnd m_wnd{m_log};
    CRecording<CButton> m_button{m_log, "button "};
    CStatic m_static;
    CButton m_group;
};

TEST_F(WndInput, TheMouseReachesTheWindowWithClientCoordinates) {
    toolkit::Press(m_wnd, {120, 80});
    toolkit::Release(m_wnd, {121, 81});
    // The window class knows no double click: the second press is a press like any other.
    toolkit::DoubleClick(m_wnd, {5, 95});
    toolkit::Press(m_wnd, {1, 2}, true);
    toolkit::Release(m_wnd, {3, 4}, true);
    EXPECT_THAT(Take(), ElementsAre("ldown(120,80)", "lup(121,81)", "ldown(5,95)", "rdown(1,2)", "rup(3,4)",
                                    OnScreen("context", {3, 4})));
}

TEST_F(WndInput, TextAndFramesLetTheMouseThroughAndButtonsTellThatItIsOverThem) {
    toolkit::MoveOver(m_wnd, {90, 30});
    toolkit::MoveOver(m_wnd, {5, 85});
    EXPECT_THAT(Take(), ElementsAre("move(90,30)", "move(5,85)"));
    toolkit::MoveOver(m_wnd, {30, 25});
    EXPECT_THAT(Take(), ElementsAre(OnScreen("button hit", {30, 25}), "button move(20,5)"));
    // The group box was made last, around the button, and lies behind it.
    for (const bool bEnable : {true, false}) {
        m_button.EnableWindow(bEnable);
        toolkit::ClickInto(m_wnd, {30, 25});
        EXPECT_THAT(Take(), Contains("command:5/0").Times(bEnable ? 1 : 0));
    }
}

TEST_F(WndInput, AKeyGoesToOneWindowAsKeyAndCharacter) {
    constexpr int nTab = 0x01000001;
    constexpr int nLeft = 0x01000012;
    constexpr int nF1 = 0x01000030;
    constexpr int nSpace = 0x20;
    toolkit::Key(m_wnd, 'P', "p");
    toolkit::Key(m_wnd, nF1);
    toolkit::Key(m_wnd, nLeft);
    EXPECT_THAT(Take(), ElementsAre("keydown:80", "char:112", "keyup:80", "keydown:112", "keyup:112",
                                    "keydown:37", "keyup:37"));
    // Tab is a character and moves nothing by itself; space presses the button when it comes up.
    m_button.SetFocus();
    toolkit::Key(m_button, nTab, "\t");
    EXPECT_THAT(Take(), ElementsAre("button keydown:9", "button char:9", "button keyup:9"));
    EXPECT_EQ(CWnd::GetFocus(), &m_button);
    toolkit::KeyDown(m_button, nSpace, " ");
    EXPECT_THAT(Take(), Not(Contains("command:5/0")));
    toolkit::KeyUp(m_button, nSpace, " ");
    EXPECT_THAT(Take(), Contains("command:5/0"));
    m_wnd.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &m_wnd);
    toolkit::Click(m_button, {5, 5});
    EXPECT_EQ(CWnd::GetFocus(), &m_button);
}

}  // namespace
