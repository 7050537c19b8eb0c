// How exact the reading is, as a table in Markdown: synthetic strings from E2 to E6 through analysis and
// tracker, in blocks as the tuner makes them from a microphone.

#include "analysis/NoteTracker.h"
#include "analysis/SpectrumAnalyzer.h"
#include "platform/base/String.h"
#include "platform/signal/VectorOperations.h"
#include "stage/SyntheticString.h"
#include "window/Strongest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <vector>

namespace {

constexpr int RATE = 11025;
constexpr int BLOCK = 1024;
constexpr int HOP = 64;
constexpr float LOWEST = 50.0F;
constexpr int SAMPLES = RATE;      // one second of each
constexpr int SETTLED = RATE / 2;  // what is read from here on counts
constexpr double BUILT_IN = 0.5;   // cents that the tracker adds by design

constexpr std::array DETUNINGS{-41.0, -17.0, 0.0, 6.0, 29.0};
constexpr std::array<std::uint32_t, 3> SEEDS{1, 2, 3};

struct Kind {
    const char* szName;
    double dStiffness;
    double dNoise;  // dB below the string's power; 0: none
};
constexpr std::array KINDS{Kind{"ideal", 0.0, 0.0}, Kind{"stiff, B = 0.00005", 5e-5, 0.0},
                           Kind{"noise at -20 dB", 0.0, 20.0}, Kind{"stiff, noise at -20 dB", 5e-5, 20.0}};

// The first and last key of a row, as MIDI numbers them.
struct Range {
    const char* szName;
    int nFirst;
    int nLast;
};
constexpr std::array RANGES{Range{"E2 to Eb3", 40, 51}, Range{"E3 to Eb4", 52, 63},
                            Range{"E4 to Eb5", 64, 75}, Range{"E5 to E6", 76, 88}};

struct Tally {
    std::vector<double> errors;      // cents, without what is built in
    std::vector<double> firstRight;  // milliseconds from the pluck
    std::vector<double> bounds;      // cents, of one block
    int nReadings = 0;
    int nWrongOctave = 0;
    int nWrongNote = 0;
    int nNeverRight = 0;
};

double Power(const std::vector<float>& samples) {
    double dSum = 0.0;
    for (const float f : samples) {
        dSum += static_cast<double>(f) * f;
    }
    return dSum / static_cast<double>(samples.size());
}

// The least standard deviation that any unbiased estimate of the first partial's frequency can have from one
// block, in cents, the partials' frequencies tied together and everything else unknown: the Cramer-Rao bound,
// var(f1) = 24 s^2 fs^2 / ((2 pi)^2 N^3 sum(n^2 A_n^2)). (Kay, Fundamentals of Statistical Signal Processing,
// volume I, 1993, example 3.14, for one sinusoid; partials add their n^2-fold information.)
double CramerRaoCents(const SyntheticString& string, double dScale, double dNoisePower) {
    double dInformation = 0.0;
    for (int n = 1; string.GetPartialFrequency(n) < string.dHighestPartial * RATE; ++n) {
        const double dAmplitude =
            dScale * std::sin(n * std::numbers::pi * string.dPluck) / std::pow(n, string.dRolloff);
        dInformation += n * n * dAmplitude * dAmplitude;
    }
    const double dVariance = 24.0 * dNoisePower / (std::pow(BLOCK, 3) * dInformation);
    const double dDeviation = std::sqrt(dVariance) * RATE / (2.0 * std::numbers::pi);
    return 1200.0 * std::log2(1.0 + dDeviation / string.GetPartialFrequency(1));
}

// The sum of the partials' amplitudes before scaling, as the string has them.
double SumOfAmplitudes(const SyntheticString& string) {
    double dSum = 0.0;
    for (int n = 1; string.GetPartialFrequency(n) < string.dHighestPartial * RATE; ++n) {
        dSum += std::abs(std::sin(n * std::numbers::pi * string.dPluck)) / std::pow(n, string.dRolloff);
    }
    return dSum;
}

void Count(Tally& tally, const NoteReading& reading, int nKey, double dCents, int nTime, bool& bRight) {
    const double dPosition = 100.0 * (reading.semitone + 12 * reading.octave) + reading.cents;
    // Octaves are numbered from the C below; key 12 is C0.
    const double dError = dPosition - BUILT_IN - (100.0 * (nKey - 12) + dCents);
    const bool bNear = std::abs(dError) < 50.0;
    if (bNear && !bRight) {
        bRight = true;
        tally.firstRight.push_back(1000.0 * nTime / RATE);
    }
    if (nTime < SETTLED) {
        return;
    }
    ++tally.nReadings;
    if (bNear) {
        tally.errors.push_back(dError);
        return;
    }
    const double dOctaves = dError / 1200.0;
    const bool bOctave = std::abs(dOctaves - std::round(dOctaves)) * 1200.0 < 50.0;
    ++(bOctave ? tally.nWrongOctave : tally.nWrongNote);
}

void Play(Tally& tally, CSpectrumAnalyzer& analyzer, const Kind& kind, int nKey, double dCents,
          std::uint32_t nSeed) {
    SyntheticString string{.dFrequency = NoteFrequency(nKey - 69),
                           .dCents = dCents,
                           .dStiffness = kind.dStiffness,
                           .nSampleRate = RATE,
                           .nSeed = nSeed};
    const double dPower = Power(string.MakeFloats(SAMPLES));
    if (kind.dNoise > 0.0) {
        const double dNoisePower = dPower * std::pow(10.0, -kind.dNoise / 10.0);
        string.dNoise = std::sqrt(3.0 * dNoisePower);  // even between both limits
        tally.bounds.push_back(CramerRaoCents(string, string.dPeak / SumOfAmplitudes(string), dNoisePower));
    }
    const std::vector<std::int16_t> sound = string.MakeSamples(SAMPLES);
    // It is plucked after a silence.
    std::vector<std::int16_t> samples(BLOCK);
    samples.insert(samples.end(), sound.begin(), sound.end());
    CNoteTracker tracker;
    bool bRight = false;
    for (int nStart = 0; nStart + BLOCK <= static_cast<int>(samples.size()); nStart += HOP) {
        nspsbIntToFloat(samples.data() + nStart, analyzer.GetInputBuffer(), BLOCK, 16, 0);
        const float fLevel = analyzer.ComputeLevel();
        analyzer.Analyze(false, HOP);
        const auto candidates = analyzer.GetCandidates();
        const NoteReading reading =
            tracker.Update(candidates[FindStrongest(candidates)], static_cast<float>(HOP), RATE, fLevel);
        if (!tracker.IsHolding()) {
            Count(tally, reading, nKey, dCents, nStart, bRight);
        }
    }
    tally.nNeverRight += bRight ? 0 : 1;
}

std::optional<double> Quantile(std::vector<double> values, double dPart) {
    if (values.empty()) {
        return std::nullopt;
    }
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(dPart * static_cast<double>(values.size() - 1))];
}

