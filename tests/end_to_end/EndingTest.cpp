#include "end_to_end/DesktopTest.h"
#include "platform/base/FileDescriptor.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

// However the real program comes to its end: in order, with the settings saved, or at least with the old ones
// untouched.

using namespace std::chrono_literals;

namespace fs = std::filesystem;

namespace {

constexpr const char* NOT_SAVED = ": Unable to save state.txt\n";
const std::string g_strHead =
    "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n44000\t10485760\t16711680\t32768\t16711680\t0\t0\t";

// Settings with this row selected; the hop is what the capture has come to.
std::string Settings(int nRow, int nTunings, const std::string& strHop) {
    std::string strText =
        g_strHead + std::to_string(nRow) + '\t' + strHop + '\t' + std::to_string(nTunings) + '\n';
    for (int i = 0; i < nTunings; ++i) {
        strText += "One of many " + std::to_string(i) + "\t0\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n";
    }
    return strText;
}

class Ending : public CDesktopTest {
protected:
    void ClickRow(int nRow) { Click(80, 175 + 12 * nRow); }
    void ExpectOrderlyEnd(int nSignal) {
        m_stage.GetProgram().Signal(nSignal);
        EXPECT_EQ(m_stage.GetProgram().WaitForEnd(10s), 0);
        EXPECT_EQ(m_stage.ReadFile("program.log"), "");
    }
    // As one whom the modes of files concern, also where the tests run as root: the rights are given up by
    // the thread that starts it.
    bool StartWithoutPrivileges() {
        bool bStarted = false;
        std::thread([&] {
            __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
            const std::array<__user_cap_data_struct, 2> none{};
            bStarted = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                       syscall(SYS_capset, &header, none.data()) == 0 && m_stage.StartProgram(&m_sound);
        }).join();
        return bStarted;
    }
    // Files whose names end so.
    std::set<std::string> Names(const std::string& strEnd) const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_stage.GetDirectory())) {
            if (entry.path().filename().string().ends_with(strEnd)) {
                names.insert(entry.path().filename().string());
            }
        }
        return names;
    }
    void WriteState(const std::string& strText) {
        std::ofstream(m_stage.GetDirectory() / "state.txt") << strText;
    }
};

TEST_F(Ending, ASignalClosesInOrderAndSavesWhateverIsOpen) {
    struct Case {
        const char* szWhat;
        int nSignal;
        int x;  // where the user clicks; nowhere at 0
        int y;
        int nButton;
        const char* szTitle;  // of what that opens; a menu has none
    };
    const std::vector<Case> cases{{"nothing", SIGHUP, 0, 0, 1, TUNER},
                                  {"nothing", SIGTERM, 0, 0, 1, TUNER},
                                  {"the A frequency", SIGTERM, 149, 120, 1, A_DIALOG},
                                  {"the options", SIGHUP, 287, 379, 1, OPTIONS},
                                  {"a colour of the options", SIGTERM, 287, 379, 1, OPTIONS},
                                  {"a colour of the options", SIGHUP, 287, 379, 1, OPTIONS},
                                  {"a tuning's name", SIGHUP, 132, 154, 1, "^新增调弦规则$"},
                                  {"the menu of notes", SIGTERM, 45, 70, 3, nullptr}};
    int nRow = 0;
    for (const Case& ending : cases) {
        SCOPED_TRACE(testing::Message() << ending.szWhat << ", signal " << ending.nSignal);
        if (nRow++ > 0) {
            ASSERT_NO_FATAL_FAILURE(StartAgain());
        }
        ASSERT_NO_FATAL_FAILURE(ClickRow(nRow));
        std::this_thread::sleep_for(200ms);
        const auto before = m_stage.Grab();
        if (ending.x > 0) {
            ASSERT_NO_FATAL_FAILURE(Click(ending.x, ending.y, ending.nButton));
        }
        if (ending.szTitle != nullptr) {
            const auto opened = m_hand->FindWindow(ending.szTitle);
            ASSERT_TRUE(opened);
            if (std::string(ending.szWhat).starts_with("a colour")) {
                ASSERT_TRUE(m_hand->Click(opened->x + 44, opened->y + 68));
                ASSERT_TRUE(m_hand->FindWindow("olor|颜色"));
            }
        } else {
            ASSERT_TRUE(
                m_stage.WaitForPicture([&](const Picture& now) { return now.pixels != before->pixels; }, 5s));
        }
        ExpectOrderlyEnd(ending.nSignal);
        EXPECT_THAT(m_stage.ReadFile("state.txt"), testing::MatchesRegex(Settings(nRow, 0, "[0-9]+")));
    }
    // The message of a start without a sound server stands before there is a window.
    const std::string strSaved = m_stage.ReadFile("state.txt");
    ASSERT_TRUE(m_stage.StartProgram(nullptr));
    ASSERT_TRUE(m_hand->FindWindow("^Error: No sound card found$"));
    ExpectOrderlyEnd(SIGTERM);
    EXPECT_EQ(m_stage.ReadFile("state.txt"), strSaved);
}

