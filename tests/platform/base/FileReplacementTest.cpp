#include "platform/base/FileReplacement.h"
#include "platform/base/String.h"
#include "support/ScratchDirectory.h"
#include "support/Subprocess.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

bool Replace(const CString& strPath, std::string_view strContent) {
    CFileReplacement replacement;
    return replacement.Prepare(strPath, strContent) && replacement.Commit();
}

bool ReplaceAndKeep(const CString& strPath, bool bCommit = true, std::string_view strContent = "new") {
    CFileReplacement replacement;
    return replacement.Prepare(strPath, strContent) && replacement.KeepOld(".rejected") &&
           (!bCommit || replacement.Commit());
}

mode_t ModeOf(const CString& strPath) {
    struct stat status = {};
    return ::stat(strPath.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

// In a child: from here on the system gives no file a second name, as where the file system knows none.
void RefuseLinks() {
    std::array program{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
#ifdef SYS_link
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 1, 0, SYS_link},
#endif
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_linkat},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EPERM},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog filter{program.size(), program.data()};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
        std::abort();
    }
}

TEST(FileReplacement, ChangesNothingUntilCommitAndLeavesNothingElse) {
    const CScratchDirectory directory;
    EXPECT_FALSE(CFileReplacement().Commit()) << "nothing was prepared";
    CString strBefore;
    for (const char* szContent : {"first, and longer", "second", ""}) {
        EXPECT_TRUE(CFileReplacement().Prepare(directory.Path("state.txt"), szContent));
        EXPECT_EQ(directory.Read("state.txt"), strBefore);
        EXPECT_TRUE(Replace(directory.Path("state.txt"), szContent));
        EXPECT_EQ(directory.Read("state.txt"), strBefore = szContent);
    }
    EXPECT_THAT(directory.Names(), ElementsAre("state.txt"));
}

TEST(FileReplacement, KeepsTheModeAndGivesNewFilesThatOfTheProcess) {
    const CScratchDirectory directory;
    const CString strPath = directory.Path("new");
    const mode_t before = ::umask(027);
    for (const mode_t mode : {0640U, 0600U, 0666U}) {
        EXPECT_TRUE(mode == 0640U || ::chmod(strPath.c_str(), mode) == 0);
        EXPECT_TRUE(Replace(strPath, "x"));
        EXPECT_EQ(ModeOf(strPath), mode);
    }
    ::umask(before);
}

TEST(FileReplacement, ReplacesWhatALinkLeadsToButOnlyAPlainFile) {
    const CScratchDirectory directory;
    fs::create_directory(directory.Path("elsewhere"));
    directory.Write("elsewhere/target", "old");
    ASSERT_EQ(::mkfifo(directory.Path("pipe").c_str(), 0600), 0);
    const std::pair<const char*, CString> links[] = {{"first", "second"},
                                                     {"second", "elsewhere/target"},
                                                     {"dangling", directory.Path("elsewhere/later")},
                                                     {"circle", "circle"},
                                                     {"to-pipe", "pipe"}};
    for (const auto& [szName, strTarget] : links) {
        fs::create_symlink(strTarget, directory.Path(szName));
    }
    EXPECT_TRUE(Replace(directory.Path("first"), "new"));
    EXPECT_EQ(directory.Read("elsewhere/target"), "new");
    EXPECT_TRUE(Replace(directory.Path("dangling"), "made"));
    EXPECT_EQ(directory.Read("elsewhere/later"), "made");
    for (const char* szName : {"circle", "elsewhere", "pipe", "to-pipe", "missing/state.txt"}) {
        EXPECT_FALSE(Replace(directory.Path(szName), "never")) << szName;
    }
    for (const auto& [szName, strTarget] : links) {
        EXPECT_TRUE(fs::is_symlink(directory.Path(szName))) << szName;
    }
    EXPECT_TRUE(fs::is_fifo(directory.Path("pipe")));
    EXPECT_EQ(directory.Names().size(), std::size(links) + 2);
}

