#pragma once

#include "platform/multimedia/PulseLoop.h"
#include "platform/multimedia/WaveInQueue.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

// One recording over the sound server. Once it is open it stays open for its owner: when the source or the
// server goes away, it tries to find the same one again, twice a second, and gives silence meanwhile.
class CPulseWaveInStream final : public IWaveInStream {
public:
    // An empty name stands for the server's default source, which the stream then follows.
    CPulseWaveInStream(std::string strSource, UINT nRate, WaveInNotify notify);
    ~CPulseWaveInStream() override;

    // Once, before everything else.
    MMRESULT Open(PulseDeadline deadline);

    MMRESULT AddBuffer(WAVEHDR& header) override;
    MMRESULT Start() override;
    MMRESULT Stop() override;
    MMRESULT Reset() override;
    MMRESULT Close() override;

private:
    using Clock = std::chrono::steady_clock;
    enum class Link { Opening, Up, Lost };

    // From here on: on the loop's thread, or with its lock held.
    bool ConnectServer();
    void ConnectSource();
    void OnContextState();
    void OnStreamState();
    void OnReadable();
    void OnTick(pa_time_event* pTimer);
    void OnLost(MMRESULT reason);
    void Reconnect();
    void WriteSound(const void* pData, std::size_t nBytes);
    void WriteOverdueSilence(Clock::time_point now);
    void Cork(bool bCork);
    MMRESULT GetFailure() const;

    const std::string m_strSource;
    const UINT m_nRate;
    CWaveInQueue m_queue;

    std::unique_ptr<CPulseLoop> m_pLoop;
    PulseContextPtr m_pContext;
    PulseStreamPtr m_pStream;
    pa_time_event* m_pTick = nullptr;
    Link m_link = Link::Opening;
    MMRESULT m_failure = MMSYSERR_NOERROR;  // why the link was lost
    bool m_bAttempting = false;             // the server owes an answer to the latest attempt
    bool m_bRecording = false;
    Clock::time_point m_lastAttempt;
    Clock::time_point m_filledUntil;  // when sound or silence was last written
    bool m_bSilent = false;           // silence is being written
};
