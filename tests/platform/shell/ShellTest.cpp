#include "platform/shell/CurrentDirectory.h"
#include "platform/shell/Registry.h"
#include "platform/shell/WinExec.h"
#include "support/ScratchDirectory.h"
#include "support/StandInViewer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

constexpr const char* VIEWER_KEY = R"(htmlfile\shell\open\command)";

class ShellTest : public testing::Test {
protected:
    CViewerInPath m_viewer;
};

TEST_F(ShellTest, GivesAllBehindTheFirstBlankAsOneArgument) {
    m_viewer.Install();
    const std::pair<const char*, const char*> cases[] = {
        {"/home/a  b/吉他 $HOME;`x`'\"/fvnhelp.htm", "[/home/a  b/吉他 $HOME;`x`'\"/fvnhelp.htm]"},
        {R"(https:\\host.example\products\a b.html)", "[https://host.example/products/a b.html]"},
        {"/odd\\name: x\\y", "[/odd\\name: x\\y]"}};
    for (const auto& [szArgument, szTold] : cases) {
        EXPECT_TRUE(WinExec(CString("xdg-open ") + szArgument));
        const auto told = m_viewer.Told();
        ASSERT_GT(told.size(), 2U) << szArgument;
        EXPECT_EQ(told[0], "1");
        EXPECT_EQ(told[1], szTold);
    }
    EXPECT_TRUE(WinExec("xdg-open"));
    EXPECT_EQ(m_viewer.Told().at(0), "0");
}

TEST_F(ShellTest, LeavesWhatItStartsToItself) {
    m_viewer.Install();
    // Its files, then the signals that are blocked and ignored. It reads these itself: what a shell starts
    // has them changed.
    std::ofstream(m_viewer.Directory() + "/xdg-open")
        << "#!/bin/sh\nexport PATH=/usr/bin:/bin\ncd '" << m_viewer.Directory()
        << "'\n{ echo \"\" $(ls /proc/$$/fd) \"\"; while read -r l; do\n"
           "case $l in Sig[BI][lg]*) echo \"$l\";; esac\ndone < /proc/$$/status; } > new; mv new told\n";
    const int nOurs = ::open("/dev/zero", O_RDONLY);
    ASSERT_GE(::dup2(nOurs, 77), 0);
    ASSERT_NE(::signal(SIGPIPE, SIG_IGN), SIG_ERR);
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    EXPECT_TRUE(WinExec("xdg-open page"));
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(::signal(SIGPIPE, SIG_DFL), SIG_IGN);
    ::close(nOurs);
    ::close(77);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "nobody is left to wait for";

    const auto told = m_viewer.Told();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0].find(" 77 "), CString::npos) << told[0];
    for (const std::size_t i : {1U, 2U}) {
        EXPECT_EQ(std::stoull(told[i].substr(told[i].find(':') + 1), nullptr, 16), 0U) << told[i];
    }
    m_viewer.Install();
    EXPECT_TRUE(WinExec("xdg-open page"));
    EXPECT_EQ(m_viewer.Told().at(2), "/dev/null");
}

TEST_F(ShellTest, IsSilentWithoutAViewer) {
    EXPECT_FALSE(RegQueryClassValue(VIEWER_KEY).has_value());
    EXPECT_FALSE(WinExec("xdg-open page"));
    EXPECT_FALSE(WinExec(""));
    m_viewer.Install(fs::perms::owner_read);
    EXPECT_FALSE(RegQueryClassValue(VIEWER_KEY).has_value());
    EXPECT_FALSE(WinExec("xdg-open page"));
    m_viewer.Install();
    EXPECT_EQ(RegQueryClassValue(VIEWER_KEY), "xdg-open");
}

TEST_F(ShellTest, KnowsTheCurrentDirectoryUpToItsLongestName) {
    const fs::path before = fs::current_path();
    const CScratchDirectory directory;
    const fs::path base = fs::canonical(directory.Path());
    for (const std::size_t nCharacters : {CURRENT_DIRECTORY_ROOM, CURRENT_DIRECTORY_ROOM + 1}) {
        // Characters of three bytes each, in names as long as a file system takes.
        CString strName = base.string() + "/";
        for (std::size_t n = strName.size(); n < nCharacters; ++n) {
            strName += n % 60 == 0 && n + 1 < nCharacters && strName.back() != '/' ? "/" : "弦";
        }
        fs::create_directories(strName);
        fs::current_path(strName);
        EXPECT_EQ(GetCurrentDirectory(), nCharacters == CURRENT_DIRECTORY_ROOM ? strName : CString());
        fs::current_path(before);
    }
}

}  // namespace
