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
// its own; and the sum of key, tuning and bend is cut to whole cents. So the deviation of each key is
// measured when the SoundFont is loaded, and there are several synthesizers, apart by a fraction of a cent
// through their sample rates. A note goes to the one, and to the whole cent in it, where it comes closest to
// its frequency with the bend that holds when it starts: within an eighth of a cent.
//
// One thread at a time. Nothing is printed.
class CToneSynthesizer {
public:
    // Takes some tenths of a second. Null if the SoundFont can't be had.
    static std::unique_ptr<CToneSynthesizer> Load(const std::string& strSoundFont);
    ~CToneSynthesizer();
    CToneSynthesizer(const CToneSynthesizer&) = delete;
    CToneSynthesizer& operator=(const CToneSynthesizer&) = delete;

    // A short message; what is no message, or none that a synthesizer takes, is dropped.
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
    void MeasureDeviations();
    void NoteOn(std::size_t nChannel, int nKey, int nVelocity);
    void NoteOff(std::size_t nChannel, int nKey);
    double DeviationOf(std::size_t nChannel, int nKey) const;
    void Reset();

    std::vector<std::unique_ptr<Voice>> m_voices;  // ordered by their offset in cents
    std::array<double, KEYS> m_deviations{};       // cents, of the guitar's keys
    std::array<int, CHANNELS> m_bends{};           // 0 to 16383
    std::array<int, CHANNELS> m_programs{};
    std::array<std::array<BYTE, KEYS>, CHANNELS> m_playedBy{};  // which voice has a key's latest note
    std::vector<float> m_mix;
    bool m_bSilent = true;
};
