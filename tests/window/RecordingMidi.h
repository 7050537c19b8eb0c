#pragma once

#include "platform/multimedia/MidiOutBackend.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

// A synthesizer that writes down the notes that begin. Any thread.
class CRecordingMidi final : public IMidiOutBackend,
                             public IMidiOutPort,
                             public std::enable_shared_from_this<CRecordingMidi> {
public:
    // The notes since the last call, by their MIDI numbers.
    std::vector<int> TakeNotes() {
        const std::scoped_lock lock(m_lock);
        return std::exchange(m_notes, {});
    }
    std::size_t CountNotes() {
        const std::scoped_lock lock(m_lock);
        return m_notes.size();
    }
    // The last bend of the wheel.
    int GetBend() {
        const std::scoped_lock lock(m_lock);
        return m_nBend;
    }
    // Called at each note, on the thread that plays it. Set while nothing sounds.
    std::function<void()> m_fnOnNote;

    UINT GetNumDevs() override { return 1; }
    MMRESULT GetDevCaps(UINT /*uDeviceId*/, MIDIOUTCAPS& caps) override {
        caps.wTechnology = MOD_SYNTH;
        return MMSYSERR_NOERROR;
    }
    MMRESULT Open(UINT /*uDeviceId*/, std::shared_ptr<IMidiOutPort>& pPort) override {
        pPort = shared_from_this();
        return MMSYSERR_NOERROR;
    }
    MMRESULT ShortMsg(DWORD dwMessage) override {
        const int nFirst = static_cast<int>(dwMessage >> 8U & 0x7FU);
        const int nSecond = static_cast<int>(dwMessage >> 16U & 0x7FU);
        std::unique_lock lock(m_lock);
        if ((dwMessage & 0xF0U) == 0xE0U) {
            m_nBend = nFirst | nSecond << 7;
        }
        if ((dwMessage & 0xF0U) == 0x90U && nSecond != 0) {
            m_notes.push_back(nFirst);
            lock.unlock();
            if (m_fnOnNote) {
                m_fnOnNote();
            }
        }
        return MMSYSERR_NOERROR;
    }
    MMRESULT GetVolume(DWORD& dwVolume) override {
        dwVolume = 0;
        return MMSYSERR_NOERROR;
    }
    MMRESULT SetVolume(DWORD /*dwVolume*/) override { return MMSYSERR_NOERROR; }
    MMRESULT Close() override { return MMSYSERR_NOERROR; }

private:
    std::mutex m_lock;
    std::vector<int> m_notes;
    int m_nBend = 0;
};
