#include "real_time/QuietThread.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <mutex>
#include <new>

// With a name that the watcher can find.
void TakeTheLock() {
    static std::mutex lock;
    const std::lock_guard guard(lock);
}

namespace {

TEST(QuietThread, NotesWhatAQuietThreadMustNotDo) {
    quiet::BeginWatching();
    ::operator delete(::operator new(16));
    TakeTheLock();
    const int nFile = open("/dev/null", O_WRONLY);
    const bool bWritten = write(nFile, "", 1) == 1;
    std::printf("%d byte\n", static_cast<int>(bWritten));
    quiet::EndWatching();
    close(nFile);
    ::operator delete(::operator new(16));
    EXPECT_TRUE(bWritten);
    EXPECT_THAT(quiet::Describe(),
                testing::MatchesRegex("malloc by .*\nfree by .*\npthread_mutex_lock by TakeTheLock.*\n"
                                      "open by .*\nwrite by .*\nvfprintf by .*\n"));
    static constexpr std::array allowed{"TakeTheLock"};
    EXPECT_THAT(quiet::Describe(allowed), testing::Not(testing::HasSubstr("lock")));
}

}  // namespace
