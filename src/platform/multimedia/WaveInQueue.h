#pragma once

#include "platform/multimedia/WaveInBackend.h"

#include <cstdint>
#include <mutex>
#include <span>

// The buffers that wait for sound, in the order in which they will be filled and given back. Whatever backend
// records writes its samples here. Buffers are chained through their headers: nothing is allocated.
class CWaveInQueue {
public:
    explicit CWaveInQueue(WaveInNotify notify);

    // Any thread.
    MMRESULT Add(WAVEHDR& header);
    // Fills the waiting buffers and gives back those that are full, through the notification, on the calling
    // thread. Samples for which no buffer waits are lost. One thread at a time.
    void Write(std::span<const std::int16_t> samples);
    void WriteSilence(std::size_t nSamples);
    // Gives every waiting buffer back as it is. Any thread.
    void GiveBackAll();

private:
    // Takes the first buffer out of the chain. Called with the lock held.
    WAVEHDR& Detach();

    const WaveInNotify m_notify;
    std::mutex m_mutex;  // held for a few instructions or one copy of samples
    WAVEHDR* m_pFirst = nullptr;
    WAVEHDR* m_pLast = nullptr;
};
