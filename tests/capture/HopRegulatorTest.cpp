#include "capture/HopRegulator.h"

#include <gtest/gtest.h>

namespace {

// The expected values are worked out with decimal arithmetic, to more digits than a float holds.

// Forty idle turns in a row shrink by half a percent each; from the next one on, by a tenth more.
TEST(HopRegulator, ALongIdleRunShrinksFaster) {
    CHopRegulator regulator(1000.0F);
    const auto idle = [&](int nTurns) {
        for (int i = 0; i < nTurns; ++i) {
            regulator.OnIdle();
        }
        return regulator.GetHop();
    };
    EXPECT_NEAR(idle(40), 818.3201F, 0.001F);  // 1000 x 0.995^40
    EXPECT_NEAR(idle(1), 732.8057F, 0.001F);   // x 0.9 x 0.995
    EXPECT_NEAR(idle(1), 656.2275F, 0.001F);
    // A busy turn ends the run: the first idle turn after it only notes that there was sound.
    regulator.OnBusy();
    EXPECT_NEAR(regulator.GetHop(), 659.5086F, 0.001F);  // x 1.005
    EXPECT_NEAR(idle(41), 536.9907F, 0.002F);            // x 0.995^41: one turn too few for the faster pace
    EXPECT_NEAR(idle(1), 480.8752F, 0.002F);             // x 0.9 x 0.995
}

TEST(HopRegulator, StaysAtOneAndGrowsAgainWithoutALimit) {
    CHopRegulator regulator(1.0F);
    for (int i = 0; i < 100; ++i) {
        regulator.OnIdle();
        ASSERT_EQ(regulator.GetHop(), 1.0F);
    }
    for (int i = 0; i < 2000; ++i) {
        regulator.OnBusy();
    }
    EXPECT_NEAR(regulator.GetHop() / 21484.4F, 1.0F, 0.001F);  // 1.005^2000
}

}  // namespace
