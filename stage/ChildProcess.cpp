#include "stage/ChildProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>

using namespace std::chrono_literals;

namespace {

std::vector<std::string> MergedEnvironment(const CChildProcess::Environment& changes) {
    std::vector<std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (!changes.contains(text.substr(0, text.find('=')))) {
            merged.push_back(text);
        }
    }
    for (const auto& [name, value] : changes) {
        merged.push_back(name);
        merged.back().append("=").append(value);
    }
    return merged;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

CChildProcess::~CChildProcess() {
    End();
}

bool CChildProcess::Start(const std::vector<std::string>& arguments, const Environment& environment,
                          const std::filesystem::path& directory, const std::filesystem::path& strLog,
                          int nPassFd) {
    End();
    m_exitCode.reset();
    std::vector<std::string> argumentTexts = arguments;
    std::vector<std::string> environmentTexts = MergedEnvironment(environment);
    const std::vector<char*> argumentPointers = Pointers(argumentTexts);
    const std::vector<char*> environmentPointers = Pointers(environmentTexts);
    const int nLog = open(strLog.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int nNull = open("/dev/null", O_RDONLY | O_CLOEXEC);
    m_pid = fork();
    if (m_pid == 0) {
        setpgid(0, 0);
        dup2(nNull, STDIN_FILENO);
        dup2(nLog, STDOUT_FILENO);
        dup2(nLog, STDERR_FILENO);
        if (nPassFd >= 0) {
            fcntl(nPassFd, F_SETFD, 0);
        }
        if (chdir(directory.c_str()) == 0) {
            execvpe(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        }
        _exit(127);
    }
    if (m_pid > 0) {
        setpgid(m_pid, m_pid);
    }
    close(nLog);
    close(nNull);
    return m_pid > 0;
}

bool CChildProcess::IsRunning() {
    return m_pid > 0 && !WaitForEnd(0ms).has_value();
}

std::optional<int> CChildProcess::WaitForEnd(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (m_pid > 0 && !m_exitCode) {
        // Left to be waited for until End: nobody else may come by its number, or that of its group, before.
        siginfo_t ended{};
        if (waitid(P_PID, static_cast<id_t>(m_pid), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            ended.si_pid == m_pid) {
            m_exitCode = ended.si_code == CLD_EXITED ? ended.si_status : 128 + ended.si_status;
        } else if (std::chrono::steady_clock::now() >= deadline) {
            break;
        } else {
            std::this_thread::sleep_for(5ms);
        }
    }
    return m_exitCode;
}

void CChildProcess::Signal(int nSignal) const {
    if (m_pid > 0 && !m_exitCode) {
        kill(m_pid, nSignal);
    }
}

void CChildProcess::End() {
    if (m_pid <= 0) {
        return;
    }
    if (!m_exitCode) {
        kill(m_pid, SIGCONT);
        kill(-m_pid, SIGTERM);
        WaitForEnd(2s);
    }
    kill(-m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
    m_pid = -1;
}

std::optional<std::string> RunCommand(const std::vector<std::string>& arguments,
                                      const CChildProcess::Environment& environment,
                                      std::chrono::milliseconds timeout) {
    const CTemporaryDirectory directory;
    const auto log = directory.GetPath() / "output";
    CChildProcess process;
    if (!process.Start(arguments, environment, directory.GetPath(), log) ||
        process.WaitForEnd(timeout) != 0) {
        return std::nullopt;
    }
    std::ostringstream text;
    text << std::ifstream(log).rdbuf();
    return text.str();
}

CTemporaryDirectory::CTemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "fv.XXXXXX").string();
    m_path = mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
}

CTemporaryDirectory::~CTemporaryDirectory() {
    std::error_code ignored;
    if (!m_path.empty()) {
        std::filesystem::remove_all(m_path, ignored);
    }
}
