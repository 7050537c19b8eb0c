#pragma once

#include "platform/multimedia/WaveIn.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdint>
#include <mutex>
#include <numbers>
#include <thread>
#include <vector>

// Share of the energy that lies at that frequency: 1 is a pure sine, 0 something else or silence.
inline double ShareOfSine(const std::vector<float>& samples, double dFrequency, double dRate) {
    double dEnergy = 0.0;
    std::complex<double> sum;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double dTurns = static_cast<double>(i) / static_cast<double>(samples.size());
        const double dWeight = 1.0 - std::cos(2.0 * std::numbers::pi * dTurns);
        const auto fValue = static_cast<double>(samples[i]);
        dEnergy += fValue * fValue;
        sum += dWeight * fValue *
               std::polar(1.0, -2.0 * std::numbers::pi * dFrequency * static_cast<double>(i) / dRate);
    }
    const auto fCount = static_cast<double>(samples.size());
    return dEnergy < 100.0 * fCount ? 0.0 : 2.0 * std::norm(sum) / (dEnergy * fCount);
}

inline bool IsSilence(float fValue) {
    return std::fabs(fValue) <= 2.0F;
}

// Records one device through the waveIn functions and tells what it heard.
class CTestRecording {
public:
    CTestRecording() = default;
    ~CTestRecording() { Close(); }
    CTestRecording(const CTestRecording&) = delete;
    CTestRecording& operator=(const CTestRecording&) = delete;

    // Opens and starts. The result of waveInOpen.
    MMRESULT Open(UINT uDeviceId, UINT nRate) {
        Close();
        m_nRate = nRate;
        const WAVEFORMATEX format{WAVE_FORMAT_PCM, 1, nRate, nRate * 2, 2, 16, 0};
        const MMRESULT result = waveInOpen(m_hWaveIn, uDeviceId, format, &CTestRecording::OnMessage,
                                           reinterpret_cast<std::uintptr_t>(this), CALLBACK_FUNCTION);
        for (std::size_t i = 0; result == MMSYSERR_NOERROR && i < m_headers.size(); ++i) {
            m_headers[i] = {};
            m_headers[i].lpData = reinterpret_cast<char*>(m_buffers[i].data());
            m_headers[i].dwBufferLength = sizeof m_buffers[i];
            waveInPrepareHeader(m_hWaveIn, m_headers[i], sizeof(WAVEHDR));
            waveInAddBuffer(m_hWaveIn, m_headers[i], sizeof(WAVEHDR));
        }
        return result == MMSYSERR_NOERROR ? waveInStart(m_hWaveIn) : result;
    }
    void Close() {
        if (m_hWaveIn != 0) {
            waveInClose(m_hWaveIn);
            m_hWaveIn = 0;
        }
    }
    // Everything so far, over all openings.
    std::vector<float> GetSamples() const {
        const std::lock_guard lock(m_mutex);
        return m_samples;
    }
    // Waits for that many seconds of new sound and gives them; less when they do not come in time.
    std::vector<float> Listen(double dSeconds) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        const std::size_t nBegin = GetSamples().size();
        const auto nWanted = static_cast<std::size_t>(dSeconds * m_nRate);
        std::vector<float> samples;
        do {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            samples = GetSamples();
        } while (samples.size() < nBegin + nWanted && std::chrono::steady_clock::now() < deadline);
        return {samples.begin() + static_cast<std::ptrdiff_t>(nBegin), samples.end()};
    }
    // Listens until a quarter of a second is nothing but that sine, or nothing at all.
    bool Hears(double dFrequency) const {
        return ListenUntil(
            [&](const auto& samples) { return ShareOfSine(samples, dFrequency, m_nRate) > 0.95; });
    }
    bool HearsSilence() const {
        return ListenUntil(
            [](const auto& samples) { return std::all_of(samples.begin(), samples.end(), IsSilence); });
    }

private:
    static void OnMessage(HWAVEIN hWaveIn, UINT uMessage, std::uintptr_t dwInstance, std::uintptr_t dwParam1,
                          std::uintptr_t /*dwParam2*/) {
        // NOLINTBEGIN(performance-no-int-to-ptr): a callback carries its objects as numbers
        auto* const pHeader = reinterpret_cast<WAVEHDR*>(dwParam1);
        auto* const pRecording = reinterpret_cast<CTestRecording*>(dwInstance);
        // NOLINTEND(performance-no-int-to-ptr)
        if (uMessage == MM_WIM_DATA && pHeader->dwBytesRecorded == pHeader->dwBufferLength) {
            const auto* const pnSamples = reinterpret_cast<const std::int16_t*>(pHeader->lpData);
            const std::lock_guard lock(pRecording->m_mutex);
            pRecording->m_samples.insert(pRecording->m_samples.end(), pnSamples, pnSamples + BUFFER_SAMPLES);
            waveInAddBuffer(hWaveIn, *pHeader, sizeof(WAVEHDR));
        }
    }
    template <class Condition>
    bool ListenUntil(Condition condition) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (std::chrono::steady_clock::now() < deadline) {
            const std::vector<float> samples = Listen(0.25);
            if (samples.size() >= m_nRate / 4 && condition(samples)) {
                return true;
            }
        }
        return false;
    }

    static constexpr std::size_t BUFFER_SAMPLES = 512;

    HWAVEIN m_hWaveIn = 0;
    UINT m_nRate = 0;
    std::array<std::array<std::int16_t, BUFFER_SAMPLES>, 8> m_buffers{};
    std::array<WAVEHDR, 8> m_headers{};
    mutable std::mutex m_mutex;
    std::vector<float> m_samples;
};
