#include "platform/multimedia/MidiOut.h"

#include "platform/multimedia/BackendSlot.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/SystemMidiOut.h"

#include <map>
#include <mutex>
#include <utility>

namespace {

// What is held once for the program. With its end the synthesizer ends too.
struct Registry {
    CBackendSlot<IMidiOutBackend> m_backend{&MakeSystemMidiOutBackend};
    std::mutex m_mutex;  // of the handles; never held while a backend is called
    std::map<HMIDIOUT, std::shared_ptr<IMidiOutPort>> m_ports;
    HMIDIOUT m_hLast = 0;
};

Registry& GetRegistry() {
    static Registry registry;
    return registry;
}

std::shared_ptr<IMidiOutBackend> CurrentBackend() {
    return GetRegistry().m_backend.Get();
}

// Null for a handle that is not open.
std::shared_ptr<IMidiOutPort> FindPort(HMIDIOUT hMidiOut) {
    Registry& registry = GetRegistry();
    const std::lock_guard lock(registry.m_mutex);
    const auto found = registry.m_ports.find(hMidiOut);
    return found == registry.m_ports.end() ? nullptr : found->second;
}

}  // namespace

std::shared_ptr<IMidiOutBackend> SetMidiOutBackend(std::shared_ptr<IMidiOutBackend> pBackend) {
    return GetRegistry().m_backend.Exchange(std::move(pBackend));
}

void midiOutPrepare() {
    CurrentBackend()->Prepare();
}

UINT midiOutGetNumDevs() {
    return CurrentBackend()->GetNumDevs();
}

MMRESULT midiOutGetDevCapsA(UINT uDeviceId, MIDIOUTCAPS& caps) {
    const MMRESULT result = CurrentBackend()->GetDevCaps(uDeviceId == MIDI_MAPPER ? 0 : uDeviceId, caps);
    if (result == MMSYSERR_NOERROR && uDeviceId == MIDI_MAPPER) {
        caps.wTechnology = MOD_MAPPER;
    }
    return result;
}

MMRESULT midiOutOpen(HMIDIOUT& hMidiOut, UINT uDeviceId, std::uintptr_t dwCallback, std::uintptr_t dwInstance,
                     DWORD dwFlags) {
    hMidiOut = 0;
    if (dwCallback != 0 || dwInstance != 0 || dwFlags != 0) {
        return MMSYSERR_INVALPARAM;
    }
    std::shared_ptr<IMidiOutPort> pPort;
    const MMRESULT result = CurrentBackend()->Open(uDeviceId == MIDI_MAPPER ? 0 : uDeviceId, pPort);
    if (result == MMSYSERR_NOERROR) {
        Registry& registry = GetRegistry();
        const std::lock_guard lock(registry.m_mutex);
        hMidiOut = ++registry.m_hLast;
        registry.m_ports[hMidiOut] = std::move(pPort);
    }
    return result;
}

MMRESULT midiOutShortMsg(HMIDIOUT hMidiOut, DWORD dwMessage) {
    const auto pPort = FindPort(hMidiOut);
    return pPort ? pPort->ShortMsg(dwMessage) : MMSYSERR_INVALHANDLE;
}

MMRESULT midiOutGetVolume(HMIDIOUT hMidiOut, DWORD& dwVolume) {
    const auto pPort = FindPort(hMidiOut);
    return pPort ? pPort->GetVolume(dwVolume) : MMSYSERR_INVALHANDLE;
}

MMRESULT midiOutSetVolume(HMIDIOUT hMidiOut, DWORD dwVolume) {
    const auto pPort = FindPort(hMidiOut);
    return pPort ? pPort->SetVolume(dwVolume) : MMSYSERR_INVALHANDLE;
}

MMRESULT midiOutClose(HMIDIOUT hMidiOut) {
    std::shared_ptr<IMidiOutPort> pPort;
    {
        Registry& registry = GetRegistry();
        const std::lock_guard lock(registry.m_mutex);
        auto node = registry.m_ports.extract(hMidiOut);
        if (node.empty()) {
            return MMSYSERR_INVALHANDLE;
        }
        pPort = std::move(node.mapped());
    }
    return pPort->Close();
}
