#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

// The help page stands by itself: what it shows lies beside it, what it leads to stands in it.

namespace {

const std::filesystem::path DATA = std::filesystem::path(FRETVANE_SOURCE_DIR) / "data";

std::set<std::string> AllMatches(const std::string& strText, const std::string& strPattern) {
    const std::regex pattern(strPattern);
    std::set<std::string> matches;
    for (std::sregex_iterator it(strText.begin(), strText.end(), pattern); it != std::sregex_iterator();
         ++it) {
        matches.insert((*it)[1]);
    }
    return matches;
}

TEST(HelpPage, NamesOnlyWhatIsThereAndNothingOutside) {
    std::ifstream file(DATA / "fvnhelp.htm");
    const std::string strPage{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_GT(strPage.size(), 5000U);
    EXPECT_EQ(strPage.find("://"), std::string::npos);
    EXPECT_EQ(strPage.find("<script"), std::string::npos);

    const std::set<std::string> pictures = AllMatches(strPage, "src=\"([^\"]*)\"");
    EXPECT_GE(pictures.size(), 5U);
    for (const std::string& strPicture : pictures) {
        EXPECT_TRUE(std::filesystem::is_regular_file(DATA / strPicture)) << strPicture;
    }
    const std::set<std::string> ids = AllMatches(strPage, "id=\"([^\"]*)\"");
    for (const std::string& strTarget : AllMatches(strPage, "href=\"([^\"]*)\"")) {
        EXPECT_TRUE(strTarget.starts_with("#") && ids.contains(strTarget.substr(1))) << strTarget;
    }
    // Both languages tell of the same things.
    for (const std::string& strId : ids) {
        if (strId.starts_with("zh")) {
            EXPECT_TRUE(ids.contains("en" + strId.substr(2))) << strId;
        }
    }
}

}  // namespace
