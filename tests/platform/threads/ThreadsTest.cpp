#include "platform/threads/Event.h"
#include "platform/threads/WinThread.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
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

int NiceOfThisThread() {
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

TEST(WinThread, IsSuspendedUntilResumedAndGivesItsExitCode) {
    std::atomic<bool> bRan = false;
    const auto pThread = CWinThread::Create(
        [&] {
            bRan = true;
            return -3;
        },
        THREAD_PRIORITY_NORMAL);
    ASSERT_TRUE(pThread);
    EXPECT_FALSE(pThread->WaitForEnd(30));
    EXPECT_FALSE(bRan);
    EXPECT_EQ(pThread->GetExitCode(), std::nullopt);
    EXPECT_TRUE(pThread->ResumeThread());
    EXPECT_FALSE(pThread->ResumeThread());
    ASSERT_TRUE(pThread->WaitForEnd(10000));
    EXPECT_TRUE(bRan);
    EXPECT_EQ(pThread->GetExitCode(), -3);
}

// The nice value that a thread of that priority finds.
int NiceOfThread(int nPriority) {
    std::atomic<int> nNice = -100;
    const auto pThread = CWinThread::Create(
        [&nNice] {
            nNice = NiceOfThisThread();
            return 0;
        },
        nPriority);
    EXPECT_TRUE(pThread && pThread->ResumeThread() && pThread->WaitForEnd(10000));
    return nNice;
}

TEST(WinThread, BelowNormalLowersThatThreadAlone) {
    const int nBefore = NiceOfThisThread();
    EXPECT_EQ(NiceOfThread(THREAD_PRIORITY_NORMAL), nBefore);
    EXPECT_EQ(NiceOfThread(THREAD_PRIORITY_BELOW_NORMAL), std::min(nBefore + 5, 19));
    EXPECT_EQ(NiceOfThisThread(), nBefore);
}

TEST(WinThread, DroppedWhileSuspendedItNeverRuns) {
    const auto pHeld = std::make_shared<std::atomic<bool>>(false);
    CWinThread::Create(
        [pHeld] {
            *pHeld = true;
            return 0;
        },
        THREAD_PRIORITY_NORMAL)
        .reset();
    EXPECT_FALSE(*pHeld);
    EXPECT_EQ(pHeld.use_count(), 1);
}

}  // namespace
