#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/HintTable.h"
#include "window/TunerWndTest.h"

#include <algorithm>

namespace {

constexpr POINT NOWHERE{5, 5};

class HintTest : public CTunerWndTest {
protected:
    void SetUp() override {
        m_fake->SetDevices({{}});
        Open();
    }
    CWnd& Hint() { return *Wnd().GetDlgItem(ID_HINT); }
};

// The corners of each area and the points just outside them, over the window, its buttons and its list.
TEST_F(HintTest, TellsOfTheAreaUnderTheMouse) {
    for (const HintPlace& area : HINT_TABLE) {
        for (const int x : {area.rc.left - 1, area.rc.left, area.rc.right - 1, area.rc.right}) {
            for (const int y : {area.rc.top - 1, area.rc.top, area.rc.bottom - 1, area.rc.bottom}) {
                // Of areas that overlap the first one counts.
                const auto first =
                    std::find_if(HINT_TABLE.begin(), HINT_TABLE.end(), [x, y](const HintPlace& place) {
                        return PtInRect(place.rc, {x, y});
                    });
                toolkit::MoveOver(Wnd(), NOWHERE);
                Hint().SetWindowText("");
                toolkit::MoveOver(Wnd(), {x, y});
                EXPECT_EQ(toolkit::TextOf(Hint()), first != HINT_TABLE.end() ? first->szText : "")
                    << x << ", " << y;
            }
        }
    }
}

TEST_F(HintTest, StandsUntilTheMouseEntersAnArea) {
    EXPECT_EQ(toolkit::TextOf(Hint()), "");
    toolkit::MoveOver(Wnd(), {30, 50});
    Hint().SetWindowText("untouched");
    toolkit::MoveOver(Wnd(), {31, 50});
    EXPECT_EQ(toolkit::TextOf(Hint()), "untouched") << "the area is the same";
    toolkit::MoveOver(Wnd(), NOWHERE);
    EXPECT_EQ(toolkit::TextOf(Hint()), "untouched") << "the last text stays beside all areas";
    toolkit::MoveOver(Wnd(), {31, 50});
    EXPECT_EQ(toolkit::TextOf(Hint()), HINT_TABLE[HINT_STRINGS].szText) << "coming back sets it anew";
    EXPECT_FALSE(toolkit::IsTextCut(Hint()));
}

}  // namespace
