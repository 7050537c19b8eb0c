#include "packaging/Installed.h"

#include <gtest/gtest.h>

#include <array>

// What the launcher makes of homes of every kind. In the place of the program stands one that tells where it
// was started, and with what.

namespace fs = std::filesystem;

namespace {

class Launcher : public testing::Test {
protected:
    void SetUp() override {
        for (const char* szName : {"Circle.bmp", "Label.bmp", "gTic.bmp", "preset.txt", "help/window.png"}) {
            WriteAll(m_prefix / "share/fretvane" / szName, std::string("installed ") + szName);
        }
        WriteAll(m_prefix / "libexec/fretvane/fretvane", "#!/bin/sh\npwd\nprintf '<%s>' \"$@\"\n");
        fs::create_directories(m_prefix / "bin");
        fs::copy_file(fs::path(FRETVANE_BINARY_DIR) / "packaging/fretvane", m_prefix / "bin/fretvane");
        fs::permissions(m_prefix / "bin/fretvane", fs::perms::owner_all);
        fs::permissions(m_prefix / "libexec/fretvane/fretvane", fs::perms::owner_all);
    }
    std::string Expected(const fs::path& directory) const {
        return directory.string() + "\n<one argument><-x>";
    }

    CTemporaryDirectory m_place;
    fs::path m_prefix = m_place.GetPath() / "some where";
    CUser m_user{m_place.GetPath() / "ho me"};
};

TEST_F(Launcher, ObeysTheEnvironmentAndSaysWhatItCannotMake) {
    const fs::path file = m_place.GetPath() / "file";
    WriteAll(file, "in the way");
    const fs::path nowhere = m_place.GetPath() / "nowhere";
    fs::create_directories(nowhere / ".local/share");
    fs::create_symlink("gone", nowhere / ".local/share/fretvane");
    const std::string data = (m_place.GetPath() / "da ta").string();

    struct Case {
        CChildProcess::Environment environment;
        fs::path directory;  // empty: it cannot start
    };
    for (const auto& [environment, directory] :
         {Case{{}, m_user.GetDirectory()}, Case{{{"XDG_DATA_HOME", data}}, fs::path(data) / "fretvane"},
          Case{{{"XDG_DATA_HOME", data}, {"HOME", ""}}, fs::path(data) / "fretvane"},
          Case{{{"XDG_DATA_HOME", "relative/path"}}, m_user.GetDirectory()},
          Case{{{"CDPATH", "/"}, {"IFS", "/"}}, m_user.GetDirectory()}, Case{{{"HOME", ""}}, {}},
          Case{{{"HOME", "relative"}}, {}}, Case{{{"HOME", file.string()}}, {}},
          Case{{{"HOME", nowhere.string()}}, {}}, Case{{{"XDG_DATA_HOME", file.string()}}, {}}}) {
        const auto status = m_user.Run(m_prefix / "bin/fretvane", environment);
        if (directory.empty()) {
            EXPECT_EQ(status, 1);
            EXPECT_NE(m_user.GetOutput().find("fretvane: "), std::string::npos) << m_user.GetOutput();
        } else {
            EXPECT_EQ(status, 0);
            EXPECT_EQ(m_user.GetOutput(), Expected(directory));
            EXPECT_EQ(ReadAll(directory / "preset.txt"), "installed preset.txt");
        }
    }
    EXPECT_EQ(ReadAll(file), "in the way");
}

TEST_F(Launcher, FollowsAnInstallationThatChangesAndMovesAndKeepsWhatIsTheUsers) {
    ASSERT_EQ(m_user.Run(m_prefix / "bin/fretvane"), 0);
    const fs::path own = m_user.GetDirectory();
    WriteAll(own / "preset.txt", "mine");
    WriteAll(own / "state.txt", "state");
    fs::remove(own / "Circle.bmp");
    WriteAll(own / "Circle.bmp", "my circle");
    fs::create_symlink("not here", own / "my link");
    fs::remove(own / "Label.bmp");
    fs::create_symlink("preset.txt", own / "Label.bmp");

    // Another version, elsewhere, found by a link.
    const fs::path moved = m_place.GetPath() / "else where";
    fs::rename(m_prefix, moved);
    fs::remove(moved / "share/fretvane/gTic.bmp");
    WriteAll(moved / "share/fretvane/New.bmp", "new");
    fs::create_directories(m_place.GetPath() / "links");
    fs::create_symlink(moved / "bin/fretvane", m_place.GetPath() / "links/fretvane");
    for (int nStart = 0; nStart < 2; ++nStart) {
        ASSERT_EQ(m_user.Run(m_place.GetPath() / "links/fretvane"), 0);
        EXPECT_EQ(m_user.GetOutput(), Expected(own));
        const std::string strData = "-> " + (moved / "share/fretvane").string() + "/";
        const std::map<std::string, std::string> expected{
            {"./Circle.bmp", "my circle"},      {"./Label.bmp", "-> preset.txt"},
            {"./New.bmp", strData + "New.bmp"}, {"./help", strData + "help"},
            {"./my link", "-> not here"},       {"./preset.txt", "mine"},
            {"./state.txt", "state"},
        };
        EXPECT_EQ(Tree(own), expected);
    }

    fs::remove(moved / "share/fretvane/New.bmp");
    EXPECT_EQ(m_user.Run(moved / "bin/fretvane"), 0);
    EXPECT_FALSE(fs::is_symlink(own / "New.bmp"));

    // A link of the user's own that leads nowhere any more is no preset.
    fs::remove(own / "preset.txt");
    fs::create_symlink("gone", own / "preset.txt");
    EXPECT_EQ(m_user.Run(moved / "bin/fretvane"), 0);
    EXPECT_EQ(ReadAll(own / "preset.txt"), "installed preset.txt");
    EXPECT_FALSE(fs::exists(own / "gone"));

    // Half of an installation is none.
    fs::remove_all(moved / "share");
    EXPECT_EQ(m_user.Run(moved / "bin/fretvane"), 1);
    EXPECT_NE(m_user.GetOutput().find("install it again"), std::string::npos);
}

TEST_F(Launcher, BearsSeveralFirstStartsAtOnce) {
    const auto installed = Tree(m_prefix);
    for (int nHome = 0; nHome < 10; ++nHome) {
        const fs::path home = m_place.GetPath() / std::to_string(nHome);
        fs::create_directories(home);
        std::array<CChildProcess, 6> launchers;
        for (CChildProcess& launcher : launchers) {
            launcher.Start({m_prefix / "bin/fretvane"}, {{"HOME", home}, {"XDG_DATA_HOME", ""}},
                           m_place.GetPath(), m_place.GetPath() / "log");
        }
        for (CChildProcess& launcher : launchers) {
            EXPECT_EQ(launcher.WaitForEnd(std::chrono::seconds(20)), 0) << ReadAll(m_place.GetPath() / "log");
        }
        EXPECT_EQ(Tree(home / ".local/share/fretvane").size(), 5U);
    }
    EXPECT_EQ(Tree(m_prefix), installed);
}

}  // namespace
