#pragma once

#include "platform/base/Types.h"

#include <array>
#include <cstddef>

// The rows of the hint table.
enum HintRow : std::size_t {
    HINT_STRINGS,
    HINT_PLAY,
    HINT_A_FREQUENCY,
    HINT_ADD,
    HINT_DELETE,
    HINT_LIST,
    HINT_LEVEL,
    HINT_DIAL,
    HINT_COARSE,
    HINT_OPTIONS,
    HINT_HELP,
    HINT_EXIT,
    HINT_LOGO,
    HINT_ROWS
};

// An area of the window and the text that explains it.
struct HintPlace {
    RECT rc;
    const char* szText;
};

// The logo's text ends in the address of the maker's web site.
inline constexpr std::array<HintPlace, HINT_ROWS> HINT_TABLE = {{
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

// Where a click means a string: twenty pixels each, five between neighbours, inside the area of the diagram.
inline constexpr std::array<RECT, 6> STRING_AREAS = {{{35, 34, 55, 102},
                                                      {60, 34, 80, 102},
                                                      {85, 34, 105, 102},
                                                      {110, 34, 130, 102},
                                                      {135, 34, 155, 102},
                                                      {160, 34, 180, 102}}};

// The string whose area holds the point, from 0; -1 if none does.
constexpr int FindString(POINT pt) {
    for (std::size_t i = 0; i < STRING_AREAS.size(); ++i) {
        if (PtInRect(STRING_AREAS[i], pt)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}
