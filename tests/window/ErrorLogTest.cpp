#include "support/ScratchDirectory.h"
#include "window/ErrorLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

namespace {

using testing::MatchesRegex;

// At each hour of a day, which the zone moves the clock to: a local date, in English and by the half of the
// day.
TEST(ErrorLog, AppendsLinesWithTheLocalDate) {
    const CScratchDirectory directory;
    for (int nZone = -11; nZone <= 12; ++nZone) {
        ::setenv("TZ", ("XXX" + std::to_string(nZone)).c_str(), 1);
        ::tzset();
        directory.Write("log.txt", "what stood there\n");
        CErrorLog log(directory.Path("no/such/log.txt"));
        log.Log("lost");
        log.SetFile(directory.Path("log.txt"));
        log.Log("x");
        const CString strText = directory.Read("log.txt");
        EXPECT_THAT(strText, MatchesRegex("what stood there\n[A-Z][a-z]+day, [A-Z][a-z]+, [0-3][0-9], "
                                          "20[0-9][0-9] (0[1-9]|1[0-2]):[0-5][0-9] [AP]M: x\n"));
        std::tm date{};
        ASSERT_NE(::strptime(strText.c_str(), "what stood there %A, %B, %d, %Y %I:%M %p", &date), nullptr);
        const int nWeekDay = date.tm_wday;
        EXPECT_NEAR(static_cast<double>(std::mktime(&date)), static_cast<double>(std::time(nullptr)), 60.0);
        EXPECT_EQ(nWeekDay, date.tm_wday);
    }
    ::unsetenv("TZ");
    ::tzset();
}

}  // namespace
