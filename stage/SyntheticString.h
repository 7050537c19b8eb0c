#pragma once

#include <cstdint>
#include <vector>

// A plucked string of known pitch, as an ideal recording would hold it.
struct SyntheticString {
    double dFrequency = 110.0;  // of the first partial, Hz
    double dCents = 0.0;        // moves dFrequency
    // Inharmonicity B of a stiff string: partial n sounds at n f1 sqrt((1 + B n^2) / (1 + B)).
    // (Fletcher and Rossing, The Physics of Musical Instruments, section 2.18.) Guitars: 0.00001 to 0.0002.
    double dStiffness = 0.0;
    double dDecay = 0.0;     // seconds in which the first partial falls to 1/e, higher ones faster; 0: steady
    double dPluck = 0.18;    // where it is plucked, as a part of its length: decides the partials' amplitudes
    double dRolloff = 2.0;   // the partials' amplitudes fall as 1 / n^dRolloff: 1 bright, 2 mellow
    double dPeak = 12000.0;  // sum of all partials' amplitudes at the start, in sample units
    double dNoise = 0.0;     // white noise of up to this much either way, in sample units
    double dHighestPartial = 0.45;  // partials above this part of the sample rate are left out
    int nSampleRate = 11025;
    std::uint32_t nSeed = 1;  // of the partials' phases and the noise

    // nCount samples, in floats not rounded and not limited.
    std::vector<float> MakeFloats(int nCount) const;
    // The same rounded to 16 bits and limited to their range.
    std::vector<std::int16_t> MakeSamples(int nCount) const;
    // The sounding frequency of partial n (from 1), Hz.
    double GetPartialFrequency(int n) const;
};

// Rounded to 16 bits and limited to their range.
std::vector<std::int16_t> RoundToSamples(const std::vector<float>& floats);

// nCount values of white noise from -dPeak to dPeak.
std::vector<float> MakeNoise(int nCount, double dPeak, std::uint32_t nSeed);

// The frequency, in equal temperament with A4 = dA, of the note so many semitones above the A4.
double NoteFrequency(int nSemitonesAboveA, double dA = 440.0);
