#pragma once

#include "stage/Guitar.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <string>

// A note as it will be played: its samples on disk, and what an exact tuner has to say of it.
struct PreparedPluck {
    std::filesystem::path waveFile;
    std::string strNote;
    double dFrequency = 0.0;
    double dCents = 0.0;
};

inline constexpr std::array<const char*, 12> NOTE_NAMES{"C",  "C#", "D",  "Eb", "E",  "F",
                                                        "F#", "G",  "G#", "A",  "Bb", "B"};

// Renders the note and measures what came out, over the stretch between a third and two thirds of it. A
// frequency of 0 tells that it failed.
inline PreparedPluck PreparePluck(const Note& note, double dSeconds, const std::filesystem::path& waveFile) {
    PreparedPluck pluck{waveFile, {}, 0.0, 0.0};
    const std::vector<float> samples = RenderPluck(note, dSeconds);
    if (samples.empty() || !WriteWave(samples, GUITAR_RATE, waveFile)) {
        return pluck;
    }
    const double dAsked = 440.0 * std::exp2((note.nKey - 69 + note.dCents / 100.0) / 12.0);
    const auto nThird = static_cast<std::ptrdiff_t>(samples.size() / 3);
    pluck.dFrequency =
        MeasurePitch({samples.begin() + nThird, samples.begin() + 2 * nThird}, GUITAR_RATE, dAsked);
    const double dKey = 69.0 + 12.0 * std::log2(pluck.dFrequency / 440.0);
    const long nNearest = std::lround(dKey);
    pluck.strNote = NOTE_NAMES[static_cast<std::size_t>(nNearest % 12)];
    pluck.dCents = 100.0 * (dKey - static_cast<double>(nNearest));
    return pluck;
}
