#pragma once

#include "stage/ChildProcess.h"
#include "stage/Hand.h"
#include "stage/Stage.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

inline std::string ReadAll(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

inline void WriteAll(const std::filesystem::path& file, const std::string& strText) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << strText;
}

// All that is no directory below a path, by its relative name: the content of a file, where a link leads.
inline std::map<std::string, std::string> Tree(const std::filesystem::path& root) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_symlink() || !entry.is_directory()) {
            tree[fs::relative(entry.path().parent_path(), root) / entry.path().filename()] =
                entry.is_symlink() ? "-> " + fs::read_symlink(entry.path()).string() : ReadAll(entry.path());
        }
    }
    return tree;
}

inline bool Install(const std::filesystem::path& prefix) {
    return RunCommand({"cmake", "--install", FRETVANE_BINARY_DIR, "--prefix", prefix.string()}, {})
        .has_value();
}

// A person with a home of their own, who starts the program by its launcher.
class CUser {
public:
    explicit CUser(std::filesystem::path home) : m_home(std::move(home)) {
        std::filesystem::create_directories(m_home);
    }

    // Until it ends by itself; nothing if it doesn't. What it says goes to the log.
    std::optional<int> Run(const std::filesystem::path& launcher,
                           CChildProcess::Environment environment = {}) {
        environment.insert({{"HOME", m_home.string()}, {"XDG_DATA_HOME", ""}});
        std::error_code ignored;
        std::filesystem::remove(m_log.GetPath() / "log", ignored);
        CChildProcess program;
        program.Start({launcher.string(), "one argument", "-x"}, environment, m_log.GetPath(),
                      m_log.GetPath() / "log");
        return program.WaitForEnd(std::chrono::seconds(20));
    }
    // On a screen of its own until its window has been seen; tells the window's properties, ends the program
    // by SIGTERM, and is nothing if anything of this failed.
    std::optional<std::string> SeeWindow(const std::filesystem::path& launcher) {
        CSoundServer sound;
        CVirtualScreen screen;
        if (!sound.Start() || !screen.Start()) {
            return std::nullopt;
        }
        CChildProcess::Environment environment = sound.GetEnvironment();
        environment["HOME"] = m_home.string();
        environment["XDG_DATA_HOME"] = "";
        environment["DISPLAY"] = screen.GetDisplay();
        environment["QT_QPA_PLATFORM"] = "xcb";
        CChildProcess program;
        const std::string strTitle = std::string("Fretvane .* ") + FRETVANE_VERSION + "$";
        if (!program.Start({launcher.string()}, environment, "/", m_log.GetPath() / "log") ||
            !CHand(screen.GetDisplay()).FindWindow(strTitle)) {
            return std::nullopt;
        }
        auto id = RunCommand({"xdotool", "search", "--onlyvisible", "--name", strTitle}, environment);
        const auto properties =
            RunCommand({"xprop", "-id", id.value_or("").substr(0, id.value_or("").find('\n')), "WM_CLASS",
                        "_NET_WM_ICON"},
                       environment);
        program.Signal(SIGTERM);
        return program.WaitForEnd(std::chrono::seconds(10)) == 0 ? properties : std::nullopt;
    }

    std::string GetOutput() const { return ReadAll(m_log.GetPath() / "log"); }
    const std::filesystem::path& GetHome() const { return m_home; }
    std::filesystem::path GetDirectory() const { return m_home / ".local/share/fretvane"; }

private:
    std::filesystem::path m_home;
    CTemporaryDirectory m_log;
};
