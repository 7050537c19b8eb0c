#include "platform/multimedia/support/PrivateSoundServer.h"

#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>

namespace {

const std::filesystem::path g_scripts = std::filesystem::path(FRETVANE_SOURCE_DIR) / "scripts/soundserver";

}  // namespace

CPrivateSoundServer::~CPrivateSoundServer() {
    Stop();
}

bool CPrivateSoundServer::Start(const std::string& strKind) {
    m_strKind = strKind;
    m_bStarted = true;
    const auto exports = RunCommand({(g_scripts / (strKind + "-start")).string(),
                                     m_directory.GetPath().string(), std::to_string(getpid())},
                                    {});
    if (!exports) {
        return false;
    }
    for (std::size_t nEquals = exports->find("='"); nEquals != std::string::npos;
         nEquals = exports->find("='", nEquals + 1)) {
        const std::size_t nName = exports->find_last_of(' ', nEquals) + 1;
        const std::size_t nValue = nEquals + 2;
        setenv(exports->substr(nName, nEquals - nName).c_str(),
               exports->substr(nValue, exports->find('\'', nValue) - nValue).c_str(), 1);
    }
    return true;
}

void CPrivateSoundServer::Stop() {
    m_player.End();
    if (m_bStarted) {
        RunCommand({(g_scripts / "stop").string(), m_directory.GetPath().string()}, {});
        m_bStarted = false;
    }
}

void CPrivateSoundServer::PretendThereIsNone() const {
    setenv("PULSE_SERVER", ("unix:" + (m_directory.GetPath() / "nobody").string()).c_str(), 1);
    setenv("PULSE_RUNTIME_PATH", m_directory.GetPath().c_str(), 1);
}

void CPrivateSoundServer::Signal(int nSignal) const {
    pid_t pid = 0;
    std::ifstream(m_directory.GetPath() / "pulse.pid") >> pid;
    if (pid > 1) {
        kill(pid, nSignal);
    }
}

bool CPrivateSoundServer::Control(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{"pactl"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunCommand(command, {}).has_value();
}

bool CPrivateSoundServer::AddMicrophone(const std::string& strName, const std::string& strDescription,
                                        const std::string& strFeed, std::string* pstrModule) const {
    const auto module = RunCommand({"pactl", "load-module", "module-remap-source", "source_name=" + strName,
                                    "master=" + strFeed + ".monitor",
                                    "source_properties='device.description=\"" + strDescription + "\"'"},
                                   {});
    if (module && pstrModule != nullptr) {
        *pstrModule = module->substr(0, module->find('\n'));
    }
    return module.has_value();
}

bool CPrivateSoundServer::AddFeed(const std::string& strName) const {
    const std::string strRewinds = m_strKind == "pulse" ? "norewinds=1" : "channels=2";
    return Control({"load-module", "module-null-sink", "sink_name=" + strName, "rate=48000", strRewinds});
}

bool CPrivateSoundServer::PlaySine(double fFrequency, const std::string& strFeed) {
    constexpr int nRate = 48000;
    const auto file = m_directory.GetPath() / "sine.raw";
    {
        std::ofstream stream(file, std::ios::binary);
        for (int i = 0; i < 30 * nRate; ++i) {
            const auto nValue = static_cast<std::int16_t>(
                std::lround(16384.0 * std::sin(2 * std::numbers::pi * fFrequency * i / nRate)));
            stream.write(reinterpret_cast<const char*>(&nValue), sizeof nValue);
        }
    }
    return m_player.Start({"paplay", "--raw", "--rate=48000", "--channels=1", "--format=s16le",
                           "--latency-msec=500", "-d", strFeed, file.string()},
                          {}, m_directory.GetPath(), m_directory.GetPath() / "player.log");
}
