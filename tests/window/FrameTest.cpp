#include "window/FrameRate.h"
#include "window/Strongest.h"

#include <gtest/gtest.h>

#include <array>

namespace {

std::array<NoteReading, SEMITONES> Candidates() {
    std::array<NoteReading, SEMITONES> candidates;
    for (int i = 0; i < SEMITONES; ++i) {
        candidates[static_cast<std::size_t>(i)] = NoteReading::Empty(i);
    }
    return candidates;
}

TEST(FindStrongest, TakesTheFirstInSilence) {
    EXPECT_EQ(FindStrongest(Candidates()), 0U);
}

TEST(FindStrongest, TakesTheLowestIndexOfEqualOnes) {
    auto candidates = Candidates();
    candidates[4].strength = -20.0F;
    candidates[9].strength = -20.0F;
    EXPECT_EQ(FindStrongest(candidates), 4U);
    candidates[9].strength = -19.999F;
    EXPECT_EQ(FindStrongest(candidates), 9U);
    candidates[11].strength = 0.0F;
    EXPECT_EQ(FindStrongest(candidates), 11U);
}

TEST(FindStrongest, TakesTheFirstWhereAllLieBelowTheFloor) {
    auto candidates = Candidates();
    for (auto& candidate : candidates) {
        candidate.strength = -100.0F;
    }
    EXPECT_EQ(FindStrongest(candidates), 0U);
    candidates[7].strength = -99.0F;
    EXPECT_EQ(FindStrongest(candidates), 7U);
}

TEST(FrameRate, IsDueOnlyAfterMoreThanASecond) {
    EXPECT_FALSE(IsFrameRateDue(5000, 5000));
    EXPECT_FALSE(IsFrameRateDue(5000, 6000));
    EXPECT_TRUE(IsFrameRateDue(5000, 6001));
    EXPECT_FALSE(IsFrameRateDue(0xFFFFFF00U, 0xFFFFFF00U + 1000)) << "the clock wraps round in between";
    EXPECT_TRUE(IsFrameRateDue(0xFFFFFF00U, 0xFFFFFF00U + 1001));
}

TEST(FrameRate, HasTwoDigitsBehindThePoint) {
    EXPECT_EQ(FormatFrameRate(86, 1001), "Frames per second: 85.91");
    EXPECT_EQ(FormatFrameRate(0, 1001), "Frames per second: 0.00");
    EXPECT_EQ(FormatFrameRate(11025, 1000), "Frames per second: 11025.00");
    EXPECT_EQ(FormatFrameRate(516, 6000), "Frames per second: 86.00");
}

}  // namespace
