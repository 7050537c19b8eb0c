#include "analysis/NoteTracker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <vector>

namespace {

constexpr int RATE = 11025;
// A frame of 11.6 ms: a note is stable after 2 frames more, the averaging time of 0.05 s covers 5 frames, the
// settling time 8.
constexpr float HOP = 128.0F;
// A frame of 50.07 ms, just above the shortest averaging time: each frame is its own average, every frame is
// stable, and the averaging time may change at every third frame.
constexpr float LONG_HOP = 552.0F;

// A candidate fCents above or below the A2, however far: the nearest semitone takes what is over.
NoteReading NearA2(float fCents, float fStrength = -20.0F, float fFrequency = 110.0F) {
    const int nSteps = static_cast<int>(std::lround(fCents / 100.0F));
    const int nSemitone = 9 + nSteps;
    return {{nSemitone % 12, 2 + nSemitone / 12},
            fCents - 100.0F * static_cast<float>(nSteps),
            fStrength,
            fFrequency};
}

class NoteTracker : public testing::Test {
protected:
    NoteReading Feed(const NoteReading& candidate, float fHop = HOP, float fLevel = 0.5F) {
        return m_tracker.Update(candidate, fHop, RATE, fLevel);
    }
    // nFrames of one candidate; the last reading.
    NoteReading FeedSteadily(int nFrames, const NoteReading& candidate, float fHop = HOP) {
        NoteReading reading;
        for (int i = 0; i < nFrames; ++i) {
            reading = Feed(candidate, fHop);
        }
        return reading;
    }

    CNoteTracker m_tracker;
};

TEST_F(NoteTracker, FirstFramesHoldZerosAndTheThirdTracks) {
    EXPECT_FALSE(m_tracker.IsHolding());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Feed(NearA2(-3.0F)), NoteReading{});
        EXPECT_TRUE(m_tracker.IsHolding());
    }
    // Rounding goes up below the note too.
    EXPECT_EQ(Feed(NearA2(-3.0F)), (NoteReading{{9, 2}, -2.5F, -20.0F, 110.0F}));
    EXPECT_FALSE(m_tracker.IsHolding());
}

TEST_F(NoteTracker, ComesOnAboveAndGoesOffBelowItsThresholds) {
    FeedSteadily(10, NearA2(0.0F, -27.0F));
    EXPECT_TRUE(m_tracker.IsHolding()) << "exactly the threshold does not end holding";
    Feed(NearA2(0.0F, -26.99F));
    EXPECT_FALSE(m_tracker.IsHolding());
    FeedSteadily(10, NearA2(0.0F, -30.0F));
    EXPECT_FALSE(m_tracker.IsHolding()) << "exactly the threshold does not start holding";
    Feed(NearA2(0.0F, -30.01F));
    EXPECT_TRUE(m_tracker.IsHolding());
}

TEST_F(NoteTracker, SixtyCentsApartIsStableAndMoreIsNot) {
    FeedSteadily(5, NearA2(-30.0F));
    Feed(NearA2(30.0F));
    EXPECT_FALSE(m_tracker.IsHolding());
    // 60 from the last frame, but 120 from the one before.
    Feed(NearA2(90.0F));
    EXPECT_TRUE(m_tracker.IsHolding());
}

// Dying away: live until just below the threshold, and then the last live reading stays.
TEST_F(NoteTracker, HoldsTheLastLiveReading) {
    NoteReading last;
    for (int nFrame = 0; nFrame <= 20; ++nFrame) {
        const auto fFrame = static_cast<float>(nFrame);
        // Long frames, so that reading and candidate are of one frame.
        last = Feed(NearA2(2.0F, -20.0F - 0.5F * fFrame, 100.0F + fFrame), LONG_HOP);
        EXPECT_FALSE(m_tracker.IsHolding());
    }
    EXPECT_EQ(last.strength, -30.0F);
    EXPECT_EQ(FeedSteadily(3, NearA2(40.0F, -31.0F), LONG_HOP), last);
    EXPECT_EQ(FeedSteadily(50, NoteReading::Empty(0), LONG_HOP), last);
    EXPECT_TRUE(m_tracker.IsHolding());
    Feed(NoteReading::Empty(3), 10 * LONG_HOP, 0.125F);
    EXPECT_EQ(m_tracker.GetLevel(), 0.125F) << "the level goes on";
}

