#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The two rules of the house: arrows between rooms run downward only, and third-party headers are included by
// the .cpp files of src/platform/ and by nobody else.

namespace {

namespace fs = std::filesystem;

struct Include {
    std::string target;
    bool bAngled;
};

const std::regex g_includeLine(R"re(^\s*#\s*include\s*([<"])([^>"]+)[>"])re");

std::vector<Include> ReadIncludes(std::istream& source) {
    std::vector<Include> includes;
    std::string line;
    std::smatch match;
    while (std::getline(source, line)) {
        if (std::regex_search(line, match, g_includeLine)) {
            includes.push_back({match[2], match[1] == "<"});
        }
    }
    return includes;
}

// The room of a path below src/: "analysis", or "platform/drawing" for the sub-rooms of the platform.
std::string RoomOf(const std::string& path) {
    const auto first = path.find('/');
    if (first == std::string::npos) {
        return {};
    }
    std::string room = path.substr(0, first);
    if (room != "platform") {
        return room;
    }
    const auto second = path.find('/', first + 1);
    return second == std::string::npos ? room : path.substr(0, second);
}

// What each room may include besides itself. Every arrow that is not here is forbidden.
const std::map<std::string, std::set<std::string>>& AllowedArrows() {
    static const std::set<std::string> sound{"platform/base", "platform/threads", "platform/signal",
                                             "platform/multimedia"};
    static const std::set<std::string> screen{"platform/base",    "platform/threads", "platform/multimedia",
                                              "platform/drawing", "platform/windows", "platform/shell"};
    static const auto with = [](std::set<std::string> rooms, const std::set<std::string>& more) {
        rooms.insert(more.begin(), more.end());
        return rooms;
    };
    static const std::map<std::string, std::set<std::string>> arrows{
        {"platform/base", {}},
        {"platform/threads", {"platform/base"}},
        {"platform/signal", {"platform/base"}},
        {"platform/multimedia", {"platform/base", "platform/threads"}},
        {"platform/drawing", {"platform/base"}},
        {"platform/windows", {"platform/base", "platform/drawing"}},
        {"platform/shell", {"platform/base"}},
        {"tuning", {"platform/base"}},
        {"capture", with(sound, {"tuning"})},
        {"analysis", with(sound, {"tuning", "capture"})},
        {"tones", with(sound, {"tuning"})},
        {"widgets", with(screen, {"tuning"})},
        {"dialogs", with(screen, {"tuning", "widgets", "platform/multimedia"})},
        {"window",
         with(with(screen, sound), {"tuning", "capture", "analysis", "tones", "widgets", "dialogs"})},
    };
    return arrows;
}

// Headers of the language's library and of POSIX, without which no room could be written. Everything else in
// angle brackets comes from a third party.
bool IsSystemHeader(const std::string& header) {
    static const std::set<std::string> posix{
        "fcntl.h",    "pthread.h",     "sched.h",     "unistd.h",   "sys/eventfd.h", "sys/resource.h",
        "sys/stat.h", "sys/syscall.h", "sys/types.h", "sys/wait.h", "signal.h",      "spawn.h",
        "sys/time.h", "sys/socket.h",  "time.h",      "poll.h",     "semaphore.h",   "linux/futex.h"};
    static const std::regex standard("[a-z0-9_]+");
    return std::regex_match(header, standard) || posix.contains(header);
}

// Why this include is not allowed in this file (a path below src/), or nothing.
std::optional<std::string> Objection(const std::string& file, const Include& include) {
    const bool bPlatformSource = file.starts_with("platform/") && file.ends_with(".cpp");
    const std::string room = RoomOf(file);
    const std::string target = RoomOf(include.target);
    if (!include.bAngled && AllowedArrows().contains(target)) {
        const auto found = AllowedArrows().find(room);
        if (found == AllowedArrows().end()) {
            return "the room " + room + " is not known";
        }
        if (target == room || found->second.contains(target)) {
            return std::nullopt;
        }
        return room + " must not know " + target;
    }
    if (IsSystemHeader(include.target)) {
        return std::nullopt;
    }
    return bPlatformSource && include.bAngled
               ? std::nullopt
               : std::optional<std::string>("a third-party or unrooted header outside platform/*.cpp");
}

TEST(Architecture, ArrowsRunDownwardAndThirdPartiesStayInThePlatform) {
    const fs::path source = fs::path(FRETVANE_SOURCE_DIR) / "src";
    int nFiles = 0;
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        const std::string extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp") {
            continue;
        }
        ++nFiles;
        const std::string file = fs::relative(entry.path(), source).generic_string();
        std::ifstream stream(entry.path());
        for (const Include& include : ReadIncludes(stream)) {
            const auto objection = Objection(file, include);
            EXPECT_FALSE(objection.has_value())
                << file << " includes " << include.target << ": " << objection.value_or("");
        }
    }
    EXPECT_GT(nFiles, 50);
}

TEST(Architecture, AnalysisWithoutTheEngineKnowsNoCapture) {
    const fs::path source = fs::path(FRETVANE_SOURCE_DIR) / "src";
    for (const auto& entry : fs::directory_iterator(source / "analysis")) {
        if (entry.path().stem() == "PitchEngine" || !entry.is_regular_file()) {
            continue;
        }
        std::ifstream stream(entry.path());
        for (const Include& include : ReadIncludes(stream)) {
            EXPECT_NE(RoomOf(include.target), "capture") << entry.path().filename();
            EXPECT_NE(RoomOf(include.target), "platform/multimedia") << entry.path().filename();
        }
    }
}

// The guard itself must bite.
TEST(Architecture, TheGuardSeesWhatIsForbidden) {
    const auto objects = [](const char* file, const char* line) {
        std::istringstream source(line);
        const auto includes = ReadIncludes(source);
        return includes.size() == 1 && Objection(file, includes[0]).has_value();
    };
    EXPECT_TRUE(objects("tuning/Tuning.h", "#include \"window/TunerWnd.h\""));
    EXPECT_TRUE(objects("analysis/NoteTracker.cpp", "#include \"platform/windows/Wnd.h\""));
    EXPECT_TRUE(objects("platform/signal/Signal.cpp", "#include \"platform/windows/Wnd.h\""));
    EXPECT_TRUE(objects("widgets/FineDial.cpp", "#include <QPainter>"));
    EXPECT_TRUE(objects("widgets/FineDial.cpp", "  #  include <QtGui/QPainter>"));
    EXPECT_TRUE(objects("platform/windows/Wnd.h", "#include <QtWidgets/QWidget>"));
    EXPECT_TRUE(objects("platform/signal/Signal.h", "#include <fftw3.h>"));
    EXPECT_TRUE(objects("platform/windows/Wnd.cpp", "#include \"../../window/TunerWnd.h\""));
    EXPECT_TRUE(objects("capture/Recorder.cpp", "#include \"pulse/pulseaudio.h\""));
    EXPECT_FALSE(objects("platform/signal/Signal.cpp", "#include <fftw3.h>"));
    EXPECT_FALSE(objects("window/TunerWnd.cpp", "#include \"analysis/NoteTracker.h\""));
    EXPECT_FALSE(objects("tuning/Tuning.h", "#include <vector>"));
}

}  // namespace
