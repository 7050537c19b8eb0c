// What one block and one frame of the analysis cost. An iteration is a second of sound; the counters are of
// the fastest one: a block, two bare transforms. The cost of a block is also given as a ratio to two bare
// transforms of the same length, measured in the same run around the blocks, so that a busy machine slows
// both.

#include "analysis/NoteTracker.h"
#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/AlignedArray.h"
#include "platform/signal/RealFft.h"
#include "stage/SyntheticString.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

constexpr int SAMPLE_RATE = 11025;
constexpr int HOP = 128;
constexpr float LOWEST_FREQUENCY = 50.0F;

enum class Sound { Guitar, Noise, Silence };

// A second of what a microphone hears, rounded to 16 bits.
std::vector<float> MakeSound(Sound sound) {
    std::vector<float> floats(SAMPLE_RATE);
    if (sound == Sound::Guitar) {
        floats = SyntheticString{.dFrequency = 110.0, .dStiffness = 0.00005, .dDecay = 2.0, .dNoise = 4.0}
                     .MakeFloats(SAMPLE_RATE);
    } else if (sound == Sound::Noise) {
        floats = MakeNoise(SAMPLE_RATE, 8000.0, 1);
    }
    const auto samples = RoundToSamples(floats);
    return {samples.begin(), samples.end()};
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Runs in turn a batch of blocks and a batch of pairs of transforms, and takes the fastest batch of each.
void BlockAgainstTwoTransforms(benchmark::State& state, Sound sound) {
    const int nBlock = static_cast<int>(state.range(0));
    CSpectrumAnalyzer analyzer;
    CAlignedArray<float> first;
    CAlignedArray<float> second;
    int nOrder = 0;
    while (1 << nOrder < nBlock) {
        ++nOrder;
    }
    if (!analyzer.Setup(nBlock, SAMPLE_RATE, 20, 7, 24, LOWEST_FREQUENCY) || !first.Allocate(nBlock + 2) ||
        !second.Allocate(nBlock + 2) || !nspsPrepareRealFft(nOrder)) {
        state.SkipWithError("no memory");
        return;
    }
    const std::vector<float> samples = MakeSound(sound);
    const int nBlocks = (static_cast<int>(samples.size()) - nBlock) / HOP;
    double dBlock = 1.0;
    double dTransforms = 1.0;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < nBlocks; ++i) {
            std::copy_n(samples.begin() + std::ptrdiff_t{HOP} * i, nBlock, analyzer.GetInputBuffer());
            analyzer.Analyze(false, HOP);
        }
        const double dSeconds = SecondsSince(start);
        state.SetIterationTime(dSeconds);
        dBlock = std::min(dBlock, dSeconds / nBlocks);
        start = std::chrono::steady_clock::now();
        for (int i = 0; i < nBlocks; ++i) {
            // The block is put in place here too, and the second transform works on zeros: in place, a result
            // transformed again and again would overflow. The work is the same.
            std::copy_n(samples.begin() + std::ptrdiff_t{HOP} * i, nBlock, first.Data());
            nspsRealFft(first.Data(), nOrder, NSP_FORWARD);
            nspsRealFft(second.Data(), nOrder, NSP_FORWARD);
        }
        dTransforms = std::min(dTransforms, SecondsSince(start) / nBlocks);
    }
    state.SetItemsProcessed(state.iterations() * nBlocks);
    state.counters["two_ffts_us"] = dTransforms * 1e6;
    state.counters["block_us"] = dBlock * 1e6;
    state.counters["ratio"] = dBlock / dTransforms;
}

BENCHMARK_CAPTURE(BlockAgainstTwoTransforms, guitar, Sound::Guitar)->Arg(1024)->Arg(2048)->UseManualTime();
BENCHMARK_CAPTURE(BlockAgainstTwoTransforms, noise, Sound::Noise)->Arg(1024)->Arg(2048)->UseManualTime();
BENCHMARK_CAPTURE(BlockAgainstTwoTransforms, silence, Sound::Silence)->Arg(1024)->Arg(2048)->UseManualTime();

// One frame of the tracker: a steady note with a little unrest, at a hop of so many samples.
void TrackerFrame(benchmark::State& state) {
    CNoteTracker tracker;
    NoteReading candidate;
    const auto fHop = static_cast<float>(state.range(0));
    int nFrame = 0;
    for (auto _ : state) {
        candidate.Set(9, 2, nFrame++ % 2 == 0 ? 1.4F : 1.6F, -15.0F, 110.1F);
        benchmark::DoNotOptimize(tracker.Update(candidate, fHop, SAMPLE_RATE, 0.7F));
    }
}

BENCHMARK(TrackerFrame)->Arg(HOP)->Arg(1);

}  // namespace
