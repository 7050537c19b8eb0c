#include "platform/base/String.h"
#include "support/ScratchDirectory.h"
#include "window/ErrorLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ctime>

namespace {

using testing::EndsWith;

// What the log puts before a message at this time: the date in English and the hour in the half of the day,
// by the clock and calendar of the place.
CString DateOf(std::time_t now) {
    constexpr std::array DAYS = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};
    constexpr std::array MONTHS = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
    std::tm local{};
    localtime_r(&now, &local);
    return FormatText("%s, %s, %02d, %d %02d:%02d %s: ", DAYS.at(static_cast<std::size_t>(local.tm_wday)),
                      MONTHS.at(static_cast<std::size_t>(local.tm_mon)), local.tm_mday, 1900 + local.tm_year,
                      (local.tm_hour + 11) % 12 + 1, local.tm_min, local.tm_hour < 12 ? "AM" : "PM");
}

// At each hour of a day, which the zone moves the clock to.
TEST(ErrorLog, AppendsLinesWithTheLocalDate) {
    const CScratchDirectory directory;
    for (int nZone = -11; nZone <= 12; ++nZone) {
        ::setenv("TZ", ("XXX" + std::to_string(nZone)).c_str(), 1);
        ::tzset();
        CString strBefore;
        do {  // again, should a new minute begin in between
            strBefore = DateOf(std::time(nullptr));
            directory.Write("log.txt", "what stood there\n");
            CErrorLog(directory.Path("log.txt")).Log("x");
        } while (strBefore != DateOf(std::time(nullptr)));
        EXPECT_EQ(directory.Read("log.txt"), "what stood there\n" + strBefore + "x\n");
    }
    ::unsetenv("TZ");
    ::tzset();
}

TEST(ErrorLog, LosesALineThatCannotBeWritten) {
    const CScratchDirectory directory;
    CErrorLog log(directory.Path("no/such/log.txt"));
    log.Log("lost");
    EXPECT_THAT(directory.Names(), testing::IsEmpty());
    log.SetFile(directory.Path("log.txt"));
    log.Log("kept");
    EXPECT_THAT(directory.Read("log.txt"), EndsWith("M: kept\n"));
}

}  // namespace