// 100 cents up: two frames are not stable; with the third the averages begin with the two newest.
TEST_F(NoteTracker, AJumpHoldsAndThenHasNothingOfTheOldNote) {
    const NoteReading old = FeedSteadily(20, NearA2(0.0F, -20.0F, 110.0F));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Feed(NearA2(100.0F, -18.0F, 116.5F)), old);
        EXPECT_TRUE(m_tracker.IsHolding());
    }
    EXPECT_EQ(Feed(NearA2(100.0F, -18.0F, 116.5F)), (NoteReading{{10, 2}, 0.5F, -18.0F, 116.5F}));
    EXPECT_FALSE(m_tracker.IsHolding());
}

// 0.05 s are 551.25 samples: five frames of 128, or two of 300, or one of 128 on top of one of 500.
TEST_F(NoteTracker, AveragesCoverATimeNotANumberOfFrames) {
    const auto feed = [this](float fFrequency, float fHop) {
        return Feed(NearA2(0.0F, -20.0F, fFrequency), fHop).frequency;
    };
    for (int i = 1; i <= 7; ++i) {
        feed(static_cast<float>(100 * i), HOP);
    }
    EXPECT_EQ(feed(800.0F, HOP), 600.0F);                         // (400 + ... + 800) / 5
    EXPECT_EQ(feed(1000.0F, 300.0F), (1000 + 800 + 700) / 3.0F);  // 300 + 128 + 128 = 556
    EXPECT_EQ(feed(500.0F, 300.0F), 750.0F);                      // 300 + 300
    EXPECT_EQ(feed(400.0F, 500.0F), 450.0F);                      // 500 + 300
}

// A frame of each position, in cents from A2 and, over the octave's end, from B2 to C3.
TEST_F(NoteTracker, APositionCrossesFromNoteToNoteWithoutAJump) {
    struct Case {
        float fCents;
        NoteReading expected;
    };
    for (const Case& c : {Case{49.0F, {{9, 2}, 49.5F}},
                          {51.0F, {{10, 2}, -48.5F}},
                          {110.0F, {{10, 2}, 10.5F}},
                          {170.0F, {{11, 2}, -29.5F}},
                          {210.0F, {{11, 2}, 10.5F}},
                          {249.0F, {{11, 2}, 49.5F}},
                          {251.0F, {{0, 3}, -48.5F}}}) {
        const NoteReading reading = Feed(NearA2(c.fCents), LONG_HOP);
        EXPECT_TRUE(reading.IsNote(c.expected.semitone, c.expected.octave)) << c.fCents;
        EXPECT_EQ(reading.cents, c.expected.cents);
    }
}

TEST_F(NoteTracker, TheLastCentDoesNotFlicker) {
    struct Case {
        const char* szWhat;
        std::vector<float> candidates;
        std::vector<float> readings;
    };
    const std::vector<Case> cases{
        // From the second change on the reading stays on 1: it has stood one frame, then two, each time no
        // shorter than the 0.
        {"0.9 and 1.1 in turn", {0.4F, 0.6F, 0.4F, 0.6F, 0.4F}, {0.9F, 1.1F, 1.0F, 1.0F, 1.0F}},
        // One step back is a change of direction, not yet a hopping between two.
        {"a steady drift and back", {0.4F, 1.4F, 2.4F, 3.4F, 1.4F}, {0.9F, 1.9F, 2.9F, 3.9F, 1.9F}}};
    for (const Case& c : cases) {
        m_tracker = {};
        for (std::size_t i = 0; i < c.candidates.size(); ++i) {
            EXPECT_NEAR(Feed(NearA2(c.candidates[i]), LONG_HOP).cents, c.readings[i], 1e-3)
                << c.szWhat << ", frame " << i;
        }
    }
}

