#include "stage/Hand.h"

#include "stage/ChildProcess.h"

#include <cstdlib>
#include <sstream>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr auto LOOK_AGAIN = 50ms;

// The number behind a name in lines of the form "  Name:  number".
int Number(const std::string& strText, const std::string& strName) {
    const std::size_t nAt = strText.find(strName + ":");
    return nAt == std::string::npos
               ? 0
               : static_cast<int>(std::strtol(strText.c_str() + nAt + strName.size() + 1, nullptr, 10));
}

}  // namespace

std::optional<std::string> CHand::Ask(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "xdotool");
    return RunCommand(arguments, {{"DISPLAY", m_strDisplay}}, 10s);
}

bool CHand::Do(std::vector<std::string> arguments) const {
    return Ask(std::move(arguments)).has_value();
}

std::optional<std::string> CHand::FindId(const std::string& strTitle) const {
    auto ids = Ask({"search", "--onlyvisible", "--name", strTitle});
    if (!ids || ids->empty()) {
        return std::nullopt;
    }
    ids->erase(ids->find_last_not_of('\n') + 1);
    const std::size_t nLast = ids->rfind('\n');
    return nLast == std::string::npos ? *ids : ids->substr(nLast + 1);
}

std::optional<CHand::Place> CHand::FindWindow(const std::string& strTitle,
                                              std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::string strBefore;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto id = FindId(strTitle);
        // Asked of the server itself: of a window inside a frame xdotool tells another place.
        const auto geometry =
            id ? RunCommand({"xwininfo", "-id", *id}, {{"DISPLAY", m_strDisplay}}) : std::nullopt;
        if (geometry && *geometry == strBefore) {
            return Place{Number(strBefore, "Absolute upper-left X"),
                         Number(strBefore, "Absolute upper-left Y"), Number(strBefore, "Width"),
                         Number(strBefore, "Height")};
        }
        strBefore = geometry.value_or("");
        std::this_thread::sleep_for(LOOK_AGAIN);
    }
    return std::nullopt;
}

std::string CHand::ListWindows() const {
    std::istringstream tree(
        RunCommand({"xwininfo", "-root", "-tree"}, {{"DISPLAY", m_strDisplay}}).value_or("no screen\n"));
    std::string strNamed;
    for (std::string strLine; std::getline(tree, strLine);) {
        if (strLine.find("has no name") == std::string::npos) {
            strNamed.append(strLine).append("\n");
        }
    }
    return strNamed;
}

bool CHand::WaitUntilGone(const std::string& strTitle) const {
    for (const auto deadline = std::chrono::steady_clock::now() + 10s;
         std::chrono::steady_clock::now() < deadline; std::this_thread::sleep_for(LOOK_AGAIN)) {
        if (!FindId(strTitle)) {
            return true;
        }
    }
    return false;
}

bool CHand::MoveTo(int x, int y) const {
    return Do({"mousemove", "--sync", std::to_string(x), std::to_string(y)});
}

bool CHand::Press(int nButton) const {
    return Do({"mousedown", std::to_string(nButton)});
}

bool CHand::Release(int nButton) const {
    return Do({"mouseup", std::to_string(nButton)});
}

bool CHand::Click(int x, int y, int nButton) const {
    return Do({"mousemove", std::to_string(x), std::to_string(y), "click", std::to_string(nButton)});
}

bool CHand::Keys(const std::vector<std::string>& keys) const {
    std::vector<std::string> arguments{"key", "--delay", "40"};
    arguments.insert(arguments.end(), keys.begin(), keys.end());
    return Do(std::move(arguments));
}

bool CHand::Type(const std::string& strText) const {
    return Do({"type", "--delay", "40", strText});
}

bool CHand::Minimize(const std::string& strTitle) const {
    const auto id = FindId(strTitle);
    return id && Do({"windowminimize", *id});
}

bool CHand::Activate(const std::string& strTitle) const {
    const auto ids = Ask({"search", "--name", strTitle});
    return ids && !ids->empty() && Do({"windowactivate", ids->substr(ids->rfind('\n', ids->size() - 2) + 1)});
}
