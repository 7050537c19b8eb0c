#pragma once

#include "platform/multimedia/WaveIn.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

// Records one device through the waveIn functions, for up to half a minute, and tells what it heard.
class CTestRecording {
public:
    CTestRecording();
    ~CTestRecording();
    CTestRecording(const CTestRecording&) = delete;
    CTestRecording& operator=(const CTestRecording&) = delete;

    // Opens and starts. The result of waveInOpen.
    MMRESULT Open(UINT uDeviceId, UINT nRate);
    void Close();
    // Everything so far.
    std::vector<double> GetSamples() const;
    // Waits for that many seconds of new sound and gives them; less when they do not come in `timeout`.
    std::vector<double> Listen(double fSeconds,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;
    // Listens until a quarter of a second is nothing but that sine, or nothing at all.
    bool Hears(double fFrequency, std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;
    bool HearsSilence(std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

private:
    struct Buffer;
    static void OnMessage(HWAVEIN hWaveIn, UINT uMessage, std::uintptr_t dwInstance, std::uintptr_t dwParam1,
                          std::uintptr_t dwParam2);
    template <class Condition>
    bool ListenUntil(Condition condition, std::chrono::milliseconds timeout) const;

    HWAVEIN m_hWaveIn = 0;
    UINT m_nRate = 0;
    std::vector<std::unique_ptr<Buffer>> m_buffers;
    std::atomic<std::size_t> m_nFilled = 0;
};

// Share of the energy that lies at that frequency: 1 is a pure sine, 0 something else or silence.
double ShareOfSine(const std::vector<double>& samples, double fFrequency, double fRate);

// The frequency of a sine near fExpected: how fast its phase runs away from that of fExpected.
double MeasureFrequency(const std::vector<double>& samples, double fExpected, double fRate);
