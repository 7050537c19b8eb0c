#include "platform/base/String.h"
#include "platform/drawing/Font.h"
#include "platform/windows/ListBox.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int g_nUp = 0x01000013;
constexpr int g_nDown = 0x01000015;
constexpr int g_nEnd = 0x01000011;

class ListBox : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_wnd.Open(200, 200));
        ASSERT_TRUE(
            m_list.Create(WS_VISIBLE | WS_BORDER | WS_VSCROLL | LBS_NOTIFY, {10, 10, 150, 120}, &m_wnd, 8));
        m_wnd.ShowWindow(SW_SHOW);
        toolkit::RunPending();
        m_log.clear();
    }
    // What the owner was told; a paint may come at any time.
    std::vector<std::string> Reports() {
        std::erase(m_log, "paint");
        return m_log;
    }
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        for (int i = 0; i < m_list.GetCount(); ++i) {
            rows.push_back(m_list.GetText(i));
        }
        return rows;
    }

    std::vector<std::string> m_log;
    CRecordingWnd m_wnd{m_log};
    CListBox m_list;
};

TEST_F(ListBox, RowsGoInWhereTheyAreToldAndTheSelectionStaysOnItsRow) {
    EXPECT_EQ(m_list.GetCurSel(), LB_ERR);
    EXPECT_EQ(m_list.AddString("Standard E"), 0);
    EXPECT_EQ(m_list.AddString("降半音 ♭"), 1);
    EXPECT_EQ(m_list.InsertString(1, "A & B"), 1);
    EXPECT_EQ(m_list.InsertString(-1, "last"), 3);
    EXPECT_EQ(m_list.InsertString(9, "nowhere"), LB_ERR);
    EXPECT_THAT(Rows(), ElementsAre("Standard E", "A & B", "降半音 ♭", "last"));
    EXPECT_EQ(m_list.SetCurSel(2), 2);
    EXPECT_EQ(m_list.InsertString(0, "first"), 0);
    EXPECT_EQ(m_list.GetCurSel(), 3);
    EXPECT_EQ(m_list.DeleteString(0), 4);
    EXPECT_EQ(m_list.GetCurSel(), 2);
    EXPECT_EQ(m_list.DeleteString(3), 3);
    EXPECT_EQ(m_list.GetCurSel(), 2);
    EXPECT_EQ(m_list.DeleteString(3), LB_ERR);
    EXPECT_EQ(m_list.DeleteString(-1), LB_ERR);
    EXPECT_EQ(m_list.SetCurSel(3), LB_ERR);
    EXPECT_EQ(m_list.GetText(7), "");
    EXPECT_EQ(m_list.SendMessage(LB_GETCOUNT), 3);
}

