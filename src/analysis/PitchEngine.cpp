#include "analysis/PitchEngine.h"

#include <algorithm>

namespace {

// The strongest peaks kept of a block, the primes that the octave is looked for with, the probes of an
// octave.
constexpr int MAX_PEAKS = 20;
constexpr int PRIMES = 7;
constexpr int PROBES = 24;

}  // namespace

CPitchEngine::~CPitchEngine() {
    Stop();
}

bool CPitchEngine::Start(BlockCallback pfnCallback, void* pArg, int nDevice, int nSampleRate,
                         int nBufferSamples, int nBlockSamples, float fLowestFrequency) {
    Stop();
    if (m_capture.IsClientHeld()) {
        return false;
    }
    m_pfnCallback = pfnCallback;
    m_pCallbackArg = pArg;
    m_nDevice = nDevice;
    m_nSampleRate = nSampleRate;
    m_nBufferSamples = nBufferSamples;
    m_nBlockSamples = nBlockSamples;
    m_fLowestFrequency = fLowestFrequency;
    if (!m_analyzer.Setup(nBlockSamples, nSampleRate, MAX_PEAKS, PRIMES, PROBES, fLowestFrequency)) {
        return false;
    }
    m_capture.SetBlockCallback(&CPitchEngine::OnBlock, this);
    m_capture.SetDevice(nDevice);
    m_capture.SetSampleRate(nSampleRate);
    m_capture.SetBufferSamples(nBufferSamples);
    m_capture.SetBlockSamples(nBlockSamples);
    m_capture.SetDestination(m_analyzer.GetInputBuffer());
    return m_capture.Start();
}

bool CPitchEngine::Stop() {
    return m_capture.IsRunning() && m_capture.Stop();
}

void CPitchEngine::SetHop(int nHop) {
    m_nHop = nHop;
    m_capture.SetHop(nHop);
}

void CPitchEngine::SetAdaptHop(bool bAdapt) {
    m_bAdaptHop = bAdapt;
    m_capture.SetAdaptHop(bAdapt);
}

void CPitchEngine::SetTimeGate(bool bGate) {
    m_bTimeGate = bGate;
}

void CPitchEngine::SetReference(float fHz) {
    m_fReference = fHz;
    m_analyzer.SetReference(fHz);
}

void CPitchEngine::OnBlock(void* pEngine) {
    CPitchEngine& engine = *static_cast<CPitchEngine*>(pEngine);
    engine.m_nHop = engine.m_capture.GetHop();
    engine.m_fLevel = engine.m_analyzer.ComputeLevel();
    engine.m_bAnalysisOk = engine.m_analyzer.Analyze(engine.m_bTimeGate, engine.m_nHop);
    if (engine.m_bAnalysisOk) {
        const auto candidates = engine.m_analyzer.GetCandidates();
        std::copy(candidates.begin(), candidates.end(), engine.m_candidates.begin());
    }
    engine.m_pfnCallback(engine.m_pCallbackArg);
}
