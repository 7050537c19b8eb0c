#include "real_time/QuietThread.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <mutex>
#include <new>

namespace {

std::mutex g_lock;

}  // namespace

// With a name that the watcher can find.
void TakeTheLock() {
    const std::lock_guard lock(g_lock);
}

namespace {

TEST(QuietThread, NotesWhatAQuietThreadMustNotDo) {
    quiet::Reset();
    quiet::BeginWatching();
    ::operator delete(::operator new(16));
    TakeTheLock();
    const int nFile = open("/dev/null", O_WRONLY);
    const bool bWritten = write(nFile, "", 1) == 1;
    quiet::EndWatching();
    close(nFile);
    ::operator delete(::operator new(16));
    EXPECT_TRUE(bWritten);
    const std::string strNoted = quiet::Describe();
    EXPECT_THAT(strNoted,
                testing::MatchesRegex("malloc by .*\nfree by .*\nlock by TakeTheLock.*\nopen by .*\n"
                                      "write by .*\n"));
    static constexpr std::array allowed{"TakeTheLock"};
    EXPECT_THAT(quiet::Describe(allowed), testing::Not(testing::HasSubstr("lock")));
    quiet::Reset();
    EXPECT_EQ(quiet::Describe(), "");
}

}  // namespace
