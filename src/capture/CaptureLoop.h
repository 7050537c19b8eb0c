#pragma once

#include "capture/CaptureThread.h"
#include "capture/HopRegulator.h"
#include "capture/Recorder.h"

#include <array>
#include <cstddef>

// Slides a block over the recorded sound. The recording is a ring of buffers; the block moves over it by the
// hop, which may have a fraction and may change at every step. Runs on the capture thread and allocates
// nothing.
class CCaptureLoop {
public:
    // The recorder is open and all its buffers are queued.
    CCaptureLoop(CaptureControl& control, CRecorder& recorder);

    // Records until the running flag is cleared, then queues the buffers that the ring still holds, oldest
    // first.
    void Run();

private:
    enum class State { Collect, Deliver, Release };

    State Collect();
    State Release();
    State Deliver();
    bool WaitForBuffer();
    void WaitWhilePaused() const;
    void PublishHop();
    void ConvertBlock() const;
    int CountHeld() const;
    int Next(int nIndex) const { return (nIndex + 1) % m_nBufferCount; }
    CWaveBuffer& RingAt(int nIndex) const { return *m_ring[static_cast<std::size_t>(nIndex)]; }

    CaptureControl& m_control;
    CRecorder& m_recorder;
    const int m_nBufferCount;
    const int m_nBufferSamples;
    const int m_nBlockSamples;
    CHopRegulator m_regulator;
    // The limits of the next block, in samples from the first sample of the oldest buffer in the ring.
    float m_fStart = 0.0F;
    float m_fEnd;
    // A ring slot and its buffer have the same index: the device gives buffers back in the order of queueing.
    std::array<CWaveBuffer*, CRecorder::MAX_BUFFERS> m_ring{};
    int m_nReadIndex = 0;
    int m_nWriteIndex = 0;
    int m_nHeld = 0;
    bool m_bRingEmpty = true;
};
