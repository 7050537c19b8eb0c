#include "platform/base/String.h"
#include "support/ScratchDirectory.h"
#include "window/ErrorLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ctime>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(ErrorLog, AppendsDatedLines) {
    const CScratchDirectory directory;
    directory.Write("log.txt", "what stood there\n");
    CErrorLog log;
    log.SetFile(directory.Path("log.txt"));
    log.Log("Unable to open state.txt, using defaults.");
    log.Log("Second");

    EXPECT_THAT(
        directory.Read("log.txt"),
        MatchesRegex("what stood there\n"
                     "[A-Z][a-z]+day, [A-Z][a-z]+, [0-3][0-9], 20[0-9][0-9] [01][0-9]:[0-5][0-9] [AP]M: "
                     "Unable to open state\\.txt, using defaults\\.\n"
                     "[A-Z][a-z]+day, [A-Z][a-z]+, [0-3][0-9], 20[0-9][0-9] [01][0-9]:[0-5][0-9] [AP]M: "
                     "Second\n"));
}

// The date in English and the hour in the half of the day, by the clock and calendar of the place.
TEST(ErrorLog, TellsTheLocalTime) {
    constexpr std::array DAYS = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};
    const CScratchDirectory directory;
    std::tm before{};
    std::tm after{};
    CString strLog;
    do {  // again, should a new hour begin in between
        std::time_t now = std::time(nullptr);
        localtime_r(&now, &before);
        directory.Write("log.txt", "");
        CErrorLog(directory.Path("log.txt")).Log("x");
        strLog = directory.Read("log.txt");
        now = std::time(nullptr);
        localtime_r(&now, &after);
    } while (before.tm_hour != after.tm_hour);
    EXPECT_THAT(strLog, StartsWith(DAYS.at(static_cast<std::size_t>(after.tm_wday))));
    EXPECT_THAT(strLog, EndsWith(after.tm_hour < 12 ? " AM: x\n" : " PM: x\n"));
    const int nHour = after.tm_hour % 12 == 0 ? 12 : after.tm_hour % 12;
    EXPECT_THAT(strLog, HasSubstr(FormatText(" %d %02d:", after.tm_year + 1900, nHour)));
}

TEST(ErrorLog, LosesALineThatCannotBeWritten) {
    const CScratchDirectory directory;
    CErrorLog log(directory.Path("no/such/log.txt"));
    log.Log("lost");
    EXPECT_THAT(directory.Names(), IsEmpty());
    log.SetFile(directory.Path("log.txt"));
    log.Log("kept");
    EXPECT_THAT(directory.Read("log.txt"), EndsWith("M: kept\n"));
}

}  // namespace
