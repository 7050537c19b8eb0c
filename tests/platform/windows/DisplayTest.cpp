#include "platform/windows/WindowsSession.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// The toolkit itself would abort, with a core file and no word that a user understands.
TEST(Display, WithoutOneTheProgramSaysSoAndEnds) {
    const auto start = [](const char* szPlatform) {
        setenv("QT_QPA_PLATFORM", szPlatform, 1);
        setenv("DISPLAY", ":54321", 1);
        const CWindowsSession session;
        std::_Exit(0);
    };
    EXPECT_EXIT(start("xcb"), ::testing::ExitedWithCode(1), "The display cannot be opened: .*:54321");
    EXPECT_EXIT(start("nosuchplatform"), ::testing::ExitedWithCode(1), "The display cannot be opened");
    EXPECT_EXIT(start("offscreen"), ::testing::ExitedWithCode(0), "");
}

}  // namespace