TEST(FileReplacement, RespectsWhatMayNotBeWritten) {
    const CScratchDirectory directory;
    directory.Write("frozen", "old");
    ASSERT_EQ(::chmod(directory.Path("frozen").c_str(), 0444), 0);
    ASSERT_EQ(::chmod(directory.Path().c_str(), 0777), 0);
    EXPECT_EQ(RunAsNobody([&] { return Replace(directory.Path("frozen"), "new") ? 1 : 0; }), 0);
    EXPECT_EQ(RunAsNobody([&] { return Replace(directory.Path("mine"), "new") ? 0 : 1; }), 0);
    ASSERT_EQ(::chmod(directory.Path().c_str(), 0555), 0);
    EXPECT_EQ(RunAsNobody([&] { return Replace(directory.Path("mine"), "newer") ? 1 : 0; }), 0);
    ASSERT_EQ(::chmod(directory.Path().c_str(), 0755), 0);
    EXPECT_EQ(directory.Read("frozen"), "old");
    EXPECT_EQ(directory.Read("mine"), "new");
    EXPECT_THAT(directory.Names(), ElementsAre("frozen", "mine"));
}

TEST(FileReplacement, AFullDiskCostsNothing) {
    const CScratchDirectory directory;
    directory.Write("state.txt", "old");
    const int nCode = RunInChild([&] {
        constexpr std::size_t ROOM = 4096;
        FillDiskAbove(ROOM);
        const bool bFits = Replace(directory.Path("other"), CString(ROOM, 'x'));
        CFileReplacement replacement;
        const bool bPrepared = replacement.Prepare(directory.Path("state.txt"), CString(ROOM + 1, 'x'));
        return bFits && !bPrepared && !replacement.Commit() ? 0 : 1;
    });
    EXPECT_EQ(nCode, 0);
    EXPECT_EQ(directory.Read("state.txt"), "old");
    EXPECT_THAT(directory.Names(), ElementsAre("other", "state.txt"));
}

