#include "platform/multimedia/PitchEstimate.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>

namespace {

constexpr double TURN = 2.0 * std::numbers::pi;
// Long enough that the window's main lobe stays clear of the neighbouring harmonics.
constexpr double PERIODS_OF_WINDOW = 8.0;
constexpr int HARMONICS = 4;
constexpr double HALF_SEMITONE = 0.03;

// The Hann-windowed Fourier transform at one frequency.
std::complex<double> TransformAt(std::span<const float> samples, int nRate, double fFrequency) {
    const std::complex<double> step = std::polar(1.0, -TURN * fFrequency / nRate);
    const std::complex<double> windowStep = std::polar(1.0, TURN / static_cast<double>(samples.size()));
    std::complex<double> phasor = 1.0;
    std::complex<double> windowPhasor = 1.0;
    std::complex<double> sum = 0.0;
    for (const float fSample : samples) {
        sum += phasor * (static_cast<double>(fSample) * 0.5 * (1.0 - windowPhasor.real()));
        phasor *= step;
        windowPhasor *= windowStep;
    }
    return sum;
}

}  // namespace

double EstimatePitch(std::span<const float> samples, int nRate, double fExpected) {
    const auto nWindow = static_cast<std::size_t>(PERIODS_OF_WINDOW * nRate / fExpected);
    if (nWindow * 2 > samples.size()) {
        return 0.0;
    }
    double fEstimate = fExpected;
    // Windows ever farther apart: each step is small enough for the phase to be unambiguous after the last.
    const std::size_t nFarthest = samples.size() - nWindow;
    for (std::size_t nApart = nWindow / 8; nApart > 0;
         nApart = nApart == nFarthest ? 0 : std::min(nApart * 3, nFarthest)) {
        double fWeighted = 0.0;
        double fWeights = 0.0;
        for (int nHarmonic = 1; nHarmonic <= HARMONICS; ++nHarmonic) {
            const double fCentre = fEstimate * nHarmonic;
            const auto first = TransformAt(samples.first(nWindow), nRate, fCentre);
            const auto second = TransformAt(samples.subspan(nApart, nWindow), nRate, fCentre);
            const double fSeconds = static_cast<double>(nApart) / nRate;
            const double fTurns =
                std::arg(second * std::conj(first)) / TURN - std::fmod(fCentre * fSeconds, 1.0);
            const double fDifference = (fTurns - std::round(fTurns)) / fSeconds;
            const double fWeight = std::abs(first) * nHarmonic;
            fWeighted += fWeight * (fCentre + fDifference) / nHarmonic;
            fWeights += fWeight;
        }
        if (fWeights <= 0.0) {
            return 0.0;
        }
        fEstimate = fWeighted / fWeights;
    }
    return std::fabs(fEstimate / fExpected - 1.0) < HALF_SEMITONE ? fEstimate : 0.0;
}
