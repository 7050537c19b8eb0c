#pragma once

#include "platform/base/Types.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

inline constexpr int SYNTHESIZER_RATE = 44100;

// A General MIDI synthesizer whose guitar notes are in tune.
//
// Two things put such a synthesizer out of tune. The samples of a SoundFont are off by some cents, each by
// its own, and the start of a note not as much as the loop that follows; and the sum of key, tuning and bend
// is cut to whole cents. So the pitch of each guitar key is followed through a whole note when the SoundFont
// is loaded. Each new note goes to another of several synthesizers, tuned to the whole cent below, and the
// sound of that one is stretched by what is missing at each moment: the fraction of the cent, less the
// deviation of the sample. The bend is the one that holds when the note starts.
//
// One thread at a time. Nothing is printed.
class CToneSynthesizer {
public:
    // Takes about a tenth of a second. Null if the SoundFont can't be had.
    static std::unique_ptr<CToneSynthesizer> Load(const std::string& strSoundFont);
    ~CToneSynthesizer();
    CToneSynthesizer(const CToneSynthesizer&) = delete;
    CToneSynthesizer& operator=(const CToneSynthesizer&) = delete;

    // A short message; what is no message, or none that a synthesizer takes, is dropped. A system reset fades
    // out what sounds within some milliseconds.
    void ShortMsg(DWORD dwMessage);
    // The next sound: pairs of left and right. Replaces what is in the span.
    void Render(std::span<float> stereo);
    // Nothing could be heard of what was rendered last.
    bool IsSilent() const { return m_bSilent; }

private:
    struct Voice;

    static constexpr std::size_t CHANNELS = 16;
    static constexpr std::size_t KEYS = 128;

    CToneSynthesizer();
    void MeasureTracks();
    void NoteOn(std::size_t nChannel, int nKey, int nVelocity);
    void NoteOff(std::size_t nChannel, int nKey);
    void Reset();
    void AddVoices(std::span<float> stereo);

    std::vector<std::unique_ptr<Voice>> m_voices;
    std::size_t m_nNextVoice = 0;
    std::array<std::vector<float>, KEYS> m_tracks;  // of the guitar's keys; empty where unknown
    std::array<int, CHANNELS> m_bends{};            // 0 to 16383
    std::array<int, CHANNELS> m_programs{};
    std::array<std::array<BYTE, KEYS>, CHANNELS> m_playedBy{};  // which voice has a key's latest note
    std::vector<float> m_tail;                                  // what is left of a fade-out
    bool m_bSilent = true;
};
