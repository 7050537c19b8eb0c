#include "capture/HopRegulator.h"

#include <gtest/gtest.h>

namespace {

// The expected values are worked out with decimal arithmetic, to more digits than a float holds.

TEST(HopRegulator, OneStepEachWay) {
    CHopRegulator regulator(128.0F);
    regulator.OnIdle();
    EXPECT_FLOAT_EQ(regulator.GetHop(), 127.36F);
    regulator.OnBusy();
    EXPECT_FLOAT_EQ(regulator.GetHop(), 127.9968F);
}

// Forty idle turns in a row shrink by half a percent each; from the next one on, by a tenth more.
TEST(HopRegulator, ALongIdleRunShrinksFaster) {
    CHopRegulator regulator(1000.0F);
    for (int i = 0; i < 40; ++i) {
        regulator.OnIdle();
    }
    EXPECT_NEAR(regulator.GetHop(), 818.3201F, 0.001F);  // 1000 x 0.995^40
    regulator.OnIdle();
    EXPECT_NEAR(regulator.GetHop(), 732.8057F, 0.001F);  // x 0.9 x 0.995
    regulator.OnIdle();
    EXPECT_NEAR(regulator.GetHop(), 656.2275F, 0.001F);
    // A busy turn ends the run: the first idle turn after it only notes that there was sound.
    regulator.OnBusy();
    EXPECT_NEAR(regulator.GetHop(), 659.5086F, 0.001F);  // x 1.005
    for (int i = 0; i < 41; ++i) {
        regulator.OnIdle();
    }
    EXPECT_NEAR(regulator.GetHop(), 536.9907F, 0.002F);  // x 0.995^41: one turn too few for the faster pace
    regulator.OnIdle();
    EXPECT_NEAR(regulator.GetHop(), 480.8752F, 0.002F);  // x 0.9 x 0.995
}

TEST(HopRegulator, AtOneItStaysAtOneAndGrowsAgain) {
    CHopRegulator regulator(1.0F);
    for (int i = 0; i < 100; ++i) {
        regulator.OnIdle();
        ASSERT_EQ(regulator.GetHop(), 1.0F);
    }
    regulator.OnBusy();
    EXPECT_FLOAT_EQ(regulator.GetHop(), 1.005F);
}

TEST(HopRegulator, HasNoUpperLimit) {
    CHopRegulator regulator(128.0F);
    for (int i = 0; i < 2000; ++i) {
        regulator.OnBusy();
    }
    EXPECT_NEAR(regulator.GetHop() / 2750005.0F, 1.0F, 0.001F);  // 128 x 1.005^2000
}

}  // namespace
