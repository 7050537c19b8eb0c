#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/TunerWndTest.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

struct Area {
    RECT rc;
    const char* szText;
};

// In the order in which areas that overlap are looked through.
constexpr std::array<Area, 13> AREAS = {{
    {{20, 34, 190, 102}, "[六条弦及音名].  [右键单击某一条弦可以播放它的标准音, 右键单击更改其标准音     ]."},
    {{20, 108, 102, 132}, "[播放当前规则中的音]  [顺序播放每条弦的标准音           ]."},
    {{108, 108, 190, 132},
     "[设置标准 A 的频充值      ].  Changes the base tuning to tune slightly higher or lower."},
    {{114, 144, 150, 164}, "[新增调音规则   ].  [保存当前调音规则并增加到调音规则列表中               ]."},
    {{150, 144, 186, 164}, "[删自定义调音规则  ].  [从调音规则列表中移除                      ]."},
    {{20, 140, 191, 290},
     "[调音规则表]. Tunings are ordered from E to Eb, then the custom tunings are listed."},
    {{210, 43, 240, 300}, "[录音水平指示        ].  [显示当前所使用录音设备的录音水平              ]."},
    {{250, 43, 490, 300}, "[精细调节指示,显示当前音高距离所显示音名的百分比                         ]."},
    {{10, 310, 490, 360},
     "[粗调指示: 显示要调到的各音名称及距离, 显示当前音高以确定需要调高或调低             ]."},
    {{250, 367, 325, 391}, "[设置 ].  [定制使用的颜色, 更改录音或输入设备,更改Midi输出设备               ]."},
    {{333, 367, 408, 391}, "Help.  [查看软件帮助说明                     ]."},
    {{415, 367, 490, 391}, "[关闭软件    ]"},
    {{370, 5, 491, 42}, "Click the logo to jump to our web page, www.fretvane.example"},
}};

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
    for (const Area& area : AREAS) {
        const RECT& rc = area.rc;
        for (const int x : {rc.left - 1, rc.left, rc.right - 1, rc.right}) {
            for (const int y : {rc.top - 1, rc.top, rc.bottom - 1, rc.bottom}) {
                const auto first = std::find_if(AREAS.begin(), AREAS.end(), [x, y](const Area& candidate) {
                    return PtInRect(candidate.rc, {x, y});
                });
                EXPECT_EQ(HintAt({x, y}), first != AREAS.end() ? first->szText : "") << x << ", " << y;
            }
        }
    }
}

TEST_F(HintTest, StandsUntilTheMouseEntersAnArea) {
    const auto [strStrings, strPlay] = std::pair<CString, CString>{AREAS[0].szText, AREAS[1].szText};
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