TEST_F(ListBox, ADeletedSelectionLeavesNoneWhereverItStood) {
    for (const int nSelected : {0, 1, 2}) {
        while (m_list.GetCount() > 0) {
            m_list.DeleteString(0);
        }
        for (const char* szRow : {"a", "b", "c"}) {
            m_list.AddString(szRow);
        }
        m_list.SetCurSel(nSelected);
        m_list.DeleteString(nSelected);
        EXPECT_EQ(m_list.GetCurSel(), LB_ERR) << nSelected;
    }
    // Nothing of this was the user.
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(ListBox, FindsAPrefixInAnyCaseFromBehindTheStartRound) {
    for (const char* szRow : {"User Defined Tuning", "Drop D", "user defined tuning 2", "drop d"}) {
        m_list.AddString(szRow);
    }
    EXPECT_EQ(m_list.FindString(0, "User Defined Tuning"), 2);
    EXPECT_EQ(m_list.FindString(-1, "User Defined Tuning"), 0);
    EXPECT_EQ(m_list.FindString(2, "USER"), 0);
    EXPECT_EQ(m_list.FindString(3, "drop"), 1);
    EXPECT_EQ(m_list.FindString(0, "Defined"), LB_ERR);
    m_list.DeleteString(2);
    // The row that the search begins behind is looked at last.
    EXPECT_EQ(m_list.FindString(0, "user defined"), 0);
}

TEST_F(ListBox, ShowsWholeRowsInTheHeightThatItHas) {
    const int nFrame = 1;
    for (const int nTenths : {77, 115, 80}) {
        CFont font;
        ASSERT_TRUE(font.CreatePointFont(nTenths, "MS Sans Serif"));
        m_list.SetFont(font);
        m_list.AddString("row");
        toolkit::RunPending();
        const int nRow = toolkit::RowHeight(m_list);
        const int nInside = m_list.GetClientRect().Height() - 2 * nFrame;
        EXPECT_EQ(nInside % nRow, 0) << nTenths;
        EXPECT_LE(nInside, 110 - 2 * nFrame);
        EXPECT_GT(nInside + nRow, 110 - 2 * nFrame);
    }
}

TEST_F(ListBox, OnlyTheUserIsReported) {
    for (int i = 0; i < 30; ++i) {
        m_list.AddString(FormatText("row %d", i));
    }
    m_list.SetFocus();
    toolkit::RunPending();
    m_list.SetCurSel(3);
    m_list.SetCurSel(-1);
    m_list.SetCurSel(0);
    EXPECT_THAT(Reports(), IsEmpty());
    toolkit::Key(m_list, g_nDown);
    EXPECT_EQ(m_list.GetCurSel(), 1);
    EXPECT_THAT(Reports(), ElementsAre("command:8/1"));
    toolkit::Key(m_list, g_nEnd);
    EXPECT_EQ(m_list.GetCurSel(), 29);
    m_list.SetCurSel(0);
    m_log.clear();
    toolkit::Key(m_list, g_nUp);
    EXPECT_THAT(Reports(), IsEmpty());
    toolkit::Click(m_list, {20, 30});
    const int nClicked = m_list.GetCurSel();
    EXPECT_GT(nClicked, 0);
    EXPECT_THAT(Reports(), ElementsAre("command:8/1"));
    // Control and a click would take the selection away in the toolkit's way.
    toolkit::Click(m_list, {20, 30}, true);
    EXPECT_EQ(m_list.GetCurSel(), nClicked);
    EXPECT_THAT(Reports(), ElementsAre("command:8/1"));
}

// The handler that moves the selection, deletes rows and takes the focus, as owners of a list do.
TEST_F(ListBox, ItsOwnerMayChangeItWhileItReports) {
    class CBusy : public CWnd {
    public:
        CListBox m_list;
        int m_nCalls = 0;

    protected:
        const CMessageMap& GetMessageMap() const override {
            static const std::vector entries{MapNotification<&CBusy::OnSelChange>(LBN_SELCHANGE, 8)};
            static const CMessageMap map{entries, &CWnd::GetMessageMap()};
            return map;
        }
        void OnSelChange() {
            ++m_nCalls;
            m_list.DeleteString(m_list.GetCount() - 1);
            m_list.SetFocus();
        }
    };
    CBusy wnd;
    ASSERT_TRUE(wnd.CreateEx(WS_CAPTION, "busy", {0, 0, 200, 200}, nullptr, 0));
    ASSERT_TRUE(wnd.m_list.Create(WS_VISIBLE | LBS_NOTIFY, {0, 0, 100, 100}, &wnd, 8));
    wnd.ShowWindow(SW_SHOW);
    for (const char* szRow : {"a", "b", "c"}) {
        wnd.m_list.AddString(szRow);
    }
    wnd.m_list.SetCurSel(0);
    toolkit::Key(wnd.m_list, g_nDown);
    EXPECT_EQ(wnd.m_list.GetCurSel(), 1);
    EXPECT_EQ(wnd.m_list.GetCount(), 2);
    toolkit::Key(wnd.m_list, g_nUp);
    EXPECT_EQ(wnd.m_list.GetCurSel(), 0);
    EXPECT_EQ(wnd.m_list.GetCount(), 1);
    EXPECT_EQ(wnd.m_nCalls, 2);
}

// A class that keeps the characters for its parent: letters don't move the selection, arrows do.
TEST_F(ListBox, ACharacterThatIsNotPassedOnNeverReachesTheList) {
    class CSilent : public CListBox {
    protected:
        LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
            return nMessage == WM_CHAR ? GetParent()->SendMessage(WM_CHAR, wParam)
                                       : CListBox::WindowProc(nMessage, wParam, lParam);
        }
    };
    CSilent list;
    ASSERT_TRUE(list.Create(WS_VISIBLE | LBS_NOTIFY, {0, 120, 100, 200}, &m_wnd, 9));
    for (const char* szRow : {"alpha", "beta", "gamma"}) {
        list.AddString(szRow);
        m_list.AddString(szRow);
    }
    list.SetCurSel(0);
    m_list.SetCurSel(0);
    m_log.clear();
    toolkit::Key(list, 'G', "g");
    EXPECT_EQ(list.GetCurSel(), 0);
    EXPECT_THAT(Reports(), ElementsAre("char:103"));
    toolkit::Key(list, g_nDown);
    EXPECT_EQ(list.GetCurSel(), 1);
    // The plain list looks for the letter itself.
    toolkit::Key(m_list, 'G', "g");
    EXPECT_EQ(m_list.GetCurSel(), 2);
}

}  // namespace
