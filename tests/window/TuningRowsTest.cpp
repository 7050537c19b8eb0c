#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/TunerWndTest.h"

namespace {

using testing::ElementsAre;

constexpr const char* TEMPORARY = "User Defined Tuning";
constexpr const char* STANDARD = "Standard\t3\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* DROP_D = "Drop D\t4\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* MINE = "Mine\t5\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* YOURS = "Yours\t6\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0";

// Two presets, which differ in the lowest string, and what the test says behind them.
class TuningRowsTest : public CTunerWndTest {
protected:
    void OpenWith(const std::vector<CString>& custom, int nListIndex = 0) {
        m_directory.Write("preset.txt", CString(STANDARD) + "\n" + DROP_D);
        WriteState(nListIndex, 0, "128", custom);
        Open();
    }
    void ClickOn(int nRow) {
        constexpr int ROW_IN_PIXELS = 4;
        // Down through the rows until the one is found, whatever their height.
        for (int y = 1; y < 100 && Access().List().GetCurSel() != nRow; y += ROW_IN_PIXELS) {
            toolkit::Click(Access().List(), {10, y});
        }
        ASSERT_EQ(Access().List().GetCurSel(), nRow);
    }
    void Command(int nId) { toolkit::Click(*Wnd().GetDlgItem(nId), {10, 10}); }
    // The lowest string of what the strings show.
    StringNote Lowest() { return Access().Current().m_strings[0]; }
    void ExpectState(int nRow, const CString& strName, bool bCanDelete) {
        EXPECT_EQ(Access().List().GetCurSel(), nRow);
        EXPECT_EQ(Access().Current().m_strName, strName);
        EXPECT_EQ(Access().CanDelete(), bCanDelete);
    }
};

TEST_F(TuningRowsTest, FollowsTheRowThatIsClicked) {
    OpenWith({MINE, YOURS});
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine", "Yours"));
    ExpectState(0, "Standard", false);
    ClickOn(1);
    ExpectState(1, "Drop D", false);
    EXPECT_TRUE(Lowest().IsNote(2, 0));
    EXPECT_EQ(Access().Current().m_dwTag, 4U);
    ClickOn(3);
    ExpectState(3, "Yours", true);
    EXPECT_TRUE(Lowest().IsNote(0, 0));
    toolkit::Key(Access().List(), 0x01000013 /* up */);
    ExpectState(2, "Mine", true);
    ClickOn(0);
    ExpectState(0, "Standard", false);
}

// The strip at the bottom: the lowest of six different notes has its tick at 15, a tuning of equal notes at
// 236.
TEST_F(TuningRowsTest, ShowsTheTuningAtOnce) {
    OpenWith({YOURS});
    constexpr int TICK_Y = 310 + 30;
    const COLORREF clrTick = PixelAt(10 + 15 + 4, TICK_Y);
    ASSERT_NE(clrTick, 0xFFFFFFU);
    EXPECT_EQ(PixelAt(10 + 236 + 4, TICK_Y), 0xFFFFFFU);
    const auto before = CopyPicture();
    ClickOn(2);
    EXPECT_EQ(PixelAt(10 + 15 + 4, TICK_Y), 0xE3B3B3U) << "the highlight's tint, without a tick";
    EXPECT_EQ(PixelAt(10 + 236 + 4, TICK_Y), clrTick);
    // A string of the lowest octave is wound; the third one is now one of these.
    constexpr std::size_t STRING_MIDDLE = 90 * 500 + 95;
    EXPECT_NE(CopyPicture()[STRING_MIDDLE], before[STRING_MIDDLE]);
}

TEST_F(TuningRowsTest, MakesATemporaryRowForNotesOfNoList) {
    OpenWith({MINE});
    Access().SetString(5, 9, 1);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine", TEMPORARY));
    ExpectState(3, TEMPORARY, false);
    Access().SetString(4, 9, 1);
    EXPECT_EQ(Access().List().GetCount(), 4) << "the row stays while nothing matches";
    ExpectState(3, TEMPORARY, false);
    EXPECT_TRUE(Access().Current().m_strings[5].IsNote(9, 1));
}

TEST_F(TuningRowsTest, KeepsTheNotesWhenTheTemporaryRowIsChosenAgain) {
    OpenWith({MINE});
    Access().SetString(5, 9, 1);
    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(ID_TUNINGS, LBN_SELCHANGE));
    ExpectState(3, TEMPORARY, false);
    EXPECT_TRUE(Access().Current().m_strings[5].IsNote(9, 1));
    EXPECT_EQ(Access().List().GetCount(), 4);
}

TEST_F(TuningRowsTest, DropsTheTemporaryRowWhenAnotherIsSelected) {
    OpenWith({MINE});
    Access().SetString(5, 9, 1);
    ClickOn(2);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine"));
    ExpectState(2, "Mine", true);
    EXPECT_TRUE(Access().Current().m_strings[5].IsNote(4, 2));
}

