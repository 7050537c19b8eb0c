#pragma once

#include "analysis/AnalyzerTester.h"

#include <span>
#include <vector>

// Peak picking and harmonic sieve in their plainest form, step by step with a branch for each case: what the
// analyser does faster must come out the same, to the last bit.

struct PlainFundamental {
    float fFrequency;
    float fRawStrength;

    friend bool operator==(const PlainFundamental&, const PlainFundamental&) = default;
};

struct PlainSettings {
    int nBlockSamples;
    int nSampleRate;
    float fLowestFrequency;
};

// The 20 strongest peaks of the spectra through the window and its slope, in order of rising frequency.
std::vector<TestPeak> FindPeaksPlainly(std::span<const float> spectrum, std::span<const float> slopeSpectrum,
                                       const PlainSettings& settings);

// The fundamentals that 24 probes accept for these peaks, in the order of acceptance.
std::vector<PlainFundamental> SievePlainly(const std::vector<TestPeak>& peaks, const PlainSettings& settings);
