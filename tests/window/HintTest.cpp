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
    // What stands in the hint line with the mouse at that place, wherever the mouse came from.
    CString HintAt(POINT pt) {
        toolkit::MoveOver(Wnd(), NOWHERE);
        Hint().SetWindowText("");
        toolkit::MoveOver(Wnd(), pt);
        return toolkit::TextOf(Hint());
    }
    CWnd& Hint() { return *Wnd().GetDlgItem(ID_HINT); }
};

// The corners of each area and the points just outside them, over the window, its buttons and its list.
TEST_F(HintTest, TellsOfTheAreaUnderTheMouse) {
    for (const HintPlace& area : HINT_TABLE) {
        const RECT& rc = area.rc;
        for (const int x : {rc.left - 1, rc.left, rc.right - 1, rc.right}) {
            for (const int y : {rc.top - 1, rc.top, rc.bottom - 1, rc.bottom}) {
                // Of areas that overlap the first one counts.
                const auto first =
                    std::find_if(HINT_TABLE.begin(), HINT_TABLE.end(), [x, y](const HintPlace& place) {
                        return PtInRect(place.rc, {x, y});
                    });
                EXPECT_EQ(HintAt({x, y}), first != HINT_TABLE.end() ? first->szText : "") << x << ", " << y;
            }
        }
    }
}

TEST_F(HintTest, StandsUntilTheMouseEntersAnArea) {
    const CString strStrings =
        "[六条弦及音名].  [右键单击某一条弦可以播放它的标准音, 右键单击更改其标准音     ].";
    const CString strPlay = "[播放当前规则中的音]  [顺序播放每条弦的标准音           ].";
    EXPECT_EQ(toolkit::TextOf(Hint()), "");
    EXPECT_EQ(HintAt({30, 50}), strStrings);
    Hint().SetWindowText("untouched");
    toolkit::MoveOver(Wnd(), {31, 50});
    EXPECT_EQ(toolkit::TextOf(Hint()), "untouched") << "the area is the same";
    toolkit::MoveOver(Wnd(), NOWHERE);
    EXPECT_EQ(toolkit::TextOf(Hint()), "untouched") << "the last text stays beside all areas";
    toolkit::MoveOver(Wnd(), {31, 50});
    EXPECT_EQ(toolkit::TextOf(Hint()), strStrings) << "coming back sets it anew";
    toolkit::MoveOver(Wnd(), {30, 110});
    EXPECT_EQ(toolkit::TextOf(Hint()), strPlay);
    EXPECT_FALSE(toolkit::IsTextCut(Hint()));
}

}  // namespace
