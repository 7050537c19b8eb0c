#include "platform/multimedia/BuiltInSynthesizer.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/ToneSynthesizer.h"
#include "tones/TonePlayer.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// What a reference tone costs. Start it with a sound server to be reached, or none: the calls never wait.

namespace {

using Clock = std::chrono::steady_clock;

// Passes everything to the real device and notes when a note begins there.
class CWatchedMidi final : public IMidiOutBackend {
public:
    void Prepare() override { m_pReal->Prepare(); }
    UINT GetNumDevs() override { return m_pReal->GetNumDevs(); }
    MMRESULT GetDevCaps(UINT uDeviceId, MIDIOUTCAPS& caps) override {
        return m_pReal->GetDevCaps(uDeviceId, caps);
    }
    MMRESULT Open(UINT uDeviceId, std::shared_ptr<IMidiOutPort>& pPort) override {
        std::shared_ptr<IMidiOutPort> pReal;
        const MMRESULT result = m_pReal->Open(uDeviceId, pReal);
        if (result == MMSYSERR_NOERROR) {
            pPort = std::make_shared<CPort>(*this, std::move(pReal));
        }
        return result;
    }
    Clock::time_point GetNoteOn() const { return m_noteOn; }

private:
    class CPort final : public IMidiOutPort {
    public:
        CPort(CWatchedMidi& midi, std::shared_ptr<IMidiOutPort> pReal)
            : m_midi(midi), m_pReal(std::move(pReal)) {}
        MMRESULT ShortMsg(DWORD dwMessage) override {
            const MMRESULT result = m_pReal->ShortMsg(dwMessage);
            if ((dwMessage & 0xF0U) == 0x90U && dwMessage >> 16 != 0) {
                m_midi.m_noteOn = Clock::now();
            }
            return result;
        }
        MMRESULT GetVolume(DWORD& dwVolume) override { return m_pReal->GetVolume(dwVolume); }
        MMRESULT SetVolume(DWORD dwVolume) override { return m_pReal->SetVolume(dwVolume); }
        MMRESULT Close() override { return m_pReal->Close(); }

    private:
        CWatchedMidi& m_midi;
        std::shared_ptr<IMidiOutPort> m_pReal;
    };

    std::shared_ptr<IMidiOutBackend> m_pReal = MakeBuiltInSynthesizer(DefaultSoundFonts());
    Clock::time_point m_noteOn;
};

double ResidentMebibytes() {
    std::string strWord;
    for (std::ifstream status("/proc/self/status"); status >> strWord;) {
        if (strWord == "VmRSS:") {
            double dKibibytes = 0.0;
            status >> dKibibytes;
            return dKibibytes / 1024.0;
        }
    }
    return 0.0;
}

void LoadSynthesizer(benchmark::State& state) {
    const double dBefore = ResidentMebibytes();
    double dLoaded = dBefore;
    for (const auto& unused : state) {
        static_cast<void>(unused);
        const auto pSynthesizer = CToneSynthesizer::Load(DefaultSoundFonts().front());
        if (!pSynthesizer) {
            state.SkipWithError("there is no SoundFont");
            break;
        }
        dLoaded = ResidentMebibytes();
    }
    state.counters["MiB_before"] = dBefore;
    state.counters["MiB_loaded"] = dLoaded;
}
BENCHMARK(LoadSynthesizer)->Unit(benchmark::kMillisecond)->Iterations(10);

// Share of one core that sound takes: seconds of work for one second of sound.
void RenderOneSecondOfARun(benchmark::State& state) {
    const auto pSynthesizer = CToneSynthesizer::Load(DefaultSoundFonts().front());
    std::vector<float> stereo(std::size_t{2} * SYNTHESIZER_RATE);
    for (const auto& unused : state) {
        static_cast<void>(unused);
        pSynthesizer->ShortMsg(0xFF);
        pSynthesizer->ShortMsg(0x18C0);
        for (const DWORD dwKey : {40U, 45U, 50U, 55U, 59U, 64U}) {
            pSynthesizer->ShortMsg(0x7F0090U | dwKey << 8);
        }
        pSynthesizer->Render(stereo);
        benchmark::DoNotOptimize(stereo.data());
    }
}
BENCHMARK(RenderOneSecondOfARun)->Unit(benchmark::kMillisecond);

// From the call to the note at the synthesizer, each during the tone before it.
void PlayToNoteOn(benchmark::State& state) {
    const auto pMidi = std::make_shared<CWatchedMidi>();
    SetMidiOutBackend(pMidi);
    {
        CTonePlayer player;
        std::this_thread::sleep_for(std::chrono::seconds(1));
        double dLongest = 0.0;
        for (const auto& unused : state) {
            static_cast<void>(unused);
            const auto start = Clock::now();
            player.PlayString(40, 127);
            const double dSeconds = std::chrono::duration<double>(pMidi->GetNoteOn() - start).count();
            state.SetIterationTime(dSeconds);
            dLongest = std::max(dLongest, dSeconds);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        state.counters["longest_ms"] = 1000.0 * dLongest;
        state.counters["MiB"] = ResidentMebibytes();
    }
    SetMidiOutBackend(nullptr);
}
BENCHMARK(PlayToNoteOn)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(200);

}  // namespace
