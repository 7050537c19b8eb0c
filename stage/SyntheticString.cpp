#include "stage/SyntheticString.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <random>

namespace {

// How much faster each higher partial dies than the one below it.
constexpr double DECAY_STEP = 0.15;

// From 0 to 1. Standard distributions differ between libraries, this does not.
double Uniform(std::mt19937& generator) {
    return static_cast<double>(generator()) / static_cast<double>(std::mt19937::max());
}

}  // namespace

double SyntheticString::GetPartialFrequency(int n) const {
    const double dFirst = dFrequency * std::exp2(dCents / 1200.0);
    return n * dFirst * std::sqrt((1.0 + dStiffness * n * n) / (1.0 + dStiffness));
}

std::vector<float> SyntheticString::MakeFloats(int nCount) const {
    std::mt19937 generator(nSeed);
    std::vector<double> sum(static_cast<std::size_t>(nCount));
    double dAmplitudes = 0.0;
    for (int n = 1; GetPartialFrequency(n) < dHighestPartial * nSampleRate; ++n) {
        const double dAmplitude = std::sin(n * std::numbers::pi * dPluck) / std::pow(n, dRolloff);
        dAmplitudes += std::abs(dAmplitude);
        const double dStep = 2.0 * std::numbers::pi * GetPartialFrequency(n) / nSampleRate;
        const double dPhase = 2.0 * std::numbers::pi * Uniform(generator);
        const double dLoss = dDecay > 0.0 ? (1.0 + DECAY_STEP * (n - 1)) / (dDecay * nSampleRate) : 0.0;
        // A phasor that turns and shrinks by the same factor at every sample.
        std::complex<double> phasor = std::polar(dAmplitude, dPhase);
        const std::complex<double> factor = std::polar(std::exp(-dLoss), dStep);
        for (double& dSample : sum) {
            dSample += phasor.imag();
            phasor *= factor;
        }
    }
    std::vector<float> floats(sum.size());
    const double dScale = dAmplitudes > 0.0 ? dPeak / dAmplitudes : 0.0;
    std::transform(sum.begin(), sum.end(), floats.begin(), [&](double d) {
        return static_cast<float>(d * dScale +
                                  (dNoise > 0.0 ? dNoise * (2.0 * Uniform(generator) - 1.0) : 0.0));
    });
    return floats;
}

std::vector<std::int16_t> SyntheticString::MakeSamples(int nCount) const {
    return RoundToSamples(MakeFloats(nCount));
}

std::vector<std::int16_t> RoundToSamples(const std::vector<float>& floats) {
    std::vector<std::int16_t> samples(floats.size());
    std::transform(floats.begin(), floats.end(), samples.begin(), [](float f) {
        return static_cast<std::int16_t>(std::clamp(std::lround(f), -32768L, 32767L));
    });
    return samples;
}

std::vector<float> MakeNoise(int nCount, double dPeak, std::uint32_t nSeed) {
    std::mt19937 generator(nSeed);
    std::vector<float> noise(static_cast<std::size_t>(nCount));
    std::generate(noise.begin(), noise.end(),
                  [&] { return static_cast<float>(dPeak * (2.0 * Uniform(generator) - 1.0)); });
    return noise;
}

double NoteFrequency(int nSemitonesAboveA, double dA) {
    return dA * std::exp2(nSemitonesAboveA / 12.0);
}
