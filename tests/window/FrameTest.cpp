#include "window/FrameRate.h"
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
    EXPECT_EQ(FormatFrameRate(11025, 1000), "Frames per second: 11025.00");
}

}  // namespace
