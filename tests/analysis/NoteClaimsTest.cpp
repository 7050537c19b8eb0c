#include "analysis/NoteClaims.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace {

constexpr int NOTES = 12;
constexpr int PEAKS = 20;

float FrequencyOf(int nPeak) {
    return 100.0F * static_cast<float>(nPeak + 1);
}

class NoteClaims : public testing::Test {
protected:
    // A table for the given amplitudes; peak p lies at 100 (p + 1) Hz.
    void Load(const std::vector<float>& amplitudes) {
        ASSERT_TRUE(m_claims.Init(NOTES, PEAKS));
        std::vector<float> frequencies;
        for (std::size_t p = 0; p < amplitudes.size(); ++p) {
            frequencies.push_back(FrequencyOf(static_cast<int>(p)));
        }
        m_claims.LoadPeaks(frequencies.data(), amplitudes.data(), static_cast<int>(amplitudes.size()));
    }
    void Claim(int nNote, const std::vector<int>& peaks) {
        m_claims.ClearNote(nNote);
        m_claims.SetOctave(nNote, 3);
        m_claims.SetFrequency(nNote, 100.0F);
        for (const int p : peaks) {
            EXPECT_TRUE(m_claims.ClaimPeak(nNote, FrequencyOf(p)));
        }
    }

    CNoteClaims m_claims;
};

TEST_F(NoteClaims, EachThatIsLeftExplainsAQuarterAlone) {
    struct Case {
        const char* szWhat;
        std::vector<float> amplitudes;
        std::vector<std::pair<int, std::vector<int>>> claims;  // note and peaks
        std::map<int, float> left;                             // note and strength
    };
    const std::vector<Case> cases{
        {"no notes", {10, 20}, {}, {}},
        {"one note", {10, 20, 30}, {{9, {0, 1, 2}}}, {{9, 60.0F}}},
        // Both own nothing; the first in rank, the stronger or the lower semitone, goes.
        {"two with the same claims", {10, 20, 30}, {{2, {0, 1, 2}}, {7, {0, 1, 2}}}, {{7, 60.0F}}},
        // Own shares 0.5, 0.3 and 0.2.
        {"the smallest goes", {50, 30, 20}, {{0, {0}}, {4, {1}}, {11, {2}}}, {{0, 50.0F}, {4, 30.0F}}},
        // Note 8 owns nothing and goes first. That leaves its peak to note 3, whose own share, 0.1 until
        // then, becomes 0.3.
        {"shares anew after each removal",
         {30, 40, 20, 10},
         {{3, {1, 2, 3}}, {5, {0, 1}}, {8, {2}}},
         {{3, 70.0F}, {5, 70.0F}}},
        {"a quarter is enough",
         {1, 1, 1, 1},
         {{1, {0}}, {2, {1}}, {3, {2}}, {4, {3}}},
         {{1, 1.0F}, {2, 1.0F}, {3, 1.0F}, {4, 1.0F}}},
        {"less is not",
         {25, 25, 25, 24, 1},
         {{1, {0}}, {2, {1}}, {3, {2}}, {4, {3}}, {5, {4}}},
         {{1, 25.0F}, {2, 25.0F}, {3, 25.0F}}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        Load(c.amplitudes);
        for (const auto& [nNote, peaks] : c.claims) {
            Claim(nNote, peaks);
        }
        EXPECT_EQ(m_claims.Rebuild(), !c.claims.empty());
        while (m_claims.DropWeakest()) {
        }
        std::array<NoteReading, NOTES> notes;
        m_claims.CopyOut(notes);
        for (int n = 0; n < NOTES; ++n) {
            const bool bLeft = c.left.contains(n);
            EXPECT_EQ(notes.at(static_cast<std::size_t>(n)),
                      (bLeft ? NoteReading{{n, 3}, 0.0F, c.left.at(n), 100.0F} : NoteReading{{n, 0}}));
        }
    }
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
    m_claims.Reset();
    EXPECT_FALSE(m_claims.ClaimPeak(6, FrequencyOf(2))) << "a peak of the block before";
}

}  // namespace
