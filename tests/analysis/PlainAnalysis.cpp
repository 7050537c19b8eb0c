#include "analysis/PlainAnalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr std::size_t PEAKS = 20;
constexpr std::size_t PROBES = 24;
constexpr std::array<int, 7> PRIMES = {2, 3, 5, 7, 11, 13, 17};
constexpr std::array<float, 7> SHARES = {0.83F, 0.6F, 0.75F, 0.75F, 0.75F, 0.75F, 0.75F};

struct Slot {
    int nHarmonic;
    TestPeak peak;
};
struct Probe {
    float fFrequency = 0.0F;
    float fScore = 0.0F;
    std::vector<Slot> slots;
};

void Score(Probe& probe, const std::vector<TestPeak>& peaks) {
    const auto fRatio = static_cast<float>(std::pow(2.0, -1.0 / PROBES));
    const double dLow = static_cast<float>(static_cast<double>(probe.fFrequency) * fRatio);
    const double dHigh = static_cast<float>(static_cast<double>(probe.fFrequency) / fRatio);
    probe.slots.clear();
    int h = 0;
    for (const TestPeak& peak : peaks) {
        while (h * dHigh < peak.fFrequency) {
            ++h;
        }
        if (h * dLow >= peak.fFrequency) {
            continue;
        }
        if (probe.slots.empty() || probe.slots.back().nHarmonic != h) {
            probe.slots.push_back({h, peak});
        } else if (probe.slots.back().peak.fAmplitude < peak.fAmplitude) {
            probe.slots.back().peak = peak;
        }
    }
    probe.fScore = 0.0F;
    for (const Slot& slot : probe.slots) {
        probe.fScore += slot.peak.fAmplitude;
    }
}

// 0 when there is none.
int Divisor(const Probe& probe) {
    std::array<float, PRIMES.size()> energies{};
    for (const Slot& slot : probe.slots) {
        for (std::size_t q = 0; q < PRIMES.size() && PRIMES.at(q) <= slot.nHarmonic; ++q) {
            if (slot.nHarmonic % PRIMES.at(q) == 0) {
                energies.at(q) += slot.peak.fAmplitude;
                if (static_cast<double>(probe.fScore) * SHARES.at(q) < energies.at(q)) {
                    return PRIMES.at(q);
                }
            }
        }
    }
    return 0;
}

bool IsAccepted(const Probe& probe) {
    float fAdjacent = 0.0F;
    float fLow = 0.0F;
    for (std::size_t i = 0; i < probe.slots.size(); ++i) {
        const int h = probe.slots[i].nHarmonic;
        const float a = probe.slots[i].peak.fAmplitude;
        if (i > 0 && probe.slots[i - 1].nHarmonic == h - 1) {
            fAdjacent += a;
        }
        if (i + 1 < probe.slots.size() && probe.slots[i + 1].nHarmonic == h + 1) {
            fAdjacent += a;
        }
        if (h <= 5) {
            fLow += a;
        }
    }
    return 0.5 * fAdjacent >= 0.5 * probe.fScore && fLow > 0.25 * probe.fScore;
}

PlainFundamental Estimate(const Probe& probe) {
    float fWeighted = 0.0F;
    float fSum = 0.0F;
    for (const Slot& slot : probe.slots) {
        const double dVote =
            static_cast<double>(slot.peak.fFrequency) / slot.nHarmonic * slot.peak.fAmplitude;
        fWeighted = static_cast<float>(fWeighted + dVote);
        fSum += slot.peak.fAmplitude;
    }
    return {static_cast<float>(static_cast<double>(fWeighted) / fSum), fSum};
}

}  // namespace

std::vector<TestPeak> FindPeaksPlainly(std::span<const float> spectrum, std::span<const float> slopeSpectrum,
                                       const PlainSettings& settings) {
    const auto fBin = static_cast<float>(static_cast<double>(settings.nSampleRate) / settings.nBlockSamples);
    const auto fHalfBin = static_cast<float>(settings.nSampleRate / (2.0 * settings.nBlockSamples));
    const auto nFirst = static_cast<std::size_t>(
        settings.nBlockSamples * static_cast<double>(settings.fLowestFrequency) / settings.nSampleRate);
    std::vector<TestPeak> peaks;
    float fBefore = 0.0F;
    float fHere = 0.0F;
    for (std::size_t k = nFirst; k < static_cast<std::size_t>(settings.nBlockSamples) / 2; ++k) {
        const double dReal = spectrum[2 * k];
        const double dImaginary = spectrum[2 * k + 1];
        const double dNextReal = spectrum[2 * k + 2];
        const double dNextImaginary = spectrum[2 * k + 3];
        const auto fAfter = static_cast<float>(dNextReal * dNextReal + dNextImaginary * dNextImaginary);
        if (fHere > fAfter && fHere > fBefore) {
            const auto fCorrection = static_cast<float>(
                (dImaginary * slopeSpectrum[2 * k] - slopeSpectrum[2 * k + 1] * dReal) / fHere);
            if (static_cast<float>(std::abs(static_cast<int>(fCorrection))) < fHalfBin) {
                peaks.push_back(
                    {static_cast<float>(static_cast<double>(k) * fBin + fCorrection), std::sqrt(fHere)});
            }
        }
        fBefore = fHere;
        fHere = fAfter;
    }
    if (peaks.size() > PEAKS) {
        std::sort(peaks.begin(), peaks.end(),
                  [](const TestPeak& a, const TestPeak& b) { return a.fAmplitude > b.fAmplitude; });
        peaks.resize(PEAKS);
        std::sort(peaks.begin(), peaks.end(),
                  [](const TestPeak& a, const TestPeak& b) { return a.fFrequency < b.fFrequency; });
    }
    return peaks;
}

std::vector<PlainFundamental> SievePlainly(const std::vector<TestPeak>& peaks,
                                           const PlainSettings& settings) {
    std::array<Probe, PROBES> probes;
    for (std::size_t t = 0; t < PROBES; ++t) {
        probes.at(t).fFrequency =
            static_cast<float>(std::pow(2.0, static_cast<double>(t) / PROBES) * settings.fLowestFrequency);
        Score(probes.at(t), peaks);
    }
    std::vector<PlainFundamental> accepted;
    for (;;) {
        Probe& best = *std::max_element(probes.begin(), probes.end(),
                                        [](const Probe& a, const Probe& b) { return a.fScore < b.fScore; });
        if (best.fScore <= 0.0F) {
            return accepted;
        }
        const int nDivisor = Divisor(best);
        const double dLifted = static_cast<double>(best.fFrequency) * nDivisor;
        const int nHighest = settings.nSampleRate / 2;
        if (nDivisor > 0 && dLifted < nHighest) {
            best.fFrequency = static_cast<float>(dLifted);
            Score(best, peaks);
        } else {
            if (IsAccepted(best)) {
                accepted.push_back(Estimate(best));
            }
            best.fScore = 0.0F;
        }
    }
}
