#include "platform/multimedia/support/TestRecording.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <thread>

namespace {

constexpr std::size_t BUFFER_SAMPLES = 512;
constexpr std::size_t LONGEST_SECONDS = 30;

std::complex<double> Project(const std::vector<double>& samples, std::size_t nBegin, std::size_t nCount,
                             double fFrequency, double fRate) {
    std::complex<double> sum;
    for (std::size_t i = nBegin; i < nBegin + nCount; ++i) {
        const double fWeight = 1 - std::cos(2 * std::numbers::pi * static_cast<double>(i - nBegin) /
                                            static_cast<double>(nCount));
        sum += fWeight * samples[i] *
               std::polar(1.0, -2 * std::numbers::pi * fFrequency * static_cast<double>(i) / fRate);
    }
    return sum / static_cast<double>(nCount);
}

}  // namespace

struct CTestRecording::Buffer : WAVEHDR {
    std::array<std::int16_t, BUFFER_SAMPLES> samples{};
};

CTestRecording::CTestRecording() = default;

CTestRecording::~CTestRecording() {
    Close();
}

MMRESULT CTestRecording::Open(UINT uDeviceId, UINT nRate) {
    Close();
    m_nRate = nRate;
    m_nFilled = 0;
    m_buffers.clear();
    const WAVEFORMATEX format{WAVE_FORMAT_PCM, 1, nRate, nRate * 2, 2, 16, 0};
    const MMRESULT result = waveInOpen(m_hWaveIn, uDeviceId, format, &CTestRecording::OnMessage,
                                       reinterpret_cast<std::uintptr_t>(this), CALLBACK_FUNCTION);
    if (result != MMSYSERR_NOERROR) {
        return result;
    }
    for (std::size_t i = 0; i < LONGEST_SECONDS * nRate / BUFFER_SAMPLES; ++i) {
        auto& pBuffer = m_buffers.emplace_back(std::make_unique<Buffer>());
        pBuffer->lpData = reinterpret_cast<char*>(pBuffer->samples.data());
        pBuffer->dwBufferLength = sizeof pBuffer->samples;
        waveInPrepareHeader(m_hWaveIn, *pBuffer, sizeof(WAVEHDR));
        waveInAddBuffer(m_hWaveIn, *pBuffer, sizeof(WAVEHDR));
    }
    return waveInStart(m_hWaveIn);
}

void CTestRecording::Close() {
    if (m_hWaveIn != 0) {
        waveInClose(m_hWaveIn);
        m_hWaveIn = 0;
    }
}

void CTestRecording::OnMessage(HWAVEIN /*hWaveIn*/, UINT uMessage, std::uintptr_t dwInstance,
                               std::uintptr_t dwParam1, std::uintptr_t /*dwParam2*/) {
    if (uMessage != MM_WIM_DATA) {
        return;
    }
    // NOLINTBEGIN(performance-no-int-to-ptr): a callback carries its objects as numbers
    const auto* const pHeader = reinterpret_cast<const WAVEHDR*>(dwParam1);
    auto* const pRecording = reinterpret_cast<CTestRecording*>(dwInstance);
    // NOLINTEND(performance-no-int-to-ptr)
    if (pHeader->dwBytesRecorded == 2 * BUFFER_SAMPLES) {
        ++pRecording->m_nFilled;
    }
}

std::vector<double> CTestRecording::GetSamples() const {
    std::vector<double> samples;
    const std::size_t nFilled = m_nFilled;
    for (std::size_t i = 0; i < nFilled; ++i) {
        samples.insert(samples.end(), m_buffers[i]->samples.begin(), m_buffers[i]->samples.end());
    }
    return samples;
}

std::vector<double> CTestRecording::Listen(double fSeconds, std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    const std::size_t nBegin = m_nFilled * BUFFER_SAMPLES;
    const auto nWanted = static_cast<std::size_t>(fSeconds * m_nRate);
    while (m_nFilled * BUFFER_SAMPLES < nBegin + nWanted && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::vector<double> samples = GetSamples();
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(nBegin));
    return samples;
}

template <class Condition>
bool CTestRecording::ListenUntil(Condition condition, std::chrono::milliseconds timeout) const {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        const std::vector<double> samples = Listen(0.25, std::chrono::milliseconds(1000));
        if (samples.size() >= m_nRate / 4 && condition(samples)) {
            return true;
        }
    }
    return false;
}

bool CTestRecording::Hears(double fFrequency, std::chrono::milliseconds timeout) const {
    return ListenUntil(
        [&](const std::vector<double>& samples) { return ShareOfSine(samples, fFrequency, m_nRate) > 0.95; },
        timeout);
}

bool CTestRecording::HearsSilence(std::chrono::milliseconds timeout) const {
    return ListenUntil(
        [](const std::vector<double>& samples) {
            return std::all_of(samples.begin(), samples.end(),
                               [](double fValue) { return std::abs(fValue) <= 2; });
        },
        timeout);
}

double ShareOfSine(const std::vector<double>& samples, double fFrequency, double fRate) {
    double fEnergy = 0;
    for (const double fValue : samples) {
        fEnergy += fValue * fValue;
    }
    const double fMean = fEnergy / static_cast<double>(samples.size());
    if (fMean < 100) {
        return 0;
    }
    return 2 * std::norm(Project(samples, 0, samples.size(), fFrequency, fRate)) / fMean;
}

double MeasureFrequency(const std::vector<double>& samples, double fExpected, double fRate) {
    const std::size_t nHalf = samples.size() / 2;
    const double fTurn = std::arg(Project(samples, nHalf, nHalf, fExpected, fRate) /
                                  Project(samples, 0, nHalf, fExpected, fRate));
    return fExpected + fTurn / (2 * std::numbers::pi) * fRate / static_cast<double>(nHalf);
}
