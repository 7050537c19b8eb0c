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
    std::jthread other([&] {
        for (int i = 0; i < nRounds; ++i) {
            EXPECT_TRUE(ping.Wait(10000));
            ++nValue;
            pong.SetEvent();
        }
    });
    for (int i = 0; i < nRounds; ++i) {
        ping.SetEvent();
        ASSERT_TRUE(pong.Wait(10000));
        ASSERT_EQ(nValue, i + 1);
    }
}

int NiceOfThisThread() {
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

TEST(WinThread, IsSuspendedUntilResumedAndGivesItsExitCode) {
    std::atomic<bool> bRan = false;
    const auto fnRun = [&bRan] {
        bRan = true;
        return -3;
    };
    const auto pThread = CWinThread::Create(fnRun, THREAD_PRIORITY_NORMAL);
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

TEST(WinThread, BelowNormalLowersThatThreadAlone) {
    const int nBefore = NiceOfThisThread();
    for (const auto& [nPriority, nNice] : {std::pair{THREAD_PRIORITY_NORMAL, nBefore},
                                           {THREAD_PRIORITY_BELOW_NORMAL, std::min(nBefore + 5, 19)}}) {
        const auto pThread = CWinThread::Create(NiceOfThisThread, nPriority);
        ASSERT_TRUE(pThread && pThread->ResumeThread() && pThread->WaitForEnd(10000));
        EXPECT_EQ(pThread->GetExitCode(), nNice) << nPriority;
    }
    EXPECT_EQ(NiceOfThisThread(), nBefore);
}

TEST(WinThread, DroppedWhileSuspendedItNeverRuns) {
    const auto pRuns = std::make_shared<std::atomic<int>>(0);
    CWinThread::Create([pRuns] { return ++*pRuns; }, THREAD_PRIORITY_NORMAL).reset();
    EXPECT_EQ(*pRuns, 0);
    EXPECT_EQ(pRuns.use_count(), 1);
}

}  // namespace
