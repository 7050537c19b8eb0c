// What a whole frame costs with a steady reading: the real window's frame step alone, and the whole road from
// a recorded buffer over the capture thread, the analysis and the tracker to the drawn widgets, at a hop of
// one sample.

#include "platform/multimedia/support/FakeWaveIn.h"
#include "platform/windows/WindowsSession.h"
#include "stage/SyntheticString.h"
#include "window/TunerWndAccess.h"
#include "window/WorkingDirectory.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <span>
#include <thread>
#include <vector>

namespace {

constexpr int SAMPLE_RATE = 11025;
constexpr std::size_t BUFFER_SAMPLES = 1024;

double ProcessorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The window in front of a device that records a steady A2, one buffer at a time.
class CSteadyTuner {
public:
    CSteadyTuner()
        : m_samples(SyntheticString{.dFrequency = 110.0, .dStiffness = 0.00005}.MakeSamples(MINUTE)) {
        m_directory.Write("state.txt",
                          "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
                          "44000\t10485760\t16711680\t32768\t16711680\t0\t0\t0\t1\t0\n");
        m_pWnd = std::make_unique<CTunerWnd>();
        m_pWnd->ShowWindow(SW_SHOW);
        WaitUntil([this] { return m_fake->GetCalls().nStart > 0; });
        // Past the tracker's adaptation.
        for (int i = 0; i < 20; ++i) {
            RecordBuffer();
        }
    }

    // Records a buffer and waits until the blocks that lie in it are through.
    void RecordBuffer() {
        const int nBefore = m_fake->GetCalls().nAddBuffer;
        m_fake->Feed(std::span(m_samples).subspan(m_nNext, BUFFER_SAMPLES));
        m_nNext = (m_nNext + BUFFER_SAMPLES) % (m_samples.size() - BUFFER_SAMPLES);
        // The first block lies in two buffers; from then on each new one lets an old one go back to the
        // device.
        if (m_nBuffers++ > 0) {
            WaitUntil([&] { return m_fake->GetCalls().nAddBuffer > nBefore; });
        }
    }
    CTunerWnd& Wnd() { return *m_pWnd; }
    CTunerWndAccess Access() { return CTunerWndAccess(*m_pWnd); }

private:
    static void WaitUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    static constexpr int MINUTE = 60 * SAMPLE_RATE;

    CWindowsSession m_session;
    CWorkingDirectory m_directory;
    CFakeWaveInScope m_fake;
    std::vector<std::int16_t> m_samples;
    std::size_t m_nNext = 0;
    int m_nBuffers = 0;
    std::unique_ptr<CTunerWnd> m_pWnd;
};

// The processor time of the whole process for each frame.
void WholeFrame(benchmark::State& state) {
    CSteadyTuner tuner;
    int nFrames = 0;
    double dSeconds = 0.0;
    for (auto _ : state) {
        const std::int64_t nFramesBefore = tuner.Access().FrameCount();
        const double dBefore = ProcessorSeconds();
        tuner.RecordBuffer();
        const double dSpent = ProcessorSeconds() - dBefore;
        const auto nMade = static_cast<int>(tuner.Access().FrameCount() - nFramesBefore);
        nFrames += nMade;
        dSeconds += dSpent;
        state.SetIterationTime(dSpent);
    }
    state.counters["frames"] = nFrames;
    state.counters["us_per_frame"] = 1e6 * dSeconds / nFrames;
    state.counters["load_at_hop_1"] = dSeconds / nFrames * SAMPLE_RATE;
}
BENCHMARK(WholeFrame)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Tracker, widgets and window, on the results of the last block.
void FrameStep(benchmark::State& state) {
    CSteadyTuner tuner;
    tuner.Access().StopCapture();
    for (auto _ : state) {
        tuner.Wnd().OnFrame();
    }
}
BENCHMARK(FrameStep)->Unit(benchmark::kMicrosecond);

// The widgets do not need a screen to be drawn.
const int g_nPlatform = setenv("QT_QPA_PLATFORM", "offscreen", 0);

}  // namespace
