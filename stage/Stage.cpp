#include "stage/Stage.h"

#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>

using namespace std::chrono_literals;

namespace fs = std::filesystem;

namespace {

const fs::path g_source = FRETVANE_SOURCE_DIR;
const fs::path g_built = fs::path(FRETVANE_BINARY_DIR) / "bin";

// Reads lines of the form: export NAME='value' NAME='value'
CChildProcess::Environment ParseExports(const std::string& text) {
    CChildProcess::Environment environment;
    for (std::size_t nEquals = text.find("='"); nEquals != std::string::npos;
         nEquals = text.find("='", nEquals + 1)) {
        const std::size_t nName = text.find_last_of(" \n", nEquals) + 1;
        const std::size_t nEnd = text.find('\'', nEquals + 2);
        environment[text.substr(nName, nEquals - nName)] = text.substr(nEquals + 2, nEnd - nEquals - 2);
    }
    return environment;
}

// A window that comes up while the window manager does may be left out by it, and never seen.
bool WaitForWindowManager(const std::string& strDisplay) {
    for (const auto deadline = std::chrono::steady_clock::now() + 10s;
         std::chrono::steady_clock::now() < deadline; std::this_thread::sleep_for(20ms)) {
        const auto manager =
            RunCommand({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}, {{"DISPLAY", strDisplay}});
        if (manager && manager->find('#') != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

CSoundServer::~CSoundServer() {
    Stop();
}

bool CSoundServer::Start(const std::string& strKind) {
    Stop();
    const auto exports = RunCommand({(g_source / "scripts/soundserver" / (strKind + "-start")).string(),
                                     m_directory.GetPath().string(), std::to_string(getpid())},
                                    {});
    m_bStarted = true;
    if (!exports) {
        return false;
    }
    m_environment = ParseExports(*exports);
    return m_environment.contains("PULSE_SERVER");
}

void CSoundServer::Stop() {
    m_player.End();
    if (m_bStarted) {
        RunCommand({(g_source / "scripts/soundserver/stop").string(), m_directory.GetPath().string()}, {});
        m_bStarted = false;
    }
}

void CSoundServer::SignalServer(int nSignal) const {
    pid_t pid = 0;
    std::ifstream(m_directory.GetPath() / "pulse.pid") >> pid;
    if (pid > 1) {
        kill(pid, nSignal);
    }
}

bool CSoundServer::Play(const fs::path& waveFile, const std::string& strSink) {
    return m_player.Start({"paplay", "--latency-msec=50", "-d", strSink, waveFile.string()}, m_environment,
                          m_directory.GetPath(), m_directory.GetPath() / "player.log");
}

std::optional<std::string> CSoundServer::Control(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "pactl");
    return RunCommand(arguments, m_environment, 5s);
}

bool CStage::FillDirectory() {
    for (const auto& entry : fs::directory_iterator(g_source / "data")) {
        if (entry.path().extension() == ".bmp" || entry.path().extension() == ".txt" ||
            entry.path().extension() == ".htm") {
            std::error_code ignored;
            fs::copy_file(entry.path(), m_directory.GetPath() / entry.path().filename(), ignored);
        }
    }
    return m_reader.Load(g_source / "data");
}

bool CStage::Start(const CSoundServer* pSound, int nDotsPerInch) {
    const int nFactor = (nDotsPerInch + 48) / 96;
    return FillDirectory() && m_screen.Start(500 * nFactor, 396 * nFactor, nDotsPerInch) &&
           StartProgram(pSound);
}

bool CStage::StartOnDesktop(const CSoundServer* pSound) {
    return FillDirectory() && m_screen.Start(800, 640) &&
           m_windowManager.Start(
               {"openbox", "--sm-disable"},
               {{"DISPLAY", m_screen.GetDisplay()}, {"HOME", m_directory.GetPath().string()}},
               m_directory.GetPath(), m_directory.GetPath() / "desktop.log") &&
           WaitForWindowManager(m_screen.GetDisplay()) && StartProgram(pSound);
}

bool CStage::StartProgram(const CSoundServer* pSound) {
    CChildProcess::Environment environment = m_more;
    if (pSound != nullptr) {
        environment.insert(pSound->GetEnvironment().begin(), pSound->GetEnvironment().end());
    } else {
        // An address where nobody listens: the user's own server must not answer.
        environment["PULSE_SERVER"] = "unix:" + (m_directory.GetPath() / "nobody").string();
        environment["PULSE_RUNTIME_PATH"] = m_directory.GetPath().string();
    }
    environment["DISPLAY"] = m_screen.GetDisplay();
    environment["QT_QPA_PLATFORM"] = "xcb";
    environment["HOME"] = m_directory.GetPath().string();
    return m_program.Start({(g_built / "fretvane").string()}, environment, m_directory.GetPath(),
                           m_directory.GetPath() / "program.log");
}

DisplayedReading CStage::Read() const {
    const auto picture = Grab();
    return picture && picture->nWidth >= m_xWindow + 500 && picture->nHeight >= m_yWindow + 396
               ? m_reader.Read(Crop(*picture, m_xWindow, m_yWindow, 500, 396))
               : DisplayedReading{};
}

DisplayedReading CStage::ReadUntil(const std::function<bool(const DisplayedReading&)>& condition,
                                   std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    DisplayedReading reading = Read();
    while (!condition(reading) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(20ms);
        reading = Read();
    }
    return reading;
}

bool CStage::WaitForPicture(const std::function<bool(const Picture&)>& condition,
                            std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        const auto picture = Grab();
        if (picture && condition(*picture)) {
            return true;
        }
        std::this_thread::sleep_for(20ms);
    }
    return false;
}

bool CStage::PressKey(const std::string& strKey) const {
    return RunCommand({"xdotool", "key", strKey}, {{"DISPLAY", m_screen.GetDisplay()}}).has_value();
}

std::string CStage::ReadFile(const std::string& strName) const {
    std::ostringstream text;
    text << std::ifstream(m_directory.GetPath() / strName).rdbuf();
    return text.str();
}
