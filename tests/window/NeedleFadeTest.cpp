#include "window/NeedleFade.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF NEEDLE = 0xA00000;

// Worked out by hand: held for 100 ms, then 1500 ms to the grey, each channel cut toward its start.
TEST(NeedleFade, RunsStraightFromTheColourToGrey) {
    struct Row {
        COLORREF clr;
        float fElapsed;
        COLORREF clrFaded;
    };
    constexpr COLORREF MIXED = MakeColor(255, 0, 160);
    constexpr COLORREF GREY = CLR_FADED_NEEDLE;
    constexpr Row ROWS[] = {
        {NEEDLE, 0.0F, NEEDLE},
        {NEEDLE, 99.0F, NEEDLE},
        {NEEDLE, 100.0F, NEEDLE},
        {MIXED, 250.0F, MakeColor(246, 16, 160)},  // a tenth: -9.5 and 16
        {MIXED, 850.0F, MakeColor(208, 80, 160)},  // half way: -47.5 and 80
        {NEEDLE, 1599.0F, MakeColor(159, 159, 160)},
        {0xFFFFFF, 1599.0F, MakeColor(161, 161, 161)},  // 255 - trunc(94.93)
        {NEEDLE, 1600.0F, GREY},
        {NEEDLE, 119500.0F, GREY},
        {0xFFFFFF, 1600.0F, 0xA0A0A0},
        {GREY, 777.0F, GREY},
    };
    for (const Row& row : ROWS) {
        EXPECT_EQ(FadeNeedleColor(row.clr, row.fElapsed, 100.0F, 1500.0F), row.clrFaded) << row.fElapsed;
    }
}

}  // namespace
