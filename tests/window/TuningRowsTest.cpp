#include "platform/windows/support/Toolkit.h"
#include "window/TunerWndTest.h"

namespace {

constexpr const char* TEMPORARY = "User Defined Tuning";
constexpr const char* MINE = "Mine\t5\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* YOURS = "Yours\t6\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0";

// Two presets, and what the test says behind them.
class TuningRowsTest : public CTunerWndTest {
protected:
    void ClickOn(int nRow) {
        constexpr int ROW_IN_PIXELS = 4;
        // Down through the rows until the one is found, whatever their height.
        for (int y = 1; y < 100 && Access().List().GetCurSel() != nRow; y += ROW_IN_PIXELS) {
            toolkit::Click(Access().List(), {10, y});
        }
        ASSERT_EQ(Access().List().GetCurSel(), nRow);
    }
    // Under this name; nothing at all for Cancel.
    void Add(const std::optional<CString>& strName) {
        m_user.SetNameToType(strName);
        Click(ID_ADD);
    }
    // These rows behind the presets, the selected one with its tuning in force, and whether it may go.
    void Expect(std::vector<CString> rows, int nRow, bool bCanDelete) {
        rows.insert(rows.begin(), {"Standard", "Drop D"});
        EXPECT_EQ(Access().Rows(), rows);
        EXPECT_EQ(Access().List().GetCurSel(), nRow);
        EXPECT_EQ(Access().Current().m_strName, rows.at(static_cast<std::size_t>(nRow)));
        EXPECT_EQ(Access().CanDelete(), bCanDelete);
    }
};

// The strip at the bottom: the lowest of six different notes has its tick at 15, a tuning of equal notes at
// 236. A string of the lowest octave is wound; the third one becomes one of these.
TEST_F(TuningRowsTest, ShowsTheRowThatIsClicked) {
    OpenWith({MINE, YOURS});
    Expect({"Mine", "Yours"}, 0, false);
    constexpr int TICK_Y = 310 + 30;
    const COLORREF clrTick = PixelAt(10 + 15 + 4, TICK_Y);
    const COLORREF clrString = PixelAt(95, 90);
    ClickOn(3);
    Expect({"Mine", "Yours"}, 3, true);
    EXPECT_NE(PixelAt(10 + 15 + 4, TICK_Y), clrTick);
    EXPECT_EQ(PixelAt(10 + 236 + 4, TICK_Y), clrTick);
    EXPECT_NE(PixelAt(95, 90), clrString);
    ClickOn(1);
    Expect({"Mine", "Yours"}, 1, false);
    EXPECT_TRUE(Note(0).IsNote(2, 0));
    EXPECT_EQ(Access().Current().m_dwTag, 4U);
}

TEST_F(TuningRowsTest, HasATemporaryRowForNotesOfNoList) {
    OpenWith({MINE});
    Access().SetString(5, 9, 1);
    Expect({"Mine", TEMPORARY}, 3, false);
    Access().SetString(4, 9, 1);
    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(ID_TUNINGS, LBN_SELCHANGE));
    Expect({"Mine", TEMPORARY}, 3, false);
    EXPECT_TRUE(Note(5).IsNote(9, 1)) << "chosen again it keeps the notes";
    ClickOn(2);
    Expect({"Mine"}, 2, true);
    EXPECT_TRUE(Note(5).IsNote(4, 2));
    Access().SetString(5, 9, 1);
    Expect({"Mine", TEMPORARY}, 3, true);
    Click(ID_DELETE);
    Expect({"Mine"}, 2, true);
    EXPECT_EQ(Access().Store().GetCustomTunings()->GetCount(), 1);
}

TEST_F(TuningRowsTest, GoesToTheFirstRowThatTheStringsMatch) {
    OpenWith({MINE, "Same as Drop D\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2"});
    struct Case {
        int nSemitone;
        int nRow;
        bool bCanDelete;
    };
    // Of the lowest string.
    for (const Case& test : {Case{2, 1, false}, Case{0, 2, true}, Case{7, 4, true}, Case{4, 0, false}}) {
        Access().SetString(0, test.nSemitone, 0);
        EXPECT_EQ(Access().List().GetCurSel(), test.nRow) << test.nSemitone;
        EXPECT_EQ(Access().CanDelete(), test.bCanDelete) << test.nSemitone;
    }
}

TEST_F(TuningRowsTest, AddsTheTuningInForceUnderAName) {
    OpenWith({MINE});
    ClickOn(1);
    Add("空弦 née");
    Expect({"Mine", "空弦 née"}, 3, true);
    EXPECT_TRUE(Note(0).IsNote(2, 0));
    EXPECT_EQ(Access().Current().m_dwTag, 4U) << "the tag is carried along";
    EXPECT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &Access().List(); }));
    Access().SetString(5, 9, 1);
    for (const std::optional<CString>& strAnswer : {std::optional<CString>(""), std::optional<CString>()}) {
        Add(strAnswer);
        Expect({"Mine", "空弦 née", TEMPORARY}, 4, true);
    }
    Add("New");
    Expect({"Mine", "空弦 née", "New"}, 4, true);
    EXPECT_TRUE(Note(5).IsNote(9, 1));
    // The same once more: the strings find the first of the two.
    Add("New");
    Expect({"Mine", "空弦 née", "New", "New"}, 5, true);
    Access().SetString(5, 9, 1);
    Expect({"Mine", "空弦 née", "New", "New"}, 4, true);
}

TEST_F(TuningRowsTest, TakesACustomTuningOfThatNameForTheTemporaryRow) {
    OpenWith({"user defined tuning II\t0\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2"});
    Expect({}, 0, false);
    Access().SetString(0, 7, 0);
    Expect({TEMPORARY}, 2, false);
}

TEST_F(TuningRowsTest, DeletesARowInTheMiddleAndMovesOn) {
    OpenWith({MINE, YOURS}, 2);
    Click(ID_DELETE);
    Expect({"Yours"}, 2, true);
    Click(ID_DELETE);
    Expect({}, 1, false);
    EXPECT_EQ(CWnd::GetFocus(), &Access().List());
    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(ID_DELETE, BN_CLICKED));
    Expect({}, 1, false);
}

}  // namespace
