#include "tuning/NoteReading.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(NoteReading, StartsEmptyAndStoresAllFive) {
    static_assert(std::is_trivially_copyable_v<NoteReading>);
    NoteReading reading;
    EXPECT_EQ(reading.semitone, 0);
    EXPECT_EQ(reading.frequency, 0.0F);
    reading.Set(9, -3, 1.5F, -12.0F, 441.0F);
    EXPECT_TRUE(reading.IsNote(9, 0)) << "a negative octave is stored as 0";
    EXPECT_EQ(reading.cents, 1.5F);
    EXPECT_EQ(reading.strength, -12.0F);
    EXPECT_EQ(reading.frequency, 441.0F);

    const NoteReading empty = NoteReading::Empty(7);
    EXPECT_TRUE(empty.IsNote(7, 0));
    EXPECT_EQ(empty.cents, 0.0F);
    EXPECT_EQ(empty.strength, -90.0F);
    EXPECT_EQ(empty.frequency, 0.0F);
}

TEST(Strength, IsTenTimesTheNaturalLogarithmBetweenItsEnds) {
    // 3000000 / e and / e^3.
    EXPECT_NEAR(StrengthFromRaw(1103638.3F), -10.0, 1e-4);
    EXPECT_NEAR(StrengthFromRaw(149361.2F), -30.0, 1e-4);
    EXPECT_EQ(StrengthFromRaw(3000000.0F), 0.0F);
    EXPECT_EQ(StrengthFromRaw(7.0e6F), 0.0F);
    // 3000000 / e^9 = 370.2
    EXPECT_NEAR(StrengthFromRaw(371.0F), -89.979, 1e-3);
    EXPECT_EQ(StrengthFromRaw(370.0F), -90.0F);
    EXPECT_EQ(StrengthFromRaw(0.0F), -90.0F);
}

}  // namespace
