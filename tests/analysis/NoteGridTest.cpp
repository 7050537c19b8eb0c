#include "analysis/NoteGrid.h"
#include "analysis/PublishedGrid.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>
#include <utility>

namespace {

constexpr float RAW = 300000.0F;

TEST(NoteGrid, HoldsEqualTemperamentFromLimitToLimit) {
    for (const float fA : {430.0F, 440.0F, 450.0F}) {
        for (const auto& [fLowest, nRate] : {std::pair(50.0F, 11025), {35.0F, 22050}, {35.0F, 44100}}) {
            const auto pGrid = CNoteGrid::Build(fA, fLowest, nRate);
            ASSERT_TRUE(pGrid);
            const int nLast = pGrid->GetNoteCount() - 1;
            EXPECT_EQ(pGrid->GetFrequency(pGrid->GetNotesBelowA()), fA);
            for (int i = 0; i <= nLast; ++i) {
                const double dExpected = NoteFrequency(i - pGrid->GetNotesBelowA(), fA);
                EXPECT_NEAR(pGrid->GetFrequency(i), dExpected, 4e-7 * dExpected);
                // A4 is the 57th semitone above C0.
                const int nFromC0 = i - pGrid->GetNotesBelowA() + 57;
                EXPECT_EQ(12 * pGrid->GetOctave(i) + pGrid->GetSemitone(i), nFromC0);
                EXPECT_GE(pGrid->GetSemitone(i), 0);
                EXPECT_LT(pGrid->GetSemitone(i), 12);
            }
            // To or just past both limits.
            EXPECT_LE(pGrid->GetFrequency(0), fLowest);
            EXPECT_GT(pGrid->GetFrequency(1), fLowest);
            EXPECT_GE(pGrid->GetFrequency(nLast), static_cast<float>(nRate));
            EXPECT_LT(pGrid->GetFrequency(nLast - 1), static_cast<float>(nRate));
        }
    }
}

TEST(NoteGrid, IsNotBuiltOutsideTheLimits) {
    EXPECT_FALSE(CNoteGrid::Build(30.0F, 50.0F, 11025));
    EXPECT_FALSE(CNoteGrid::Build(20000.0F, 50.0F, 11025));
    EXPECT_FALSE(CNoteGrid::Build(440.0F, 0.0F, 11025));
    EXPECT_FALSE(CNoteGrid::Build(std::nanf(""), 50.0F, 11025));
    // Both ends on the A itself: the one note there is.
    const auto pGrid = CNoteGrid::Build(441.0F, 441.0F, 441);
    ASSERT_TRUE(pGrid);
    EXPECT_EQ(pGrid->GetNoteCount(), 1);
    EXPECT_TRUE(pGrid->MakeReading(500.0F, RAW).IsNote(9, 4));
}

// The boundary lies halfway in Hz: 1200 log2((1 + 2^(1/12)) / 2) = 50.72 cents above a note, 49.28 below the
// next.
TEST(NoteGrid, NamesTheNoteNearestInHertz) {
    const auto pGrid = CNoteGrid::Build(440.0F, 50.0F, 11025);
    ASSERT_TRUE(pGrid);
    for (const int nSemitone : {-36, 13}) {
        const double dMiddle = 0.5 * (NoteFrequency(nSemitone) + NoteFrequency(nSemitone + 1));
        const NoteReading below = pGrid->MakeReading(static_cast<float>(dMiddle * (1 - 1e-6)), RAW);
        const NoteReading above = pGrid->MakeReading(static_cast<float>(dMiddle * (1 + 1e-6)), RAW);
        EXPECT_EQ(12 * below.octave + below.semitone, 57 + nSemitone);
        EXPECT_EQ(12 * above.octave + above.semitone, 57 + nSemitone + 1);
        EXPECT_NEAR(below.cents, 50.72, 0.01);
        EXPECT_NEAR(above.cents, -49.28, 0.01);
    }
    // Exactly in the middle, wherever a float can hold it, the upper note wins.
    int nExact = 0;
    for (int i = 0; i + 1 < pGrid->GetNoteCount(); ++i) {
        const double dMiddle =
            0.5 * (static_cast<double>(pGrid->GetFrequency(i)) + pGrid->GetFrequency(i + 1));
        const auto fMiddle = static_cast<float>(dMiddle);
        if (static_cast<double>(fMiddle) == dMiddle) {
            EXPECT_EQ(pGrid->MakeReading(fMiddle, RAW).semitone, pGrid->GetSemitone(i + 1));
            ++nExact;
        }
    }
    EXPECT_GT(nExact, 10);
}

TEST(NoteGrid, ReadingCarriesFrequencyCentsAndStrength) {
    const auto pGrid = CNoteGrid::Build(440.0F, 50.0F, 11025);
    ASSERT_TRUE(pGrid);
    const auto fSharp = static_cast<float>(110.0 * std::exp2(7.0 / 1200.0));
    const NoteReading reading = pGrid->MakeReading(fSharp, 1103638.3F);
    EXPECT_TRUE(reading.IsNote(9, 2));
    EXPECT_NEAR(reading.cents, 7.0, 0.001);
    EXPECT_NEAR(reading.strength, -10.0, 1e-4);
    EXPECT_EQ(reading.frequency, fSharp);
    // The lowest note is G1, 49.0 Hz.
    const NoteReading lowest = pGrid->MakeReading(40.0F, RAW);
    EXPECT_TRUE(lowest.IsNote(7, 1));
    EXPECT_NEAR(lowest.cents, 1200.0 * std::log2(40.0 / 48.99943), 0.01);
}

// One thread replaces the grid without pause while another reads: every reading must come from one whole
// grid. Run under the sanitizers this also shows that none is read after it was released and none is lost.
TEST(PublishedGrid, ReaderOnlySeesWholeGrids) {
    CPublishedGrid published;
    published.Publish(CNoteGrid::Build(430.0F, 50.0F, 11025));
    std::atomic<bool> bDone = false;
    std::atomic<int> nChangesSeen = 0;
    std::atomic<int> nTorn = 0;
    std::thread reader([&] {
        float fLast = 0.0F;
        while (!bDone) {
            const CPublishedGrid::CReader hold(published);
            const CNoteGrid& grid = *hold.Get();
            const float fA = grid.GetFrequency(grid.GetNotesBelowA());
            for (int i = 0; i < 20; ++i) {
                const NoteReading reading = grid.MakeReading(fA, RAW);
                nTorn += reading.IsNote(9, 4) && reading.cents == 0.0F ? 0 : 1;
            }
            nChangesSeen += fA != fLast ? 1 : 0;
            fLast = fA;
        }
    });
    constexpr int MEETINGS = 50;
    constexpr int MOST_GRIDS = 1000000;
    for (int i = 0; i < MOST_GRIDS && nChangesSeen < MEETINGS; ++i) {
        published.Publish(CNoteGrid::Build(static_cast<float>(430 + i % 21), 50.0F, 11025));
        if (i % 16 == 15) {
            // Lets the reader in on a machine with one core.
            std::this_thread::yield();
        }
    }
    bDone = true;
    reader.join();
    EXPECT_EQ(nTorn, 0);
    EXPECT_GE(nChangesSeen, MEETINGS) << "the threads never met";
}

TEST(PublishedGrid, AGridInUseStaysUntilItsReaderHasGone) {
    CPublishedGrid published;
    {
        const CPublishedGrid::CReader none(published);
        EXPECT_EQ(none.Get(), nullptr);
    }
    published.Publish(CNoteGrid::Build(430.0F, 50.0F, 11025));
    {
        const CPublishedGrid::CReader hold(published);
        published.Publish(CNoteGrid::Build(440.0F, 50.0F, 11025));
        published.Publish(CNoteGrid::Build(450.0F, 50.0F, 11025));
        EXPECT_EQ(hold.Get()->GetFrequency(hold.Get()->GetNotesBelowA()), 430.0F);
    }
    const CPublishedGrid::CReader next(published);
    EXPECT_EQ(next.Get()->GetFrequency(next.Get()->GetNotesBelowA()), 450.0F);
}

}  // namespace
