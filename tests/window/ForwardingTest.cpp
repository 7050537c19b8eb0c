#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"
#include "window/ForwardingButton.h"
#include "window/ForwardingListBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class ForwardingTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_wnd.Open(300, 200));
        ASSERT_TRUE(m_button.Create("Button", WS_CHILD | WS_VISIBLE, {20, 30, 100, 60}, &m_wnd, 7));
        ASSERT_TRUE(m_list.Create(WS_CHILD | WS_VISIBLE | LBS_NOTIFY, {20, 80, 100, 180}, &m_wnd, 8));
        m_list.AddString("Alpha");
        m_list.AddString("Beta");
        m_list.SetCurSel(0);
        m_wnd.ShowWindow(SW_SHOW);
        toolkit::RunPending();
        m_log.clear();
    }

    std::vector<std::string> m_log;
    CRecordingWnd m_wnd{m_log};
    CForwardingButton m_button;
    CForwardingListBox m_list;
};

TEST_F(ForwardingTest, TellsTheParentOfMovesOverTheControls) {
    toolkit::MoveOver(m_wnd, {50, 40});
    EXPECT_THAT(m_log, Contains("move(50,40)"));
    m_log.clear();
    toolkit::MoveOver(m_wnd, {60, 120});
    EXPECT_THAT(m_log, Contains("move(60,120)"));
}

TEST_F(ForwardingTest, PassesAButtonsKeyOnWhenItComesUp) {
    toolkit::KeyDown(m_button, 'P', "p");
    EXPECT_THAT(m_log, Not(Contains("char:80")));
    toolkit::KeyUp(m_button, 'P', "p");
    EXPECT_THAT(m_log, ElementsAre("char:80"));
}

TEST_F(ForwardingTest, LeavesAllCharactersOfTheListToTheParent) {
    toolkit::Key(m_list, 'B', "b");
    EXPECT_THAT(m_log, ElementsAre("char:98"));
    EXPECT_EQ(m_list.GetCurSel(), 0) << "no looking for rows by their letters";
    toolkit::Key(m_list, 0x01000015 /* down */);
    EXPECT_EQ(m_list.GetCurSel(), 1);
    EXPECT_THAT(m_log, Contains("command:8/1"));
}

}  // namespace
