#include "platform/base/String.h"
#include "platform/drawing/Font.h"
#include "platform/windows/ListBox.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int UP = 0x01000013;
constexpr int DOWN = 0x01000015;
constexpr int END = 0x01000011;

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
    void Fill(std::initializer_list<const char*> rows) {
        while (m_list.GetCount() > 0) {
            m_list.DeleteString(0);
        }
        for (const char* szRow : rows) {
            m_list.AddString(szRow);
        }
    }
    // What the owner was told since it was asked last; a paint may come at any time.
    Log Reports() {
        std::erase(m_log, "paint");
        return std::exchange(m_log, {});
    }

    Log m_log;
    CRecordingWnd m_wnd{m_log};
    CListBox m_list;
};

TEST_F(ListBox, RowsGoInWhereTheyAreToldAndTheSelectionStaysOnItsRow) {
    Fill({"Standard E", "降半音 ♭"});
    EXPECT_EQ(m_list.InsertString(1, "A & B"), 1);
    EXPECT_EQ(m_list.InsertString(-1, "last"), 3);
    EXPECT_EQ(m_list.InsertString(9, "nowhere"), LB_ERR);
    EXPECT_EQ(m_list.GetText(1) + "|" + m_list.GetText(2) + "|" + m_list.GetText(3), "A & B|降半音 ♭|last");
    EXPECT_EQ(m_list.GetText(4), "");
    EXPECT_EQ(m_list.GetCurSel(), LB_ERR);
    EXPECT_EQ(m_list.SetCurSel(2), 2);
    EXPECT_EQ(m_list.InsertString(0, "first"), 0);
    EXPECT_EQ(m_list.GetCurSel(), 3);
    EXPECT_EQ(m_list.DeleteString(0), 4);
    EXPECT_EQ(m_list.DeleteString(3), 3);
    EXPECT_EQ(m_list.GetCurSel(), 2);
    EXPECT_EQ(m_list.DeleteString(3), LB_ERR);
    EXPECT_EQ(m_list.DeleteString(-1), LB_ERR);
    EXPECT_EQ(m_list.SetCurSel(3), LB_ERR);
    // A deleted selection leaves none wherever it stood.
    for (const int nSelected : {0, 1, 2}) {
        Fill({"a", "b", "c"});
        m_list.SetCurSel(nSelected);
        m_list.DeleteString(nSelected);
        EXPECT_EQ(m_list.GetCurSel(), LB_ERR) << nSelected;
    }
    EXPECT_THAT(Reports(), IsEmpty()) << "nothing of this was the user";
}

TEST_F(ListBox, FindsAPrefixInAnyCaseFromBehindTheStartRound) {
    struct Case {
        int nStart;
        const char* szPrefix;
        int nFound;
    };
    Fill({"User Defined Tuning", "Drop D", "user defined tuning 2", "drop d"});
    for (const Case& test : {Case{0, "User Defined Tuning", 2}, Case{-1, "User Defined Tuning", 0},
                             Case{2, "USER", 0}, Case{3, "drop", 1}, Case{0, "Defined", LB_ERR},
                             Case{0, "User Defined Tuning 2", 2}, Case{2, "user defined tuning 2", 2}}) {
        EXPECT_EQ(m_list.FindString(test.nStart, test.szPrefix), test.nFound) << test.szPrefix;
    }
}

TEST_F(ListBox, ShowsWholeRowsInTheHeightThatItHas) {
    const int nFrame = 1;
    for (const int nTenths : {77, 115, 80}) {
        CFont font;
        ASSERT_TRUE(font.CreatePointFont(nTenths, "MS Sans Serif"));
        m_list.SetFont(font);
        Fill({"row"});
        toolkit::RunPending();
        const int nRow = toolkit::RowHeight(m_list);
        Fill({"\nof more\r\nthan one line"});
        toolkit::RunPending();
        EXPECT_EQ(toolkit::RowHeight(m_list), nRow);
        EXPECT_EQ(m_list.GetText(0), "\nof more\r\nthan one line");
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
    for (const int nRow : {3, -1, 0}) {
        m_list.SetCurSel(nRow);
    }
    EXPECT_THAT(Reports(), IsEmpty());
    toolkit::Key(m_list, DOWN);
    EXPECT_EQ(m_list.GetCurSel(), 1);
    EXPECT_THAT(Reports(), ElementsAre("command:8/1"));
    toolkit::Key(m_list, END);
    EXPECT_EQ(m_list.GetCurSel(), 29);
    m_list.SetCurSel(0);
    Reports();
    toolkit::Key(m_list, UP);
    EXPECT_THAT(Reports(), IsEmpty());
    // Control and a click would take the selection away in the toolkit's way.
    toolkit::Click(m_list, {20, 30});
    toolkit::Click(m_list, {20, 30}, true);
    EXPECT_GT(m_list.GetCurSel(), 0);
    EXPECT_THAT(Reports(), ElementsAre("command:8/1"));
}

}  // namespace
