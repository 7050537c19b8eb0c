#include "platform/windows/support/Toolkit.h"
#include "window/TunerWndTest.h"

#include <functional>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* TEMPORARY = "User Defined Tuning";
constexpr int LOWEST_X = 45;
constexpr int HIGHEST_X = 170;

constexpr int ESCAPE = 0x01000000;
constexpr int ENTER = 0x01000004;
constexpr int LEFT = 0x01000012;
constexpr int RIGHT = 0x01000014;
constexpr int DOWN = 0x01000015;

class MenuTest : public CTunerWndTest {
protected:
    void SetUp() override { OpenWith(); }
    // The right button at the place, and in the popup what is said; whether there was one.
    bool RightClick(POINT pt, std::function<void()> fnDo) {
        bool bOpened = false;
        toolkit::Later([&bOpened, fnDo = std::move(fnDo)] {
            bOpened = !toolkit::PopupItems().empty();
            if (bOpened) {
                fnDo();
            }
        });
        toolkit::Press(Wnd(), pt, true);
        toolkit::Release(Wnd(), pt, true);
        toolkit::RunFor(40);
        EXPECT_THAT(toolkit::PopupItems(), IsEmpty()) << "the popup is gone";
        return bOpened;
    }
};

// Opens the menu of an octave and gives its items.
std::vector<CString> OpenOctave(int nOctave) {
    for (int i = 0; i <= nOctave; ++i) {
        toolkit::PopupKey(DOWN);
    }
    toolkit::PopupKey(RIGHT);
    return toolkit::PopupItems();
}

TEST_F(MenuTest, ShowsTheNotesWithACheckMarkAtTheStringsOwn) {
    POINT ptMiddle{LOWEST_X, 70};
    Wnd().ClientToScreen(ptMiddle);
    EXPECT_TRUE(RightClick({36, 70}, [ptMiddle] {
        EXPECT_THAT(toolkit::PopupItems(),
                    ElementsAre("[低音>>>   ] >", "[中音>>>    ] >", "[低音>>>   ] >"));
        EXPECT_EQ(toolkit::PopupOrigin().x, ptMiddle.x);
        EXPECT_EQ(toolkit::PopupOrigin().y, ptMiddle.y);
        for (const char* szE : {"E *", "E", "E"}) {
            EXPECT_THAT(OpenOctave(0),
                        ElementsAre("C", "C#", "D", "Eb", szE, "F", "F#", "G", "G#", "A", "Bb", "B"));
            toolkit::PopupKey(LEFT);
        }
        toolkit::PopupKey(ESCAPE);
    }));
    EXPECT_THAT(m_midi->TakeNotes(), IsEmpty()) << "closing without a choice plays nothing";
    EXPECT_TRUE(Note(0).IsNote(4, 0));
    EXPECT_EQ(Access().List().GetCurSel(), 0);
}

TEST_F(MenuTest, SetsTheStringPlaysItAndThenFindsTheRow) {
    // What stood there when the note began.
    int nRow = -1;
    StringNote note;
    m_midi->m_fnOnNote = [this, &nRow, &note] {
        nRow = Access().List().GetCurSel();
        note = Note(0);
    };
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(RightClick({LOWEST_X, 40}, [] {
            OpenOctave(0);
            toolkit::ClickPopupItem(2, true);
        }));
        EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(38));
        EXPECT_EQ(nRow, i) << "the note comes before the row, which stays when the note is the same";
        EXPECT_TRUE(note.IsNote(2, 0)) << "and behind the string";
        EXPECT_EQ(Access().Current().m_strName, "Drop D");
    }
    // By the keyboard alone.
    const auto before = CopyPicture();
    EXPECT_TRUE(RightClick({HIGHEST_X, 100}, [] {
        OpenOctave(1);
        toolkit::PopupKey(ENTER);
    }));
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(48));
    EXPECT_TRUE(Note(5).IsNote(0, 1));
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard", "Drop D", TEMPORARY));
    EXPECT_EQ(Access().List().GetCurSel(), 2);
    EXPECT_NE(CopyPicture(), before) << "diagram and strip show it";
}

TEST_F(MenuTest, OpensNothingBesideTheStrings) {
    for (const POINT pt : {POINT{57, 60}, {25, 60}, {45, 33}, {45, 102}, {400, 20}, {300, 200}}) {
        EXPECT_FALSE(RightClick(pt, [] { toolkit::PopupKey(ESCAPE); })) << pt.x << ", " << pt.y;
    }
}

}  // namespace
