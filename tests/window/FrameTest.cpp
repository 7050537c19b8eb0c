#include "window/CaptureLadder.h"
#include "window/FrameRate.h"
#include "window/NeedleFade.h"
#include "window/Strongest.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(FindStrongest, TakesTheLowestIndexOfEqualOnes) {
    std::array<NoteReading, SEMITONES> candidates;
    candidates.fill(NoteReading::Empty(0));
    EXPECT_EQ(FindStrongest(candidates), 0U) << "silence";
    candidates[4].strength = -20.0F;
    candidates[9].strength = -20.0F;
    EXPECT_EQ(FindStrongest(candidates), 4U);
    candidates[9].strength = -19.999F;
    EXPECT_EQ(FindStrongest(candidates), 9U);
    for (NoteReading& candidate : candidates) {
        candidate.strength = -100.0F;
    }
    candidates[0].strength = -120.0F;
    EXPECT_EQ(FindStrongest(candidates), 0U) << "all below the floor";
}

TEST(FrameRate, IsDueOnlyAfterMoreThanASecond) {
    // The clock wraps round in the second of these.
    for (const DWORD dwStart : {DWORD{5000}, 0xFFFFFF00U}) {
        EXPECT_FALSE(IsFrameRateDue(dwStart, dwStart));
        EXPECT_FALSE(IsFrameRateDue(dwStart, dwStart + 1000));
        EXPECT_TRUE(IsFrameRateDue(dwStart, dwStart + 1001));
    }
    EXPECT_EQ(FormatFrameRate(86, 1001), "Frames per second: 85.91");
}

TEST(CutHop, TakesWhateverWasStored) {
    EXPECT_EQ(CutHop(0.0F), 0);
    EXPECT_EQ(CutHop(128.9F), 128);
    const volatile float fHuge = 1e30F;  // not for the compiler to work out
    EXPECT_EQ(CutHop(fHuge), 2147483647);
}

// Worked out by hand: held for 100 ms, then 1500 ms to the grey, each channel cut toward its start.
TEST(NeedleFade, RunsStraightFromTheColourToGrey) {
    struct Row {
        COLORREF clr;
        float fElapsed;
        COLORREF clrFaded;
    };
    constexpr COLORREF MIXED = MakeColor(255, 0, 160);
    constexpr Row ROWS[] = {
        {MIXED, 0.0F, MIXED},
        {MIXED, 99.0F, MIXED},
        {MIXED, 130.0F, MakeColor(254, 3, 160)},   // a fiftieth: -1.9 and 3.2
        {MIXED, 850.0F, MakeColor(208, 80, 160)},  // half way: -47.5 and 80
        {MIXED, 1599.0F, MakeColor(161, 159, 160)},
        {MIXED, 119500.0F, CLR_FADED_NEEDLE},
        {0xFFFFFF, 1600.0F, 0xA0A0A0},
    };
    for (const Row& row : ROWS) {
        EXPECT_EQ(FadeNeedleColor(row.clr, row.fElapsed, 100.0F, 1500.0F), row.clrFaded) << row.fElapsed;
    }
}

}  // namespace
