#pragma once

#include "analysis/SpectrumAnalyzer.h"
#include "capture/CaptureThread.h"
#include "tuning/NoteReading.h"

#include <array>
#include <atomic>
#include <span>

// Ties capture to analysis: each block that is captured is analysed, its results are published here, and then
// the client's callback runs, on the capture thread and before the next block is made.
//
// The owner's thread calls everything but the getters; those belong to the callback, and GetHop and
// GetSampleRate to both. SetReference and SetTimeGate act on a running capture.
class CPitchEngine {
public:
    CPitchEngine() = default;
    // Stops the capture. While IsClientHeld of the capture is true the engine must not be destroyed.
    ~CPitchEngine();
    CPitchEngine(const CPitchEngine&) = delete;
    CPitchEngine& operator=(const CPitchEngine&) = delete;

    // Captures from device nDevice (0: the preferred one, n: device n - 1) at nSampleRate Hz, in buffers of
    // nBufferSamples and blocks of nBlockSamples, a power of two, and analyses from fLowestFrequency Hz up. A
    // running capture is stopped first. False when the block size is not a power of two, memory cannot be
    // had, the thread cannot be started, or an abandoned thread still works on a block. True says nothing of
    // the device: see WaitUntilOpen of the capture. The notes hang on A = 440 Hz until SetReference.
    bool Start(BlockCallback pfnCallback, void* pArg, int nDevice, int nSampleRate, int nBufferSamples,
               int nBlockSamples, float fLowestFrequency);
    // False when nothing is captured. Bounded, see CCaptureThread.
    bool Stop();

    // Samples from block to block that the next Start begins with.
    void SetHop(int nHop);
    // Whether the hop follows what the machine can do.
    void SetAdaptHop(bool bAdapt);
    // Whether the centre of a peak's energy must lie near the middle of its block. From the next block on.
    void SetTimeGate(bool bGate);
    // The A frequency, Hz. From the next block on.
    void SetReference(float fHz);

    // The candidates of the latest block, one for each semitone. They keep their values when no block comes.
    std::span<const NoteReading, SEMITONES> GetCandidates() const { return m_candidates; }
    // The peak level of the latest block, 0.0 to 1.0.
    float GetLevel() const { return m_fLevel; }
    // Samples from the block before to the latest one.
    int GetHop() const { return m_nHop; }
    int GetSampleRate() const { return m_nSampleRate; }

    // To pause it and to learn what became of its device.
    CCaptureThread& GetCapture() { return m_capture; }

private:
    static void OnBlock(void* pEngine);

    std::array<NoteReading, SEMITONES> m_candidates;
    // The analyser outlives the capture that writes into it.
    CSpectrumAnalyzer m_analyzer;
    CCaptureThread m_capture;
    bool m_bAdaptHop = true;
    std::atomic<bool> m_bTimeGate = true;
    bool m_bAnalysisOk = false;
    int m_nDevice = 0;
    int m_nSampleRate = 11025;
    int m_nBufferSamples = 512;
    int m_nBlockSamples = 512;
    std::atomic<int> m_nHop = 128;
    float m_fLowestFrequency = 40.0F;
    float m_fReference = DEFAULT_A_FREQUENCY;
    float m_fLevel = 0.0F;
    BlockCallback m_pfnCallback = nullptr;
    void* m_pCallbackArg = nullptr;
};
