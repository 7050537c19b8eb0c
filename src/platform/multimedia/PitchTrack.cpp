#include "platform/multimedia/PitchTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <numeric>

namespace {

constexpr double TURN = 2.0 * std::numbers::pi;
constexpr std::size_t HARMONICS = 4;
// Whole periods, so that no harmonic leaks into its neighbours, and enough for the main lobe to stay clear of
// them.
constexpr double PERIODS_OF_WINDOW = 4.0;
constexpr double SECONDS_OF_WINDOW = 0.06;
constexpr std::size_t VALUES_OF_THE_END = 8;
constexpr double CENTS_OF_OCTAVE = 1200.0;
constexpr double MOST_CENTS = 50.0;

using Transforms = std::array<std::complex<double>, HARMONICS>;

// The Hann-windowed Fourier transform at each harmonic; phases count from the first sample of the window.
Transforms TransformHarmonics(std::span<const float> samples, int nRate, double dFrequency) {
    Transforms steps;
    Transforms phasors;
    Transforms sums{};
    phasors.fill(1.0);
    for (std::size_t i = 0; i < HARMONICS; ++i) {
        steps[i] = std::polar(1.0, -TURN * dFrequency * static_cast<double>(i + 1) / nRate);
    }
    const std::complex<double> windowStep = std::polar(1.0, TURN / static_cast<double>(samples.size()));
    std::complex<double> windowPhasor = 1.0;
    for (const float fSample : samples) {
        const double dWeighted = static_cast<double>(fSample) * 0.5 * (1.0 - windowPhasor.real());
        windowPhasor *= windowStep;
        for (std::size_t i = 0; i < HARMONICS; ++i) {
            sums[i] += phasors[i] * dWeighted;
            phasors[i] *= steps[i];
        }
    }
    return sums;
}

// The relative difference from the expected frequency between two windows so many seconds apart.
double DifferenceBetween(const Transforms& first, const Transforms& second, double dFrequency,
                         double dSeconds) {
    double dWeighted = 0.0;
    double dWeights = 0.0;
    for (std::size_t i = 0; i < HARMONICS; ++i) {
        const double dTurnsExpected = dFrequency * static_cast<double>(i + 1) * dSeconds;
        const double dTurns = std::arg(second[i] * std::conj(first[i])) / TURN - dTurnsExpected;
        const double dWeight = std::abs(first[i]);
        dWeighted += dWeight * (dTurns - std::round(dTurns)) / dTurnsExpected;
        dWeights += dWeight;
    }
    return dWeights > 0.0 ? dWeighted / dWeights : 0.0;
}

}  // namespace

std::vector<float> TrackPitch(std::span<const float> samples, int nRate, double dExpected) {
    const double dPeriods = std::max(PERIODS_OF_WINDOW, std::ceil(SECONDS_OF_WINDOW * dExpected));
    const auto nWindow = static_cast<std::size_t>(std::lround(dPeriods * nRate / dExpected));
    const auto nStep = static_cast<std::size_t>(std::lround(PITCH_TRACK_STEP * nRate));
    const bool bSound = std::any_of(samples.begin(), samples.end(), [](float f) { return f != 0.0F; });
    if (!bSound || samples.size() < nWindow + VALUES_OF_THE_END * nStep) {
        return {};
    }
    std::vector<float> measured;
    Transforms last = TransformHarmonics(samples.first(nWindow), nRate, dExpected);
    for (std::size_t n = nStep; n + nWindow <= samples.size(); n += nStep) {
        const Transforms next = TransformHarmonics(samples.subspan(n, nWindow), nRate, dExpected);
        const double dSeconds = static_cast<double>(nStep) / nRate;
        const double dDifference = DifferenceBetween(last, next, dExpected, dSeconds);
        const double dCents = CENTS_OF_OCTAVE * std::log2(1.0 + dDifference);
        measured.push_back(static_cast<float>(std::clamp(dCents, -MOST_CENTS, MOST_CENTS)));
        last = next;
    }
    // The first value stands in the middle between the first two windows.
    const auto nBefore = static_cast<std::size_t>(
        std::lround(static_cast<double>(nWindow + nStep) / 2.0 / static_cast<double>(nStep)));
    std::vector<float> track(nBefore, measured.front());
    track.insert(track.end(), measured.begin(), measured.end());
    const auto end = measured.end() - static_cast<std::ptrdiff_t>(VALUES_OF_THE_END);
    track.push_back(std::accumulate(end, measured.end(), 0.0F) / static_cast<float>(VALUES_OF_THE_END));
    return track;
}
