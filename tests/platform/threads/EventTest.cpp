#include "platform/threads/Event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

TEST(Event, OneSetLetsOneWaitThrough) {
    CEvent event;
    EXPECT_FALSE(event.Wait(0));
    event.SetEvent();
    event.SetEvent();
    EXPECT_TRUE(event.Wait(0));
    EXPECT_FALSE(event.Wait(0));
    event.SetEvent();
    event.ResetEvent();
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, WakesTheThreadThatWaits) {
    CEvent event;
    std::atomic<bool> bWoken = false;
    std::thread waiter([&] { bWoken = event.Wait(10000); });
    event.SetEvent();
    waiter.join();
    EXPECT_TRUE(bWoken);
}

// Two threads hand a value to and fro: a lost or a doubled wake-up breaks the count or runs into the
// time-out.
TEST(Event, NoWakeUpIsLostOrDoubled) {
    constexpr int nRounds = 2000;
    CEvent ping;
    CEvent pong;
    int nValue = 0;
    bool bAllWoken = true;
    std::thread other([&] {
        for (int i = 0; i < nRounds; ++i) {
            bAllWoken = ping.Wait(10000) && bAllWoken;
            ++nValue;
            pong.SetEvent();
        }
    });
    for (int i = 0; i < nRounds; ++i) {
        ASSERT_EQ(nValue, i);
        ping.SetEvent();
        ASSERT_TRUE(pong.Wait(10000));
    }
    other.join();
    EXPECT_TRUE(bAllWoken);
    EXPECT_EQ(nValue, nRounds);
}

}  // namespace
