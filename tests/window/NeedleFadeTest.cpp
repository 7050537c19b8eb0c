#include "window/NeedleFade.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr float HOLD = 100.0F;
constexpr float LENGTH = 1500.0F;
constexpr COLORREF NEEDLE = 0xA00000;

COLORREF Fade(COLORREF clr, float fElapsed) {
    return FadeNeedleColor(clr, fElapsed, HOLD, LENGTH);
}

TEST(NeedleFade, KeepsTheFullColourUntilTheHoldIsOver) {
    EXPECT_EQ(Fade(NEEDLE, 0.0F), NEEDLE);
    EXPECT_EQ(Fade(NEEDLE, 99.0F), NEEDLE);
    EXPECT_EQ(Fade(NEEDLE, 100.0F), NEEDLE) << "the fade begins at nothing";
}

TEST(NeedleFade, EndsInGreyAndStaysThere) {
    EXPECT_EQ(Fade(NEEDLE, 1600.0F), CLR_FADED_NEEDLE);
    EXPECT_EQ(Fade(NEEDLE, 119500.0F), CLR_FADED_NEEDLE);
    EXPECT_EQ(Fade(0xFFFFFF, 1600.0F), 0xA0A0A0U);
    EXPECT_EQ(Fade(0x000000, 1600.0F), 0xA0A0A0U);
}

// Worked out by hand: 1499 / 1500 of the way, cut toward the start, is one short of grey from either side.
TEST(NeedleFade, CutsEachChannelTowardItsStart) {
    EXPECT_EQ(Fade(NEEDLE, 1599.0F), MakeColor(159, 159, 160));
    EXPECT_EQ(Fade(0xFFFFFF, 1599.0F), MakeColor(161, 161, 161)) << "255 - trunc(94.93)";
    EXPECT_EQ(Fade(MakeColor(255, 0, 160), 850.0F), MakeColor(208, 80, 160)) << "half way: -47.5 and 80";
    EXPECT_EQ(Fade(MakeColor(255, 0, 160), 250.0F), MakeColor(246, 16, 160)) << "a tenth: -9.5 and 16";
}

TEST(NeedleFade, MovesStraightAndNeverBack) {
    COLORREF clrBefore = NEEDLE;
    for (int nElapsed = 0; nElapsed <= 1700; ++nElapsed) {
        const COLORREF clr = Fade(NEEDLE, static_cast<float>(nElapsed));
        ASSERT_GE(GetRed(clr), GetRed(clrBefore));
        ASSERT_EQ(GetBlue(clr), 0xA0);
        ASSERT_EQ(GetRed(clr), GetGreen(clr));
        const double fStraight = std::clamp((nElapsed - 100) * 160.0 / 1500.0, 0.0, 160.0);
        ASSERT_NEAR(GetRed(clr), fStraight, 1.0) << nElapsed;
        clrBefore = clr;
    }
}

TEST(NeedleFade, LeavesANeedleOfTheSameGreyAlone) {
    for (int nElapsed = 0; nElapsed <= 1700; nElapsed += 50) {
        ASSERT_EQ(Fade(CLR_FADED_NEEDLE, static_cast<float>(nElapsed)), CLR_FADED_NEEDLE);
    }
}

}  // namespace
