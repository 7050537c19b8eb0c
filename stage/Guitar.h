#pragma once

#include <filesystem>
#include <vector>

// A sampled guitar without a player: notes rendered through the General MIDI SoundFont, with pitches that are
// measured afterwards rather than believed (SoundFonts are out of tune by some cents).

struct Note {
    int nKey = 40;        // MIDI note number; 40 is E2
    double dCents = 0.0;  // by how much it is detuned
};

inline constexpr int GUITAR_RATE = 48000;

// One plucked note, mono, nSeconds long, peak at half of full scale. Empty if the SoundFont can't be had.
std::vector<float> RenderPluck(const Note& note, double dSeconds);

// The pitch in Hz that the harmonics of a steady stretch of samples agree on: maxima of the Hann-windowed
// Fourier transform near the first partials of dExpected, each within 60 cents and divided by its number,
// weighted by amplitude. Good to some hundredths of a cent over half a second and more.
double MeasurePitch(const std::vector<float>& samples, int nRate, double dExpected);

// 16 bits, mono. False if the file can't be written.
bool WriteWave(const std::vector<float>& samples, int nRate, const std::filesystem::path& file);
