#pragma once

#include "platform/base/Types.h"
#include "platform/multimedia/MmResult.h"

#include <cstdint>

// Output of MIDI messages. What stands behind it is the current IMidiOutBackend (MidiOutBackend.h).
//
// Every function may be called from any thread; none waits for sound.

inline constexpr UINT MIDI_MAPPER = 0xFFFFFFFF;

// Values of MIDIOUTCAPS::wTechnology.
inline constexpr WORD MOD_MIDIPORT = 1;
inline constexpr WORD MOD_SYNTH = 2;
inline constexpr WORD MOD_SQSYNTH = 3;
inline constexpr WORD MOD_FMSYNTH = 4;
inline constexpr WORD MOD_MAPPER = 5;

struct MIDIOUTCAPS {
    UINT vDriverVersion = 0;  // major version in the high byte of the low word, minor in the low byte
    CString szPname;          // the name that the user knows the device by
    WORD wTechnology = 0;
    WORD wVoices = 0;  // 0 for a port: what stands behind it isn't known
    WORD wNotes = 0;   // that can sound at once
};

// An output handle; 0 is none.
using HMIDIOUT = std::uintptr_t;

// Begins, in the background, whatever it takes until device 0 can sound. Need not be called.
void midiOutPrepare();
// How many devices there are. This call takes the list anew: device numbers of midiOutGetDevCapsA and
// midiOutOpen mean the devices of the latest list.
UINT midiOutGetNumDevs();
// MIDI_MAPPER tells of device 0 under the technology MOD_MAPPER.
MMRESULT midiOutGetDevCapsA(UINT uDeviceId, MIDIOUTCAPS& caps);
// There is no kind of callback: the last three are 0. On failure hMidiOut is 0.
MMRESULT midiOutOpen(HMIDIOUT& hMidiOut, UINT uDeviceId, std::uintptr_t dwCallback, std::uintptr_t dwInstance,
                     DWORD dwFlags);
// Status, first and second data byte in the low three bytes. A device drops what is no MIDI message.
MMRESULT midiOutShortMsg(HMIDIOUT hMidiOut, DWORD dwMessage);
// The left volume in the low word, the right one in the high word.
MMRESULT midiOutGetVolume(HMIDIOUT hMidiOut, DWORD& dwVolume);
MMRESULT midiOutSetVolume(HMIDIOUT hMidiOut, DWORD dwVolume);
// Silences what still sounds and lets the device go.
MMRESULT midiOutClose(HMIDIOUT hMidiOut);
