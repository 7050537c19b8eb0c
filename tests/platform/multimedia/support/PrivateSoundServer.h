#pragma once

#include "stage/ChildProcess.h"
#include "stage/Guitar.h"

#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// A sound server of the test's own, with one virtual microphone. This process finds it, and no other, through
// its environment. It ends with the object, and with the process in any case.
class CPrivateSoundServer {
public:
    CPrivateSoundServer() = default;
    ~CPrivateSoundServer() { Stop(); }
    CPrivateSoundServer(const CPrivateSoundServer&) = delete;
    CPrivateSoundServer& operator=(const CPrivateSoundServer&) = delete;

    // strKind: "pulse" or "pipewire". After Stop or Kill it comes back at the same address.
    bool Start(const std::string& strKind) {
        m_strKind = strKind;
        m_bStarted = true;
        const auto exports =
            RunCommand({Script(strKind + "-start"), Directory().string(), std::to_string(getpid())}, {});
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
    void Stop() {
        m_player.End();
        if (std::exchange(m_bStarted, false)) {
            RunCommand({Script("stop"), Directory().string()}, {});
        }
    }
    void Kill() const { Signal(SIGKILL); }
    void Freeze() const { Signal(SIGSTOP); }
    void Thaw() const { Signal(SIGCONT); }
    // The environment of a machine without any server.
    void PretendThereIsNone() const {
        setenv("PULSE_SERVER", ("unix:" + (Directory() / "nobody").string()).c_str(), 1);
        setenv("PULSE_RUNTIME_PATH", Directory().c_str(), 1);
    }

    // A command of the server's control program; its first line, or nothing if it failed.
    static std::optional<std::string> Control(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "pactl");
        const auto output = RunCommand(arguments, {});
        return output ? std::optional(output->substr(0, output->find('\n'))) : std::nullopt;
    }
    // A microphone that hears what is played to the sink strFeed; the number with which it can be unloaded.
    static std::optional<std::string> AddMicrophone(const std::string& strName,
                                                    const std::string& strDescription,
                                                    const std::string& strFeed = "mic_feed") {
        return Control({"load-module", "module-remap-source", "source_name=" + strName,
                        "master=" + strFeed + ".monitor",
                        "source_properties='device.description=\"" + strDescription + "\"'"});
    }
    static bool RemoveMicrophones() { return Control({"unload-module", "module-remap-source"}).has_value(); }
    bool AddFeed(const std::string& strName) const {
        const std::string strRewinds = m_strKind == "pulse" ? "norewinds=1" : "channels=2";
        return Control({"load-module", "module-null-sink", "sink_name=" + strName, "rate=48000", strRewinds})
            .has_value();
    }
    // A sine of half the full scale, for half a minute or until the next call.
    bool PlaySine(double fFrequency, const std::string& strFeed = "mic_feed") {
        std::vector<float> samples(std::size_t{30} * GUITAR_RATE);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double fTurns = fFrequency * static_cast<double>(i) / GUITAR_RATE;
            samples[i] = 0.5F * static_cast<float>(std::sin(2.0 * std::numbers::pi * fTurns));
        }
        const auto file = Directory() / "sine.wav";
        return WriteWave(samples, GUITAR_RATE, file) &&
               m_player.Start({"paplay", "--latency-msec=500", "-d", strFeed, file.string()}, {}, Directory(),
                              Directory() / "player.log");
    }

private:
    static std::string Script(const std::string& strName) {
        return FRETVANE_SOURCE_DIR "/scripts/soundserver/" + strName;
    }
    const std::filesystem::path& Directory() const { return m_directory.GetPath(); }
    void Signal(int nSignal) const {
        pid_t pid = 0;
        std::ifstream(Directory() / "pulse.pid") >> pid;
        if (pid > 1) {
            kill(pid, nSignal);
        }
    }

    std::string m_strKind;
    CTemporaryDirectory m_directory;
    CChildProcess m_player;
    bool m_bStarted = false;
};
