#pragma once

#include "platform/multimedia/MidiOut.h"

#include <memory>

// The narrow interface behind the midiOut functions: a MIDI system is one implementation of these two
// classes.

// One open device. Operations come from any thread; none but Close waits.
class IMidiOutPort {
public:
    virtual ~IMidiOutPort() = default;
    virtual MMRESULT ShortMsg(DWORD dwMessage) = 0;
    virtual MMRESULT GetVolume(DWORD& dwVolume) = 0;
    virtual MMRESULT SetVolume(DWORD dwVolume) = 0;
    // Silences what still sounds, in bounded time, and lets the device go. Called once.
    virtual MMRESULT Close() = 0;

    IMidiOutPort(const IMidiOutPort&) = delete;
    IMidiOutPort& operator=(const IMidiOutPort&) = delete;

protected:
    IMidiOutPort() = default;
};

class IMidiOutBackend {
public:
    virtual ~IMidiOutBackend() = default;
    virtual void Prepare() {}
    // Takes the list of devices anew and gives its length.
    virtual UINT GetNumDevs() = 0;
    virtual MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) = 0;
    // On success the result is 0 and pPort is set.
    virtual MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) = 0;

    IMidiOutBackend(const IMidiOutBackend&) = delete;
    IMidiOutBackend& operator=(const IMidiOutBackend&) = delete;

protected:
    IMidiOutBackend() = default;
};

// Puts a backend in place of the present one and gives that back; null stands for the system's own: the
// built-in synthesizer and the MIDI ports behind it. Handles that are open stay with the backend that opened
// them.
std::shared_ptr<IMidiOutBackend> SetMidiOutBackend(std::shared_ptr<IMidiOutBackend> pBackend);
