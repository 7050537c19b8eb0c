#include "platform/multimedia/TimeGetTime.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(TimeGetTime, CountsMillisecondsFromTwoMinutesBeforeTheStart) {
    const DWORD dwFirst = timeGetTime();
    EXPECT_GE(dwFirst, 120000U);
    EXPECT_LT(dwFirst, 150000U);
    const auto before = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
    const DWORD dwElapsed = timeGetTime() - dwFirst;
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - before;
    EXPECT_GE(dwElapsed, 39U);
    EXPECT_LE(dwElapsed, static_cast<DWORD>(elapsed.count()) + 5000U);
    // A float tells neighbouring milliseconds apart.
    EXPECT_NE(static_cast<float>(dwFirst), static_cast<float>(dwFirst + 1));
}

}  // namespace
