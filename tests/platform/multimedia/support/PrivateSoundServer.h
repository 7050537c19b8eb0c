#pragma once

#include "stage/Guitar.h"
#include "stage/Stage.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

// A sound server of the test's own, with one virtual microphone. This process finds it, and no other, through
// its environment.
class CPrivateSoundServer : public CSoundServer {
public:
    // After Stop or Kill it comes back at the same address.
    bool Start(const std::string& strKind) {
        m_strKind = strKind;
        const bool bStarted = CSoundServer::Start(strKind);
        for (const auto& [strName, strValue] : GetEnvironment()) {
            setenv(strName.c_str(), strValue.c_str(), 1);
        }
        return bStarted;
    }
    void Kill() const { SignalServer(SIGKILL); }
    void Freeze() const { SignalServer(SIGSTOP); }
    void Thaw() const { SignalServer(SIGCONT); }
    // The environment of a machine without any server.
    void PretendThereIsNone() const {
        setenv("PULSE_SERVER", ("unix:" + (GetDirectory() / "nobody").string()).c_str(), 1);
        setenv("PULSE_RUNTIME_PATH", GetDirectory().c_str(), 1);
    }

    // A microphone that hears what is played to the sink strFeed; the number with which it can be unloaded.
    std::optional<std::string> AddMicrophone(const std::string& strName, const std::string& strDescription,
                                             const std::string& strFeed = "mic_feed") const {
        const auto output = Control({"load-module", "module-remap-source", "source_name=" + strName,
                                     "master=" + strFeed + ".monitor",
                                     "source_properties='device.description=\"" + strDescription + "\"'"});
        return output ? std::optional(output->substr(0, output->find('\n'))) : std::nullopt;
    }
    bool RemoveMicrophones() const { return Control({"unload-module", "module-remap-source"}).has_value(); }
    bool AddFeed(const std::string& strName) const {
        const std::string strRewinds = m_strKind == "pulse" ? "norewinds=1" : "channels=2";
        return Control({"load-module", "module-null-sink", "sink_name=" + strName, "rate=48000", strRewinds})
            .has_value();
    }
    // A sine of half the full scale, for half a minute or until the next call.
    bool PlaySine(double dFrequency, const std::string& strFeed = "mic_feed") {
        std::vector<float> samples(std::size_t{30} * GUITAR_RATE);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double dTurns = dFrequency * static_cast<double>(i) / GUITAR_RATE;
            samples[i] = 0.5F * static_cast<float>(std::sin(2.0 * std::numbers::pi * dTurns));
        }
        const auto file = GetDirectory() / "sine.wav";
        return WriteWave(samples, GUITAR_RATE, file) &&
               m_sine.Start({"paplay", "--latency-msec=500", "-d", strFeed, file.string()}, GetEnvironment(),
                            GetDirectory(), GetDirectory() / "player.log");
    }

private:
    std::string m_strKind;
    CChildProcess m_sine;
};
