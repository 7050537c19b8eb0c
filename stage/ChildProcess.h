#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

// A program started for the length of a scene, in a process group of its own. Whatever it started ends with
// it.
class CChildProcess {
public:
    using Environment = std::map<std::string, std::string>;

    CChildProcess() = default;
    ~CChildProcess();
    CChildProcess(const CChildProcess&) = delete;
    CChildProcess& operator=(const CChildProcess&) = delete;

    // Starts arguments[0], looked for in PATH, with the caller's environment changed by `environment`; its
    // output goes to strLog. nPassFd stays open in the child (-1: none).
    bool Start(const std::vector<std::string>& arguments, const Environment& environment,
               const std::filesystem::path& directory, const std::filesystem::path& strLog, int nPassFd = -1);
    bool IsRunning();
    // The exit code once it has ended by itself, 128 + the signal if one ended it; nothing when the time runs
    // out.
    std::optional<int> WaitForEnd(std::chrono::milliseconds timeout);
    void Signal(int nSignal) const;
    pid_t GetPid() const { return m_pid; }
    // SIGTERM, and SIGKILL to whoever is left after two seconds.
    void End();

private:
    pid_t m_pid = -1;
    std::optional<int> m_exitCode;
};

// Runs a command to its end; its standard output, or nothing if it failed or took longer.
std::optional<std::string> RunCommand(const std::vector<std::string>& arguments,
                                      const CChildProcess::Environment& environment,
                                      std::chrono::milliseconds timeout = std::chrono::seconds(20));

// A directory that lives as long as the object. The path is short: names of sockets end at 107 characters.
class CTemporaryDirectory {
public:
    CTemporaryDirectory();
    ~CTemporaryDirectory();
    CTemporaryDirectory(const CTemporaryDirectory&) = delete;
    CTemporaryDirectory& operator=(const CTemporaryDirectory&) = delete;
    const std::filesystem::path& GetPath() const { return m_path; }

private:
    std::filesystem::path m_path;
};
