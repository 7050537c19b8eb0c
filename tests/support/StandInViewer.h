#pragma once

#include "support/ScratchDirectory.h"

#include <chrono>
#include <filesystem>
#include <thread>

// A viewer that tells how it was started.
class CStandInViewer {
public:
    void Install(std::filesystem::perms permissions = std::filesystem::perms::owner_all) const {
        m_directory.Write(
            "xdg-open",
            "#!/bin/sh\nexport PATH=/usr/bin:/bin\ncd '" + m_directory.Path() +
                "'\n"
                "{ echo $#; for a; do printf '[%s]\\n' \"$a\"; done; readlink /proc/$$/fd/0 /proc/$$/fd/1\n"
                "} > new 2>&1; mv new told\n");
        std::filesystem::permissions(m_directory.Path("xdg-open"), permissions);
    }
    // Whether it has been started since Told() last asked.
    bool WasStarted() const { return std::filesystem::exists(m_directory.Path("told")); }
    // What it tells, line by line: the number of arguments, each "[argument]", its input and output.
    // Empty if it isn't started soon.
    std::vector<CString> Told() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!WasStarted() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        std::istringstream text(m_directory.Read("told"));
        std::filesystem::remove(m_directory.Path("told"));
        std::vector<CString> lines;
        for (CString strLine; std::getline(text, strLine);) {
            lines.push_back(strLine);
        }
        return lines;
    }

    // Where it lies.
    CString Directory() const { return m_directory.Path(); }

private:
    CScratchDirectory m_directory;
};

// The system's viewer for as long as it lives: it stands alone in PATH.
class CViewerInPath : public CStandInViewer {
public:
    CViewerInPath() {
        const char* const szPath = std::getenv("PATH");
        m_strPath = szPath != nullptr ? szPath : "";
        ::setenv("PATH", ("/nowhere:" + Directory()).c_str(), 1);
    }
    ~CViewerInPath() { ::setenv("PATH", m_strPath.c_str(), 1); }
    CViewerInPath(const CViewerInPath&) = delete;
    CViewerInPath& operator=(const CViewerInPath&) = delete;
    CViewerInPath(CViewerInPath&&) = delete;
    CViewerInPath& operator=(CViewerInPath&&) = delete;

private:
    CString m_strPath;
};
