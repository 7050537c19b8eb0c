#include "packaging/Installed.h"
#include "tuning/PresetFile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <utility>

// The program as `cmake --install` leaves it, started by its launcher on a screen with a sound server.

namespace fs = std::filesystem;

namespace {

TEST(Installation, StartsInAHomeOfItsOwnWritesNowhereElseAndGoesWithoutTrace) {
    const CTemporaryDirectory place;
    const fs::path prefix = place.GetPath() / "pre fix";
    ASSERT_TRUE(Install(prefix));
    const auto installed = Tree(prefix);

    CUser first(place.GetPath() / "first user");
    const auto properties = first.SeeWindow(prefix / "bin/fretvane");
    ASSERT_TRUE(properties) << first.GetOutput();
    // The desktop puts the window to its menu entry by the class, and shows the picture until it has.
    EXPECT_NE(properties->find(R"(WM_CLASS(STRING) = "fretvane", "fretvane")"), std::string::npos)
        << *properties;
    EXPECT_NE(installed.at("share/applications/fretvane.desktop").find("\nStartupWMClass=fretvane\n"),
              std::string::npos);
    EXPECT_NE(properties->find("_NET_WM_ICON(CARDINAL)"), std::string::npos) << *properties;

    EXPECT_EQ(ReadAll(first.GetDirectory() / "preset.txt"), installed.at("share/fretvane/preset.txt"));
    EXPECT_FALSE(fs::is_symlink(first.GetDirectory() / "preset.txt"));
    EXPECT_GT(fs::file_size(first.GetDirectory() / "state.txt"), 0U);
    EXPECT_EQ(ReadAll(first.GetDirectory() / "errorlog.txt").find("preset"), std::string::npos);
    EXPECT_EQ(ReadAll(first.GetDirectory() / "help/window.png"),
              installed.at("share/fretvane/help/window.png"));
    for (const auto& [strName, strContent] : Tree(first.GetHome())) {
        EXPECT_TRUE(strName.starts_with(".local/share/fretvane/")) << strName;
    }

    // What is the first user's own has to be out of another one's reach.
    WriteAll(first.GetDirectory() / "preset.txt", "Mine\t0\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2");
    const auto firstHome = Tree(first.GetHome());
    CUser second(place.GetPath() / "second");
    ASSERT_TRUE(second.SeeWindow(prefix / "bin/fretvane")) << second.GetOutput();
    EXPECT_EQ(Tree(first.GetHome()), firstHome);
    EXPECT_EQ(ReadAll(second.GetDirectory() / "preset.txt"), installed.at("share/fretvane/preset.txt"));
    EXPECT_EQ(Tree(prefix), installed);

    // The list of what was installed is complete: without that nothing is left, but what users have.
    std::istringstream manifest(ReadAll(fs::path(FRETVANE_BINARY_DIR) / "install_manifest.txt"));
    for (std::string strFile; std::getline(manifest, strFile);) {
        EXPECT_TRUE(fs::remove(strFile)) << strFile;
    }
    EXPECT_TRUE(Tree(prefix).empty());
    EXPECT_EQ(Tree(first.GetHome()), firstHome);
}

TEST(Installation, OffersTheIconInTheUsualSizes) {
    const CTemporaryDirectory place;
    ASSERT_TRUE(Install(place.GetPath()));
    const fs::path icons = place.GetPath() / "share/icons/hicolor";
    for (const int nSize : {16, 24, 32, 48, 64, 128, 256}) {
        const std::string strSize = std::to_string(nSize);
        const std::string strSizes = std::string(strSize).append("x").append(strSize);
        const auto icon = LoadPicture(icons / strSizes / "apps/fretvane.png");
        ASSERT_TRUE(icon) << nSize;
        EXPECT_EQ(std::pair(icon->nWidth, icon->nHeight), std::pair(nSize, nSize));
    }
    EXPECT_TRUE(ReadAll(icons / "scalable/apps/fretvane.svg").starts_with("<svg"));
}

TEST(Installation, ComesWithAsManyTuningsAsItTells) {
    const fs::path source = FRETVANE_SOURCE_DIR;
    CTuningList presets;
    int nDropped = 0;
    EXPECT_TRUE(LoadPresetFile((source / "data/preset.txt").string(), presets, nDropped));
    EXPECT_EQ(nDropped, 0);
    // A row of the list is found by its name.
    std::set<std::string> names;
    Tuning tuning;
    for (bool bMore = presets.GetAt(tuning, 0); bMore; bMore = presets.GetNext(tuning)) {
        EXPECT_TRUE(names.insert(tuning.m_strName).second) << tuning.m_strName;
    }
    const std::string strCount = std::to_string(names.size());
    for (const char* szFile :
         {"README.md", "packaging/debian/description", "packaging/example.fretvane.fretvane.metainfo.xml"}) {
        EXPECT_NE(ReadAll(source / szFile).find(strCount + " tunings"), std::string::npos) << szFile;
    }
}

// One number, wherever it is told.
TEST(Installation, TellsOneVersion) {
    const auto tells = [](const std::string& strFile, const std::string& strBefore) {
        const std::string strText = ReadAll(fs::path(FRETVANE_SOURCE_DIR) / strFile);
        const std::size_t nAt = strText.find(strBefore);
        return nAt != std::string::npos &&
               strText.compare(nAt, strBefore.size() + std::strlen(FRETVANE_VERSION),
                               strBefore + FRETVANE_VERSION) == 0;
    };
    EXPECT_TRUE(tells("CHANGELOG.md", "\n## ["));
    EXPECT_TRUE(tells("packaging/debian/changelog", "fretvane ("));
    EXPECT_TRUE(tells("packaging/fretvane.1", "\"Fretvane "));
    EXPECT_TRUE(tells("packaging/example.fretvane.fretvane.metainfo.xml", "<release version=\""));
}

}  // namespace