// Candidates of 0.4 and 0.6 cents in turn, the frequency 100 times the frame's number to see what is
// averaged. Worked out frame by frame (smoothed: the averaged position in cents; M = 5, a decision at every
// third frame):
//  frame  2: M = 2, a single way, roughness 0: the step stays 0
//  frame  5: .4 .6 .4 .6 .4: (0.8 - 0) / 5 = 0.16: up to 0.1 s, two frames from frame 6 on
//  frame  8: .6 .4 .5 .5 .5: (0.3 - 0.1) / 5 = 0.04: up to 0.25 s, five frames
//  frame 11: .5 .5 .48 .52 .48: (0.1 - 0.02) / 5 = 0.016: up to 0.5 s, ten frames
//  frame 14: .52 .48 .5 .5 .5: (0.06 - 0.02) / 5 = 0.008: between the limits, stays
//  frame 17: .5 five times: 0: down to 0.25 s, five frames from frame 18 on
TEST_F(NoteTracker, TheAveragingTimeFollowsTheRoughness) {
    // The means of frames 5, 5 to 6, 7 to 8, 5 to 9, 7 to 11, 3 to 12, 8 to 17, and 14 to 18.
    const std::map<int, float> expected{{5, 500.0F},  {6, 550.0F},  {8, 750.0F},   {9, 700.0F},
                                        {11, 900.0F}, {12, 750.0F}, {17, 1250.0F}, {18, 1600.0F}};
    for (int i = 1; i <= 18; ++i) {
        const NoteReading candidate =
            NearA2(i % 2 == 1 ? 0.4F : 0.6F, -20.0F, 100.0F * static_cast<float>(i));
        const float fFrequency = Feed(candidate, LONG_HOP).frequency;
        if (expected.contains(i)) {
            EXPECT_EQ(fFrequency, expected.at(i)) << i;
        }
    }
}

// However restless, half a second is the longest: ten frames.
TEST_F(NoteTracker, TheAveragingTimeEndsAtHalfASecond) {
    NoteReading reading;
    for (int i = 1; i <= 100; ++i) {
        const float fCents = i % 3 == 0 ? 20.0F : 0.0F;
        reading = Feed(NearA2(fCents, -20.0F, static_cast<float>(i)), LONG_HOP);
    }
    EXPECT_EQ(reading.frequency, 95.5F);  // frames 91 to 100
}

// With long frames the averages restart with the newest frame alone.
TEST_F(NoteTracker, LongFramesRestartWithTheNewest) {
    const NoteReading old = FeedSteadily(3, NearA2(0.0F), LONG_HOP);
    EXPECT_EQ(Feed(NearA2(0.0F, -40.0F), LONG_HOP), old);
    EXPECT_EQ(Feed(NearA2(300.0F, -20.0F, 130.8F), LONG_HOP), (NoteReading{{0, 3}, 0.5F, -20.0F, 130.8F}));
    EXPECT_FALSE(m_tracker.IsHolding());
}

// A frame for every sample: 330 frames until stable, 552 in an average, and the ring goes round twice.
TEST_F(NoteTracker, FramesOfOneSampleFillTheRingAndGoOn) {
    NoteReading reading;
    for (int i = 1; i <= 2500; ++i) {
        reading = Feed(NearA2(0.0F), 1.0F, static_cast<float>(i));
        EXPECT_EQ(m_tracker.IsHolding(), i <= 330) << i;
    }
    EXPECT_EQ(m_tracker.GetLevel(), 2224.5F);  // 1949 to 2500
    EXPECT_EQ(reading.cents, 0.5F);
    // At 44100 Hz stability asks for more frames than the ring has: once around is enough.
    for (int i = 1; i <= 1023; ++i) {
        m_tracker.Update(NearA2(300.0F), 1.0F, 44100, 0.5F);
        EXPECT_TRUE(m_tracker.IsHolding());
    }
    m_tracker.Update(NearA2(300.0F), 1.0F, 44100, 0.5F);
    EXPECT_FALSE(m_tracker.IsHolding());
}

}  // namespace