TEST(FileReplacement, AKilledWriterLeavesAWholeFile) {
    constexpr int KILLS = 40;
    constexpr std::size_t SIZE = 1000000;
    const CScratchDirectory directory;
    const CString strPath = directory.Path("state.txt");
    ASSERT_TRUE(Replace(strPath, CString(SIZE, 'a')));
    int nCaughtInTheAct = 0;
    // Enough to meet different moments of a write, and as many more as it takes to meet one at all.
    for (int i = 0; i < KILLS || (nCaughtInTheAct == 0 && i < 10 * KILLS); ++i) {
        const pid_t nChild = ::fork();
        ASSERT_GE(nChild, 0);
        if (nChild == 0) {
            for (int nRound = 0; nRound < 1000; ++nRound) {
                Replace(strPath, CString(SIZE, static_cast<char>('a' + nRound % 26)));
            }
            ::_exit(0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(1000 + 701 * (i % KILLS)));
        ::kill(nChild, SIGKILL);
        ::waitpid(nChild, nullptr, 0);
        const CString strContent = directory.Read("state.txt");
        ASSERT_EQ(strContent.size(), SIZE);
        ASSERT_EQ(strContent.find_first_not_of(strContent.front()), CString::npos);
        nCaughtInTheAct += static_cast<int>(directory.Names().size()) - 1;
        // What it left is cleared away, and what a living one prepares stays.
        CFileReplacement living;
        ASSERT_TRUE(living.Prepare(strPath, "new"));
        for (const char* szName : {"state.txt", "other"}) {
            CFileReplacement::RemoveAbandoned(directory.Path(szName));
            ASSERT_EQ(directory.Names().size(), 2U) << szName;
        }
    }
    EXPECT_GT(nCaughtInTheAct, 0) << "no kill ever met a write, so nothing was shown";
}

TEST(FileReplacement, TouchesNoFileThatHasAPreparedOnesName) {
    const CScratchDirectory directory;
    const CString strPath = directory.Path("state.txt");
    // Every third of the next names, as a process with the same number in another container might take them.
    constexpr int NAMES = 900;
    for (int i = 0; i < NAMES; i += 3) {
        std::ofstream(FormatText("%s.%d-%d.new", strPath.c_str(), static_cast<int>(::getpid()), i))
            << "other";
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(Replace(strPath, "mine"));
    }
    ASSERT_EQ(directory.Names().size(), NAMES / 3 + 1U);
    for (const CString& strName : directory.Names()) {
        EXPECT_EQ(directory.Read(strName), strName == "state.txt" ? "mine" : "other");
    }
}

TEST(KeepOld, GivesTheOldFileANameThatNobodyHas) {
    const CScratchDirectory directory;
    // Taken, if only by a link that leads nowhere.
    fs::create_symlink("nowhere", directory.Path("state.rejected.2.txt"));
    for (const char* szContent : {"one", "two", "three"}) {
        EXPECT_TRUE(ReplaceAndKeep(directory.Path("state.txt"), true, szContent));
    }
    EXPECT_EQ(directory.Read("state.rejected.txt"), "one");
    EXPECT_EQ(directory.Read("state.rejected.3.txt"), "two");
    EXPECT_EQ(directory.Read("state.txt"), "three");
    for (const char* szName : {"plain", ".hidden"}) {
        directory.Write(szName, szName);
        EXPECT_TRUE(ReplaceAndKeep(directory.Path(szName)));
        EXPECT_EQ(directory.Read(CString(szName) + ".rejected"), szName);
    }
    EXPECT_EQ(directory.Names().size(), 8U);
}

// One that ends before Commit, as by a crash, has taken nothing away; what it kept, as a second name or where
// there are none as a copy, the next keeps once or again.
TEST(KeepOld, TakesNothingAwayBeforeCommitAndCopiesWhereThereAreNoSecondNames) {
    for (const bool bCopy : {false, true}) {
        SCOPED_TRACE(bCopy);
        const CScratchDirectory directory;
        const CString strOld = CString(200000, 'o') + "ld";
        directory.Write("state.txt", strOld);
        directory.Write("state.rejected.txt", "earlier");
        ASSERT_EQ(::chmod(directory.Path("state.txt").c_str(), 0640), 0);
        for (const bool bCommit : {false, true}) {
            EXPECT_EQ(directory.Read("state.txt"), strOld);
            EXPECT_EQ(RunInChild([&] {
                          if (bCopy) {
                              RefuseLinks();
                          }
                          return ReplaceAndKeep(directory.Path("state.txt"), bCommit) ? 0 : 1;
                      }),
                      0);
            const char* szKept = bCommit && bCopy ? "state.rejected.3.txt" : "state.rejected.2.txt";
            EXPECT_EQ(directory.Read(szKept), strOld);
            EXPECT_EQ(ModeOf(directory.Path(szKept)), 0640U);
        }
        EXPECT_EQ(directory.Read("state.txt"), "new");
        EXPECT_EQ(directory.Read("state.rejected.txt"), "earlier");
        EXPECT_EQ(directory.Names().size(), bCopy ? 4U : 3U);
    }
}

// A disk that fills up on the way, and a file that cannot be read: the old file stands, and no half a copy.
TEST(KeepOld, LeavesTheFileAloneWhereItCannotBeCopied) {
    const CScratchDirectory directory;
    const CString strPath = directory.Path("state.txt");
    directory.Write("state.txt", CString(100000, 'o'));
    ASSERT_EQ(::chmod(directory.Path().c_str(), 0777), 0);
    const auto keep = [&strPath] {
        RefuseLinks();
        return ReplaceAndKeep(strPath) ? 1 : 0;
    };
    const auto keepOnFullDisk = [&keep] {
        FillDiskAbove(70000);
        return keep();
    };
    EXPECT_EQ(RunInChild(keepOnFullDisk), 0);
    ASSERT_EQ(::chmod(strPath.c_str(), 0222), 0);
    EXPECT_EQ(RunAsNobody(keep), 0);
    EXPECT_THAT(directory.Names(), ElementsAre("state.txt"));
    EXPECT_EQ(fs::file_size(strPath), 100000U);
    // With second names nobody needs to read it.
    EXPECT_TRUE(ReplaceAndKeep(strPath));
    EXPECT_EQ(fs::file_size(directory.Path("state.rejected.txt")), 100000U);
}

}  // namespace
