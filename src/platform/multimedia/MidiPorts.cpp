#include "platform/multimedia/MidiPorts.h"

#include "platform/multimedia/ShortMessage.h"

#include <fcntl.h>
#include <rtmidi/RtMidi.h>
#include <unistd.h>

#include <array>
#include <bitset>
#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* SEQUENCER = "/dev/snd/seq";
constexpr std::size_t CHANNELS = 16;
constexpr std::size_t KEYS = 128;
constexpr DWORD CONTROL_CHANGE = 0xB0;
constexpr DWORD ALL_SOUND_OFF = 120;
constexpr DWORD ALL_NOTES_OFF = 123;

// Asked for beforehand: where it can't be opened the library prints before it can be told not to.
bool CanOpenSequencer() {
    const int nFile = ::open(SEQUENCER, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (nFile >= 0) {
        ::close(nFile);
    }
    return nFile >= 0;
}

// Null where there is no MIDI system. The library reports by exceptions, which end here.
std::unique_ptr<RtMidiOut> MakeOutput(MidiSystem system) {
    if (system == MidiSystem::AlsaSequencer && !CanOpenSequencer()) {
        return nullptr;
    }
    try {
        auto pOutput = std::make_unique<RtMidiOut>(
            system == MidiSystem::Jack ? RtMidi::UNIX_JACK : RtMidi::LINUX_ALSA, "Fretvane");
        // Without a callback it prints.
        pOutput->setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
        return pOutput;
    } catch (const RtMidiError&) {
        return nullptr;
    }
}

class CMidiPort final : public IMidiOutPort {
public:
    explicit CMidiPort(std::unique_ptr<RtMidiOut> pOutput) : m_pOutput(std::move(pOutput)) {}
    ~CMidiPort() override { Silence(); }

    MMRESULT ShortMsg(DWORD dwMessage) override {
        const std::lock_guard lock(m_mutex);
        return Send(dwMessage);
    }
    MMRESULT GetVolume(DWORD& /*dwVolume*/) override { return MMSYSERR_NOTSUPPORTED; }
    MMRESULT SetVolume(DWORD /*dwVolume*/) override { return MMSYSERR_NOTSUPPORTED; }
    // What is sent has left the program when the call returns: there is nothing to wait for.
    MMRESULT Close() override {
        Silence();
        return MMSYSERR_NOERROR;
    }

private:
    MMRESULT Send(DWORD dwMessage) {
        const std::size_t nLength = ShortMessageLength(dwMessage);
        if (!m_pOutput || nLength == 0) {
            return MMSYSERR_INVALPARAM;
        }
        const auto message = BytesOf(dwMessage);
        try {
            m_pOutput->sendMessage(message.data(), nLength);
        } catch (const RtMidiError&) {
            return MMSYSERR_ERROR;
        }
        Remember(message);
        return MMSYSERR_NOERROR;
    }
    void Remember(const std::array<unsigned char, 3>& message) {
        const std::size_t nChannel = message[0] & 0x0F;
        const int nClass = message[0] & 0xF0;
        if (nClass == 0x90 || nClass == 0x80) {
            m_sounding[nChannel].set(message[1], nClass == 0x90 && message[2] != 0);
        }
    }
    // Devices differ in which of the three they obey.
    void Silence() {
        const std::lock_guard lock(m_mutex);
        for (std::size_t nChannel = 0; m_pOutput && nChannel < CHANNELS; ++nChannel) {
            if (m_sounding[nChannel].none()) {
                continue;
            }
            const auto dwChannel = static_cast<DWORD>(nChannel);
            for (std::size_t nKey = 0; nKey < KEYS; ++nKey) {
                if (m_sounding[nChannel].test(nKey)) {
                    Send(0x80U | dwChannel | static_cast<DWORD>(nKey) << 8);
                }
            }
            Send(CONTROL_CHANGE | dwChannel | ALL_NOTES_OFF << 8);
            Send(CONTROL_CHANGE | dwChannel | ALL_SOUND_OFF << 8);
        }
        m_pOutput.reset();
    }

    std::mutex m_mutex;
    std::unique_ptr<RtMidiOut> m_pOutput;
    std::array<std::bitset<KEYS>, CHANNELS> m_sounding;
};

class CMidiPortsBackend final : public IMidiOutBackend {
public:
    explicit CMidiPortsBackend(MidiSystem system) : m_system(system) {}

    UINT GetNumDevs() override {
        std::vector<std::string> names;
        if (const auto pOutput = MakeOutput(m_system)) {
            for (unsigned int nPort = 0; nPort < pOutput->getPortCount(); ++nPort) {
                names.push_back(pOutput->getPortName(nPort));
            }
        }
        const std::lock_guard lock(m_mutex);
        m_names = std::move(names);
        return static_cast<UINT>(m_names.size());
    }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        const std::string strName = NameOf(uDeviceId);
        if (strName.empty()) {
            return MMSYSERR_BADDEVICEID;
        }
        caps = {};
        caps.szPname = strName;
        caps.wTechnology = MOD_MIDIPORT;
        return MMSYSERR_NOERROR;
    }
    // The port is looked for by its name: ports come and go, and their numbers move.
    MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) override {
        const std::string strName = NameOf(uDeviceId);
        auto pOutput = strName.empty() ? nullptr : MakeOutput(m_system);
        if (!pOutput) {
            return MMSYSERR_BADDEVICEID;
        }
        try {
            for (unsigned int nPort = 0; nPort < pOutput->getPortCount(); ++nPort) {
                if (pOutput->getPortName(nPort) == strName) {
                    pOutput->openPort(nPort, "Reference tone");
                    if (!pOutput->isPortOpen()) {
                        return MMSYSERR_ERROR;
                    }
                    pPort = std::make_shared<CMidiPort>(std::move(pOutput));
                    return MMSYSERR_NOERROR;
                }
            }
        } catch (const RtMidiError&) {
            return MMSYSERR_ERROR;
        }
        return MMSYSERR_NODRIVER;
    }

private:
    std::string NameOf(UINT uDeviceId) {
        const std::lock_guard lock(m_mutex);
        return uDeviceId < m_names.size() ? m_names[uDeviceId] : std::string();
    }

    const MidiSystem m_system;
    std::mutex m_mutex;
    std::vector<std::string> m_names;
};

}  // namespace

std::shared_ptr<IMidiOutBackend> MakeMidiPortsBackend(MidiSystem system) {
    return std::make_shared<CMidiPortsBackend>(system);
}
