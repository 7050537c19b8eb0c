#pragma once

#include "platform/multimedia/MidiOutBackend.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

// A synthesizer that writes down the notes that begin. Any thread.
class CRecordingMidi final : public IMidiOutBackend, public std::enable_shared_from_this<CRecordingMidi> {
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
        pPort = std::make_shared<CPort>(shared_from_this());
        return MMSYSERR_NOERROR;
    }

private:
    class CPort final : public IMidiOutPort {
    public:
        explicit CPort(std::shared_ptr<CRecordingMidi> pMidi) : m_pMidi(std::move(pMidi)) {}
        MMRESULT ShortMsg(DWORD dwMessage) override {
            if ((dwMessage & 0xF0U) == 0xE0U) {
                const std::scoped_lock lock(m_pMidi->m_lock);
                m_pMidi->m_nBend =
                    static_cast<int>((dwMessage >> 8U & 0x7FU) | (dwMessage >> 16U & 0x7FU) << 7U);
            }
            if ((dwMessage & 0xF0U) == 0x90U && (dwMessage >> 16U) != 0) {
                m_pMidi->Note(static_cast<int>(dwMessage >> 8U & 0x7FU));
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
        const std::shared_ptr<CRecordingMidi> m_pMidi;
    };

    void Note(int nNote) {
        {
            const std::scoped_lock lock(m_lock);
            m_notes.push_back(nNote);
        }
        if (m_fnOnNote) {
            m_fnOnNote();
        }
    }

    std::mutex m_lock;
    std::vector<int> m_notes;
    int m_nBend = 0;
};

// Puts one in the place of the synthesizer for the length of a test.
class CRecordingMidiScope {
public:
    CRecordingMidiScope() : m_pPrevious(SetMidiOutBackend(m_pMidi)) {}
    ~CRecordingMidiScope() { SetMidiOutBackend(m_pPrevious); }
    CRecordingMidiScope(const CRecordingMidiScope&) = delete;
    CRecordingMidiScope& operator=(const CRecordingMidiScope&) = delete;
    CRecordingMidiScope(CRecordingMidiScope&&) = delete;
    CRecordingMidiScope& operator=(CRecordingMidiScope&&) = delete;

    CRecordingMidi* operator->() const { return m_pMidi.get(); }

private:
    const std::shared_ptr<CRecordingMidi> m_pMidi = std::make_shared<CRecordingMidi>();
    const std::shared_ptr<IMidiOutBackend> m_pPrevious;
};
