#include "platform/multimedia/MultimediaTimer.h"
#include "platform/multimedia/TimeGetTime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace std::chrono_literals;

namespace {

struct Ticks {
    std::atomic<int> nBegun = 0;
    std::atomic<int> nEnded = 0;
    std::atomic<bool> bKillInside = false;
};

void SlowTick(UINT uTimerId, UINT /*uMessage*/, std::uintptr_t dwUser, std::uintptr_t /*dw1*/,
              std::uintptr_t /*dw2*/) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a callback carries its object as a number
    auto& ticks = *reinterpret_cast<Ticks*>(dwUser);
    ++ticks.nBegun;
    std::this_thread::sleep_for(20ms);
    if (ticks.bKillInside) {
        timeKillEvent(uTimerId);
    }
    ++ticks.nEnded;
}

bool WaitFor(const std::atomic<int>& nCount, int nWanted) {
    for (int i = 0; i < 5000 && nCount < nWanted; ++i) {
        std::this_thread::sleep_for(1ms);
    }
    return nCount >= nWanted;
}

UINT StartTimer(Ticks& ticks) {
    return timeSetEvent(1, 0, SlowTick, reinterpret_cast<std::uintptr_t>(&ticks), TIME_PERIODIC);
}

TEST(MultimediaTimer, KillReturnsWhenNoTickRunsAndNoneComesAfter) {
    for (int i = 0; i < 10; ++i) {
        Ticks ticks;
        const UINT uTimer = StartTimer(ticks);
        ASSERT_NE(uTimer, 0U);
        ASSERT_TRUE(WaitFor(ticks.nBegun, 2));
        EXPECT_EQ(timeKillEvent(uTimer), TIMERR_NOERROR);
        EXPECT_EQ(ticks.nBegun, ticks.nEnded);
        const int nEnded = ticks.nEnded;
        std::this_thread::sleep_for(5ms);
        EXPECT_EQ(ticks.nBegun, nEnded);
        EXPECT_NE(timeKillEvent(uTimer), TIMERR_NOERROR);
    }
}

TEST(MultimediaTimer, ATickMayEndItsOwnTimer) {
    static Ticks ticks;  // the tick goes on after the kill
    ticks.bKillInside = true;
    ASSERT_NE(StartTimer(ticks), 0U);
    ASSERT_TRUE(WaitFor(ticks.nEnded, 1));
    std::this_thread::sleep_for(30ms);
    EXPECT_EQ(ticks.nBegun, 1);
}

TEST(MultimediaTimer, RefusesWhatItCannotDo) {
    TIMECAPS caps;
    ASSERT_EQ(timeGetDevCaps(caps), TIMERR_NOERROR);
    EXPECT_EQ(timeBeginPeriod(caps.wPeriodMin), TIMERR_NOERROR);
    EXPECT_EQ(timeBeginPeriod(caps.wPeriodMax + 1), TIMERR_NOCANDO);
    EXPECT_EQ(timeSetEvent(0, 0, SlowTick, 0, TIME_PERIODIC), 0U);
    EXPECT_EQ(timeSetEvent(5, 0, nullptr, 0, TIME_PERIODIC), 0U);
}

TEST(TimeGetTime, CountsMillisecondsFromTwoMinutesBeforeTheStart) {
    const DWORD dwFirst = timeGetTime();
    EXPECT_TRUE(dwFirst >= 120000 && dwFirst < 150000) << dwFirst;
    std::this_thread::sleep_for(40ms);
    EXPECT_TRUE(timeGetTime() >= dwFirst + 39 && timeGetTime() < dwFirst + 5000);
}

}  // namespace