TEST_F(TuningRowsTest, GoesToTheRowThatTheStringsMatch) {
    OpenWith({MINE});
    Access().SetString(0, 2, 0);
    ExpectState(1, "Drop D", false);
    Access().SetString(0, 0, 0);
    ExpectState(2, "Mine", true);
    Access().SetString(0, 7, 0);
    ExpectState(3, TEMPORARY, true);
    Access().SetString(0, 4, 0);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine"));
    ExpectState(0, "Standard", false);
}

TEST_F(TuningRowsTest, PrefersThePresetToACustomTuningOfTheSameNotes) {
    OpenWith({"Same\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2"});
    Access().SetString(0, 2, 0);
    ExpectState(1, "Drop D", false);
    ClickOn(2);
    ExpectState(2, "Same", true);
}

TEST_F(TuningRowsTest, AddsTheTuningInForceUnderAName) {
    OpenWith({MINE});
    ClickOn(1);
    m_user.SetNameToType("空弦 née");
    Command(ID_ADD);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine", "空弦 née"));
    ExpectState(3, "空弦 née", true);
    EXPECT_TRUE(Lowest().IsNote(2, 0));
    EXPECT_EQ(Access().Current().m_dwTag, 4U) << "the tag is carried along";
    EXPECT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &Access().List(); }));
}

TEST_F(TuningRowsTest, ReplacesTheTemporaryRowByTheAddedOne) {
    OpenWith({});
    Access().SetString(5, 9, 1);
    m_user.SetNameToType("New");
    Command(ID_ADD);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "New"));
    ExpectState(2, "New", true);
    EXPECT_TRUE(Access().Current().m_strings[5].IsNote(9, 1));
    EXPECT_EQ(Access().Store().GetCustomTunings()->GetCount(), 1);
}

TEST_F(TuningRowsTest, AddsASecondRowOfTheSameNotesAndFindsTheFirst) {
    OpenWith({MINE});
    ClickOn(2);
    m_user.SetNameToType("Mine");
    Command(ID_ADD);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine", "Mine"));
    ExpectState(3, "Mine", true);
    Access().SetString(0, 0, 0);
    ExpectState(2, "Mine", true);
}

TEST_F(TuningRowsTest, AddsNothingWithoutANameOrAfterCancel) {
    OpenWith({MINE});
    Access().SetString(5, 9, 1);
    for (const std::optional<CString>& strAnswer :
         {std::optional<CString>(""), std::optional<CString>(std::nullopt)}) {
        m_user.SetNameToType(strAnswer);
        Command(ID_ADD);
        EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine", TEMPORARY));
        ExpectState(3, TEMPORARY, false);
        EXPECT_EQ(Access().Store().GetCustomTunings()->GetCount(), 1);
    }
}

TEST_F(TuningRowsTest, DeletesARowInTheMiddleAndMovesOn) {
    OpenWith({MINE, YOURS});
    ClickOn(2);
    Command(ID_DELETE);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Yours"));
    ExpectState(2, "Yours", true);
    Command(ID_DELETE);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D"));
    ExpectState(1, "Drop D", false);
    EXPECT_EQ(CWnd::GetFocus(), &Access().List());
    Command(ID_DELETE);  // switched off
    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(ID_DELETE, BN_CLICKED));
    EXPECT_EQ(Access().List().GetCount(), 2);
}

TEST_F(TuningRowsTest, DeletesTheTemporaryRowAlone) {
    OpenWith({MINE});
    ClickOn(2);
    Access().SetString(5, 9, 1);
    ExpectState(3, TEMPORARY, true);
    Command(ID_DELETE);
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "Mine"));
    ExpectState(2, "Mine", true);
    EXPECT_EQ(Access().Store().GetCustomTunings()->GetCount(), 1);
}

TEST_F(TuningRowsTest, TakesACustomTuningOfThatNameForTheTemporaryRow) {
    OpenWith({"user defined tuning II\t0\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2"});
    EXPECT_EQ(Access().List().GetCount(), 2) << "selecting the first row has taken it away";
    Access().SetString(0, 7, 0);
    ExpectState(2, TEMPORARY, false);
}

TEST_F(TuningRowsTest, KeepsAddedTuningsAndTheRowOverARestart) {
    OpenWith({});
    Access().SetString(0, 7, 0);
    m_user.SetNameToType("My\town\nname");
    Command(ID_ADD);
    Close();
    Open();
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", "My own name"));
    ExpectState(2, "My own name", true);
    EXPECT_TRUE(Lowest().IsNote(7, 0));
    Access().SetString(0, 9, 0);
    Close();
    EXPECT_EQ(StateField(7), "3") << "the temporary row";
    Open();
    ExpectState(0, "Standard", false);
}

}  // namespace