double Mean(const std::vector<double>& values) {
    double dSum = 0.0;
    for (const double d : values) {
        dSum += d;
    }
    return values.empty() ? 0.0 : dSum / static_cast<double>(values.size());
}

void PrintRow(const Kind& kind, const Range& range, const Tally& tally) {
    std::vector<double> sizes;
    for (const double d : tally.errors) {
        sizes.push_back(std::abs(d));
    }
    const auto percent = [&](int n) { return tally.nReadings > 0 ? 100.0 * n / tally.nReadings : 0.0; };
    const auto bound = tally.bounds.empty() ? std::nullopt : std::optional(Mean(tally.bounds));
    const CString strBound = bound ? FormatText("%.3f", *bound) : CString("0");
    std::printf("| %s | %s | %+.2f | %.2f | %.2f | %.2f %% | %.2f %% | %d | %.0f | %.0f | %s |\n",
                kind.szName, range.szName, Mean(tally.errors), Quantile(sizes, 0.5).value_or(0.0),
                Quantile(sizes, 0.95).value_or(0.0), percent(tally.nWrongOctave), percent(tally.nWrongNote),
                tally.nNeverRight, Quantile(tally.firstRight, 0.5).value_or(0.0),
                Quantile(tally.firstRight, 0.95).value_or(0.0), strBound.c_str());
}

}  // namespace

int main() {
    CSpectrumAnalyzer analyzer;
    if (!analyzer.Setup(BLOCK, RATE, 20, 7, 24, LOWEST)) {
        return EXIT_FAILURE;
    }
    std::puts(
        "| string | notes | mean | median | 95 % | wrong octave | other note | never read | first right, ms "
        "| "
        "95 % | bound, one block |\n|---|---|---|---|---|---|---|---|---|---|---|");
    for (const Kind& kind : KINDS) {
        for (const Range& range : RANGES) {
            Tally tally;
            for (int nKey = range.nFirst; nKey <= range.nLast; ++nKey) {
                for (const double dCents : DETUNINGS) {
                    for (const std::uint32_t nSeed : SEEDS) {
                        Play(tally, analyzer, kind, nKey, dCents, nSeed);
                    }
                }
            }
            PrintRow(kind, range, tally);
        }
    }
    return EXIT_SUCCESS;
}
