#include "support/SyntheticString.h"
#include "tuning/StringNote.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

CString TextOf(int nSemitone, int nOctave) {
    StringNote note;
    note.Set(nSemitone, nOctave);
    CString strText = "left over";
    note.GetText(strText);
    return strText;
}

TEST(StringNote, TextIsNameAndOctaveNumber) {
    EXPECT_THAT(SEMITONE_NAMES,
                testing::ElementsAre("C", "C#", "D", "Eb", "E", "F", "F#", "G", "G#", "A", "Bb", "B"));
    EXPECT_EQ(TextOf(0, 0), "C2");
    EXPECT_EQ(TextOf(4, 0), "E2");
    EXPECT_EQ(TextOf(6, 1), "F#3");
    EXPECT_EQ(TextOf(10, 2), "Bb4");
    EXPECT_EQ(TextOf(11, 2), "B4");
    EXPECT_EQ(TextOf(4, -1), "E2") << "a negative octave is stored as 0";
    EXPECT_EQ(TextOf(12, 1), "3");
    EXPECT_EQ(TextOf(-1, 1), "3");
}

TEST(StringNote, ComparesBothFields) {
    StringNote note;
    EXPECT_TRUE(note.IsNote(0, 0));
    note.Set(7, 1);
    EXPECT_TRUE(note.IsNote(7, 1));
    EXPECT_FALSE(note.IsNote(7, 2));
    EXPECT_FALSE(note.IsNote(8, 1));
}

// Against equal temperament from the A4: semitone 0 of octave index 0 is C2, 33 semitones below it. The ratio
// of a semitone has seven digits, so that nine semitones down keep six.
TEST(StringNote, FrequenciesAreThoseOfEqualTemperament) {
    for (const float fA : {430.0F, 440.0F, 450.0F}) {
        for (int i = 0; i < 36; ++i) {
            StringNote note;
            note.Set(i % 12, i / 12);
            const double dExpected = NoteFrequency(i - 33, fA);
            EXPECT_NEAR(note.GetFrequency(fA), dExpected, 7e-7 * dExpected) << i;
        }
        StringNote a;
        a.Set(9, 0);
        EXPECT_EQ(a.GetFrequency(fA), fA / 4);
        a.Set(9, 2);
        EXPECT_EQ(a.GetFrequency(fA), fA);
    }
}

}  // namespace