TEST_F(Ending, WhatCannotBeSavedCostsNothingAndIsLogged) {
    ExpectOrderlyEnd(SIGTERM);
    // More than fits; the log does.
    const std::string strOld = Settings(0, 200, "128");
    constexpr rlim_t ROOM = 4096;
    ASSERT_GT(strOld.size(), ROOM);
    // Handed down to the program: a file that grows too long meets an error, as on a full disk, and no
    // signal.
    ASSERT_NE(std::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    struct Case {
        const char* szWhat;
        rlim_t nRoom;  // for each file
        mode_t mode;   // of the directory
        int nLogged;
    };
    for (const Case& fault : {Case{"no room for the settings", ROOM, 0755, 1},
                              {"no room at all", 0, 0755, 0},
                              {"a directory that nobody may write to", RLIM_INFINITY, 0555, 1}}) {
        SCOPED_TRACE(fault.szWhat);
        WriteState(strOld);
        std::ofstream(m_stage.GetDirectory() / "errorlog.txt") << "";
        ASSERT_TRUE(StartWithoutPrivileges());
        ASSERT_NO_FATAL_FAILURE(FindTuner());
        ASSERT_NO_FATAL_FAILURE(ClickRow(3));
        const rlimit limit{fault.nRoom, fault.nRoom};
        ASSERT_EQ(prlimit(m_stage.GetProgram().GetPid(), RLIMIT_FSIZE, &limit, nullptr), 0);
        ASSERT_EQ(chmod(m_stage.GetDirectory().c_str(), fault.mode), 0);
        ExpectOrderlyEnd(SIGTERM);
        ASSERT_EQ(chmod(m_stage.GetDirectory().c_str(), 0755), 0);
        EXPECT_EQ(m_stage.ReadFile("state.txt"), strOld);
        EXPECT_THAT(Names(".new"), testing::IsEmpty());
        const std::string strLog = m_stage.ReadFile("errorlog.txt");
        EXPECT_EQ(strLog.ends_with(NOT_SAVED) ? 1 : 0, fault.nLogged) << strLog;
        EXPECT_EQ(strLog.find('\n') + 1, strLog.size()) << strLog;
    }
    ASSERT_NE(std::signal(SIGXFSZ, SIG_DFL), SIG_ERR);
    // The same settings are saved where nothing stands in the way.
    ASSERT_NO_FATAL_FAILURE(StartAgain());
    ASSERT_NO_FATAL_FAILURE(ClickRow(3));
    ExpectOrderlyEnd(SIGTERM);
    EXPECT_EQ(m_stage.ReadFile("state.txt").substr(0, g_strHead.size() + 2), g_strHead + "3\t");
}

// Killed at any moment of closing, half of the times while the new file is being written. Whatever that
// leaves behind, the next start clears away, and touches nothing else.
TEST_F(Ending, KilledAtAnyMomentItLeavesAWholeFileAndTheNextStartTidiesUp) {
    constexpr int TUNINGS = 500;
    constexpr int ROUNDS = 30;
    constexpr int MOST_ROUNDS = 120;
    const auto closing = std::chrono::steady_clock::now();
    ExpectOrderlyEnd(SIGTERM);
    const auto nClosing =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - closing)
            .count();
    WriteState(Settings(1, TUNINGS, "128"));
    // One that somebody is still writing, and names that aren't ours.
    const CFileDescriptor held(
        open((m_stage.GetDirectory() / "state.txt.1-0.new").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_EQ(flock(held.Get(), LOCK_EX), 0);
    const std::set<std::string> others{"state.txt.1-0.new", "state.txt.new", "state.txt.1-.new",
                                       "estate.txt.1-1.new"};
    for (const std::string& strName : others) {
        std::ofstream(m_stage.GetDirectory() / strName, std::ios::app) << "";
    }
    const CFileDescriptor events(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    ASSERT_GE(inotify_add_watch(events.Get(), m_stage.GetDirectory().c_str(), IN_CREATE), 0);
    std::mt19937 random(11);
    int nOld = 0;
    int nNew = 0;
    int nLeft = 0;
    for (int i = 0; i < ROUNDS || (nOld * nNew * nLeft == 0 && i < MOST_ROUNDS); ++i) {
        SCOPED_TRACE(i);
        const std::string strOld = m_stage.ReadFile("state.txt");
        ASSERT_NO_FATAL_FAILURE(StartAgain());
        ASSERT_EQ(Names(".new"), others);
        const int nRow = strOld.starts_with(g_strHead + "1\t") ? 2 : 1;
        ASSERT_NO_FATAL_FAILURE(ClickRow(nRow));
        std::this_thread::sleep_for(50ms);
        std::array<char, 4096> told{};
        while (read(events.Get(), told.data(), told.size()) > 0) {
        }
        m_stage.GetProgram().Signal(SIGTERM);
        auto nDelay = std::uniform_int_distribution<long>(0, nClosing)(random);
        if (i % 2 == 1) {
            pollfd created{events.Get(), POLLIN, 0};
            ASSERT_EQ(poll(&created, 1, 10000), 1);
            nDelay = std::uniform_int_distribution<long>(0, 3000)(random);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(nDelay));
        m_stage.GetProgram().Signal(SIGKILL);
        ASSERT_TRUE(m_stage.GetProgram().WaitForEnd(10s));
        const std::string strState = m_stage.ReadFile("state.txt");
        if (strState == strOld) {
            ++nOld;
        } else {
            ++nNew;
            const std::size_t nHop = g_strHead.size() + 2;
            const std::string strHop = strState.substr(nHop, strState.find('\t', nHop) - nHop);
            ASSERT_EQ(strState, Settings(nRow, TUNINGS, strHop));
        }
        nLeft += Names(".new") != others ? 1 : 0;
    }
    EXPECT_GT(nOld, 0) << "no kill came before the new file was in place";
    EXPECT_GT(nNew, 0) << "no kill came behind it";
    EXPECT_GT(nLeft, 0) << "no kill met a save";
    RecordProperty("old", nOld);
    RecordProperty("new", nNew);
    RecordProperty("left", nLeft);
}

}  // namespace
