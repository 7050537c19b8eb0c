#pragma once

#include "platform/multimedia/WaveInBackend.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <vector>

// A sound system for tests: its devices record what the test gives them, when the test says so, and fail on
// demand. Everything may be called from any thread.
class CFakeWaveIn final : public IWaveInBackend {
public:
    struct Device {
        std::string strName = "Fake Microphone";
        DWORD dwFormats = 0xFFF;
        WORD nChannels = 1;
        UINT vDriverVersion = 0x0102;
        std::set<UINT> refusedRates = {};
        bool bRefusesAll = false;
        std::string strKey = {};
    };
    // How often each operation was called.
    struct Calls {
        int nOpen = 0;
        int nAddBuffer = 0;
        int nStart = 0;
        int nStop = 0;
        int nReset = 0;
        int nClose = 0;
    };
    struct Opening {
        UINT uDeviceId = 0;
        UINT nSampleRate = 0;
        MMRESULT result = MMSYSERR_NOERROR;
    };
    struct Rhythm {
        std::size_t nChunk = 128;               // samples written at once
        std::chrono::microseconds interval{0};  // between chunks; 0 writes as soon as there is room
    };

    CFakeWaveIn();
    ~CFakeWaveIn() override;

    // The list of devices; the preferred one is the first. Without any, everything is refused.
    void SetDevices(std::vector<Device> devices);

    // Gives samples to whatever is open and started; those for which no buffer waits are lost.
    void Feed(std::span<const std::int16_t> samples);
    // Samples of `signal`, from number 0 on, on a thread of the fake, until StopPlaying.
    void Play(std::function<std::int16_t(std::uint64_t nSample)> signal, Rhythm rhythm);
    void StopPlaying();

    // The device goes: open handles deliver nothing, it cannot be opened. Come back, it goes on by itself.
    void SetPresent(UINT uDeviceId, bool bPresent);
    // While hanging, the operation does not return.
    void HangOpen(bool bHang);
    void HangClose(bool bHang);

    Calls GetCalls() const;
    std::vector<Opening> GetOpenings() const;
    int GetOpenCount() const;
    // Whether somebody is caught in an operation that hangs.
    bool IsAnybodyHanging() const;

    UINT GetNumDevs() override;
    MMRESULT GetDevCaps(UINT uDeviceId, WAVEINCAPS& caps) override;
    MMRESULT Open(UINT uDeviceId, const WAVEFORMATEX& format, WaveInNotify notify,
                  std::shared_ptr<IWaveInStream>& pStream) override;

private:
    struct Shared;
    class Stream;

    std::shared_ptr<Shared> m_pShared;  // streams keep their share
    std::jthread m_player;
};

// Puts a fake in the place of the sound server for the length of a test.
class CFakeWaveInScope {
public:
    CFakeWaveInScope();
    ~CFakeWaveInScope();
    CFakeWaveInScope(const CFakeWaveInScope&) = delete;
    CFakeWaveInScope& operator=(const CFakeWaveInScope&) = delete;

    CFakeWaveIn& operator*() const { return *m_pFake; }
    CFakeWaveIn* operator->() const { return m_pFake.get(); }

private:
    std::shared_ptr<CFakeWaveIn> m_pFake;
    std::shared_ptr<IWaveInBackend> m_pPrevious;
};
