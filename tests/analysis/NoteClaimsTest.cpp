#include "analysis/NoteClaims.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace {

using testing::ElementsAre;

constexpr int PEAKS = 20;

// A table for the given amplitudes; peak p lies at 100 (p + 1) Hz.
class NoteClaims : public testing::Test {
protected:
    void Load(const std::vector<float>& amplitudes) {
        ASSERT_TRUE(m_claims.Init(12, PEAKS));
        std::array<float, PEAKS> frequencies{};
        std::array<float, PEAKS> all{};
        for (std::size_t p = 0; p < amplitudes.size(); ++p) {
            frequencies.at(p) = FrequencyOf(static_cast<int>(p));
            all.at(p) = amplitudes[p];
        }
        m_claims.LoadPeaks(frequencies.data(), all.data(), PEAKS);
    }
    static float FrequencyOf(int nPeak) { return 100.0F * static_cast<float>(nPeak + 1); }
    void Claim(int nNote, const std::vector<int>& peaks) {
        m_claims.ClearNote(nNote);
        m_claims.SetOctave(nNote, 3);
        m_claims.SetFrequency(nNote, 100.0F);
        for (const int p : peaks) {
            EXPECT_TRUE(m_claims.ClaimPeak(nNote, FrequencyOf(p)));
        }
    }
    // The notes that are left, in order of semitone.
    std::vector<int> Resolve() {
        m_claims.Rebuild();
        while (m_claims.DropWeakest()) {
        }
        m_claims.CopyOut(m_notes);
        std::vector<int> left;
        for (int n = 0; n < 12; ++n) {
            const NoteReading& note = m_notes.at(static_cast<std::size_t>(n));
            EXPECT_EQ(note.semitone, n);
            if (note.strength > 0.0F) {
                left.push_back(n);
            } else {
                EXPECT_EQ(note.octave, 0);
                EXPECT_EQ(note.frequency, 0.0F);
            }
        }
        return left;
    }

    CNoteClaims m_claims;
    std::array<NoteReading, 12> m_notes;
};

TEST_F(NoteClaims, WithoutNotesThereIsNothingToDo) {
    Load({10, 20});
    EXPECT_FALSE(m_claims.Rebuild());
    EXPECT_FALSE(m_claims.DropWeakest());
    EXPECT_THAT(Resolve(), ElementsAre());
}

TEST_F(NoteClaims, OneNoteThatOwnsAllStays) {
    Load({10, 20, 30});
    Claim(9, {0, 1, 2});
    EXPECT_THAT(Resolve(), ElementsAre(9));
    EXPECT_EQ(m_notes[9].strength, 60.0F);
    EXPECT_EQ(m_notes[9].octave, 3);
    EXPECT_EQ(m_notes[9].frequency, 100.0F);
}

// Both own nothing; the first in rank, the stronger or the lower semitone, goes, and the other then owns
// everything.
TEST_F(NoteClaims, OfTwoWithTheSameClaimsOneStays) {
    Load({10, 20, 30});
    Claim(2, {0, 1, 2});
    Claim(7, {0, 1, 2});
    EXPECT_THAT(Resolve(), ElementsAre(7));
}

// Own shares 0.5, 0.3 and 0.2: the last goes, and its peak then belongs to nobody.
TEST_F(NoteClaims, TheSmallestOwnShareGoesFirst) {
    Load({50, 30, 20});
    Claim(0, {0});
    Claim(4, {1});
    Claim(11, {2});
    EXPECT_THAT(Resolve(), ElementsAre(0, 4));
}

// Note 8 owns nothing and goes first. That leaves its peak to note 3, whose own share, 0.1 until then,
// becomes 0.3.
TEST_F(NoteClaims, SharesAreWorkedOutAnewAfterEachRemoval) {
    Load({30, 40, 20, 10});
    Claim(3, {1, 2, 3});
    Claim(5, {0, 1});
    Claim(8, {2});
    EXPECT_THAT(Resolve(), ElementsAre(3, 5));
    EXPECT_EQ(m_notes[3].strength, 70.0F);
}

TEST_F(NoteClaims, AQuarterIsEnoughAndNoMoreThanFourFit) {
    Load({25, 25, 25, 25});
    Claim(1, {0});
    Claim(2, {1});
    Claim(3, {2});
    Claim(4, {3});
    EXPECT_THAT(Resolve(), ElementsAre(1, 2, 3, 4));
    Load({25, 25, 25, 24, 1});
    Claim(1, {0});
    Claim(2, {1});
    Claim(3, {2});
    Claim(4, {3});
    Claim(5, {4});
    EXPECT_THAT(Resolve(), ElementsAre(1, 2, 3));
}

TEST_F(NoteClaims, OnlyPeaksThatAreThereCanBeClaimed) {
    Load({10, 20});
    EXPECT_FALSE(m_claims.ClaimPeak(0, 0.0F)) << "an empty slot";
    EXPECT_FALSE(m_claims.ClaimPeak(0, 100.2F));
    EXPECT_TRUE(m_claims.ClaimPeak(0, 100.05F));
    // Too weak to count as a note.
    Load({0.1F, 0.05F, 50});
    Claim(6, {1});
    EXPECT_FALSE(m_claims.Rebuild());
    Claim(6, {2});
    m_claims.ClearNote(6);
    EXPECT_FALSE(m_claims.Rebuild());
}

TEST_F(NoteClaims, AResetForgetsTheBlock) {
    Load({10, 20});
    Claim(1, {0, 1});
    m_claims.Reset();
    EXPECT_FALSE(m_claims.ClaimPeak(1, FrequencyOf(0)));
    EXPECT_THAT(Resolve(), ElementsAre());
}

}  // namespace
