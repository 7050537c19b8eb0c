#include "packaging/Installed.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

// The Debian package: what is in it, what it stands on, and that it comes and goes cleanly.

namespace fs = std::filesystem;

namespace {

class Package : public testing::Test {
protected:
    void SetUp() override {
        const fs::path settings = fs::path(FRETVANE_BINARY_DIR) / "CPackConfig.cmake";
        ASSERT_TRUE(RunCommand({"cpack", "--config", settings.string(), "-B", m_place.GetPath()}, {},
                               std::chrono::seconds(60)));
        for (const auto& entry : fs::directory_iterator(m_place.GetPath())) {
            if (entry.path().extension() == ".deb") {
                m_package = entry.path();
            }
        }
        ASSERT_FALSE(m_package.empty());
    }

    CTemporaryDirectory m_place;
    fs::path m_package;
};

TEST_F(Package, HoldsWhatIsInstalledAndNothingObjectionable) {
    const fs::path prefix = m_place.GetPath() / "prefix";
    const fs::path unpacked = m_place.GetPath() / "unpacked";
    ASSERT_TRUE(Install(prefix));
    ASSERT_TRUE(RunCommand({"dpkg-deb", "-x", m_package, unpacked}, {}));
    std::set<std::string> expected{"usr/share/doc/fretvane/changelog.Debian.gz",
                                   "usr/share/doc/fretvane/copyright",
                                   "usr/share/lintian/overrides/fretvane"};
    for (const auto& [strName, strContent] : Tree(prefix)) {
        // Debian keeps the license itself.
        if (strName != "share/doc/fretvane/LICENSE") {
            expected.insert("usr/" + strName);
        }
    }
    std::set<std::string> held;
    for (const auto& [strName, strContent] : Tree(unpacked)) {
        held.insert(strName);
    }
    EXPECT_EQ(held, expected);
    EXPECT_EQ(RunCommand({"dpkg-deb", "-f", m_package, "Version"}, {}), FRETVANE_VERSION "-1\n");

    for (const std::vector<std::string>& check : std::initializer_list<std::vector<std::string>>{
             {"lintian", "--allow-root", "--fail-on", "error,warning", m_package},
             {"desktop-file-validate", unpacked / "usr/share/applications/fretvane.desktop"},
             {"appstreamcli", "validate", "--no-net",
              unpacked / "usr/share/metainfo/example.fretvane.fretvane.metainfo.xml"},
             {"man", "-l", "--warnings", "-E", "UTF-8", unpacked / "usr/share/man/man1/fretvane.1.gz"}}) {
        CChildProcess checker;
        ASSERT_TRUE(checker.Start(check, {{"TMPDIR", m_place.GetPath()}}, m_place.GetPath(),
                                  m_place.GetPath() / check[0]));
        EXPECT_EQ(checker.WaitForEnd(std::chrono::seconds(60)), 0) << ReadAll(m_place.GetPath() / check[0]);
    }
}

TEST_F(Package, DependsOnAllThatTheProgramOpens) {
    const std::string strDepends = RunCommand({"dpkg-deb", "-f", m_package, "Depends"}, {}).value_or("");
    const std::regex packageName("(?:^|, )([^ ,]+)");
    std::set<std::string> depends;
    for (std::sregex_iterator it(strDepends.begin(), strDepends.end(), packageName);
         it != std::sregex_iterator(); ++it) {
        depends.insert((*it)[1]);
    }
    // By name while it runs, and what it is linked to.
    std::vector<std::string> opened{"/qt6/plugins/platforms/libqxcb.so", "/usr/share/sounds/sf2/TimGM6mb.sf2",
                                    "/usr/bin/xdg-open", "/wqy-microhei.ttc"};
    const std::string strHeaders =
        RunCommand({"objdump", "-p", FRETVANE_BINARY_DIR "/bin/fretvane"}, {}).value_or("");
    const std::regex needed("NEEDED +([^\n]+)");
    for (std::sregex_iterator it(strHeaders.begin(), strHeaders.end(), needed); it != std::sregex_iterator();
         ++it) {
        opened.push_back("/" + (*it)[1].str());
    }
    EXPECT_GT(opened.size(), 10U);
    for (const std::string& strFile : opened) {
        bool bHeld = false;
        std::istringstream owners(RunCommand({"dpkg", "-S", "*" + strFile}, {}).value_or(""));
        for (std::string strLine; std::getline(owners, strLine);) {
            bHeld = bHeld || depends.contains(strLine.substr(0, strLine.find(':')));
        }
        EXPECT_TRUE(bHeld) << strFile << " is in none of: " << strDepends;
    }
}

TEST_F(Package, IsInstalledStartedAndRemoved) {
    const fs::path root = m_place.GetPath() / "root";
    WriteAll(root / "var/lib/dpkg/status", "");
    fs::create_directories(root / "var/lib/dpkg/info");
    fs::create_directories(root / "var/lib/dpkg/updates");
    const auto before = Tree(root);
    const auto dpkg = [&](const std::vector<std::string>& what) {
        std::vector<std::string> command{"fakeroot",
                                         "dpkg",
                                         "--root=" + root.string(),
                                         "--log=" + (m_place.GetPath() / "dpkg.log").string(),
                                         "--force-depends",
                                         "--force-bad-path",
                                         "--force-script-chrootless"};
        command.insert(command.end(), what.begin(), what.end());
        return RunCommand(command, {}, std::chrono::seconds(60)).has_value();
    };
    ASSERT_TRUE(dpkg({"-i", m_package}));

    CUser user(m_place.GetPath() / "user");
    ASSERT_TRUE(user.SeeWindow(root / "usr/bin/fretvane")) << user.GetOutput();
    EXPECT_TRUE(fs::exists(user.GetDirectory() / "state.txt"));
    const auto home = Tree(user.GetHome());

    ASSERT_TRUE(dpkg({"--purge", "fretvane"}));
    for (const auto& [strName, strContent] : Tree(root)) {
        EXPECT_TRUE(strName.starts_with("var/lib/dpkg/")) << strName;
    }
    EXPECT_FALSE(fs::exists(root / "usr/share/fretvane"));
    EXPECT_EQ(Tree(user.GetHome()), home);
}

}  // namespace
