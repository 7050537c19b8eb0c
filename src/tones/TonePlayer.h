#pragma once

#include "platform/base/Types.h"
#include "tones/MidiSequencer.h"
#include "tones/MidiSong.h"

#include <array>
#include <cstddef>
#include <span>

// Plays reference tones: writes a small Standard MIDI File in memory for each, and plays that. A new tone
// ends the one before it. Without a device nothing is heard. One thread only; no operation waits for sound.
class CTonePlayer {
public:
    CTonePlayer();
    CTonePlayer(const CTonePlayer&) = delete;
    CTonePlayer& operator=(const CTonePlayer&) = delete;

    // Bends all later tones for this frequency of A, in Hz: by a semitone either way at most.
    void SetAFrequency(float hz);
    // One MIDI note, for 800 ms.
    void PlayString(int note, BYTE velocity);
    // Six notes one after the other, 180 ms each. They sound one semitone below their numbers.
    void PlayAllStrings(int n1, int n2, int n3, int n4, int n5, int n6, BYTE velocity);

private:
    friend class CTonePlayerAccess;  // the tests' way in

    static constexpr std::size_t IMAGE_BYTES = 227;

    // Writes the start of the second track: its length, the program and the bend.
    void BeginTrack(BYTE nLength, int nBend);
    // Writes bytes behind those that were written last.
    void Append(std::span<const BYTE> bytes);
    void Play();

    float m_fBend = 0.0F;  // semitones, -1 to 1
    CMidiSong m_song;
    CMidiSequencer m_sequencer;
    std::array<BYTE, IMAGE_BYTES> m_image{};
    std::size_t m_nImageBytes = 0;
};
