#include "stage/SyntheticString.h"
#include "tuning/NoteReading.h"

#include <gtest/gtest.h>

namespace {

TEST(StringNote, TextIsNameAndOctaveNumber) {
    // A negative octave is stored as 0; what is no semitone has no name.
    CString strTexts;
    for (const StringNote given : {StringNote{0, 0}, {6, 1}, {11, 2}, {4, -1}, {12, 1}, {-1, 1}}) {
        StringNote note;
        note.Set(given.semitone, given.octave);
        CString strText = "left over";
        note.GetText(strText);
        strTexts += strText + ' ';
    }
    EXPECT_EQ(strTexts, "C2 F#3 B4 E2 3 3 ");
}

// Against equal temperament from the A4: semitone 0 of octave index 0 is C2, 33 semitones below it. The ratio
// of a semitone has seven digits, so that nine semitones down keep six.
TEST(StringNote, FrequenciesAreThoseOfEqualTemperament) {
    for (const float fA : {430.0F, 440.0F, 450.0F}) {
        for (int i = 0; i < 36; ++i) {
            const double dExpected = NoteFrequency(i - 33, fA);
            EXPECT_NEAR((StringNote{i % 12, i / 12}.GetFrequency(fA)), dExpected, 7e-7 * dExpected) << i;
        }
        EXPECT_EQ((StringNote{9, 0}.GetFrequency(fA)), fA / 4);
        EXPECT_EQ((StringNote{9, 2}.GetFrequency(fA)), fA);
    }
}

TEST(NoteReading, StoresAllFive) {
    NoteReading reading;
    reading.Set(9, -3, 1.5F, -12.0F, 441.0F);
    EXPECT_EQ(reading, (NoteReading{{9, 0}, 1.5F, -12.0F, 441.0F}));
    EXPECT_EQ(NoteReading::Empty(7), (NoteReading{{7, 0}, 0.0F, -90.0F, 0.0F}));
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
