#include "support/ScratchDirectory.h"
#include "window/ErrorLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <regex>

namespace {

using testing::EndsWith;
using testing::IsEmpty;

TEST(ErrorLog, AppendsDatedLines) {
    const CScratchDirectory directory;
    directory.Write("log.txt", "what stood there\n");
    CErrorLog log;
    log.SetFile(directory.Path("log.txt"));
    log.Log("Unable to open state.txt, using defaults.");
    log.Log("Second");

    const std::regex form(
        "what stood there\n"
        "([A-Z][a-z]+day), [A-Z][a-z]+, [0-3][0-9], 20[0-9]{2} [01][0-9]:[0-5][0-9] [AP]M: "
        "Unable to open state\\.txt, using defaults\\.\n"
        "[A-Z][a-z]+day, [A-Z][a-z]+, [0-3][0-9], 20[0-9]{2} [01][0-9]:[0-5][0-9] [AP]M: Second\n");
    std::smatch match;
    const CString strLog = directory.Read("log.txt");
    ASSERT_TRUE(std::regex_match(strLog, match, form)) << strLog;

    constexpr std::array DAYS = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    if (local.tm_hour != 0 || local.tm_min > 0) {  // not in the minute in which the day changes
        EXPECT_EQ(match[1], DAYS.at(static_cast<std::size_t>(local.tm_wday)));
    }
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
