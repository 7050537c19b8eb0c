#include "capture/CaptureLoop.h"

#include "platform/signal/VectorOperations.h"
#include "platform/threads/Sleep.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

// A device that delivers nothing is waited for so long before the loop starts over, in steps after each of
// which it looks whether it has to end.
constexpr int WAIT_MS = 1000;
constexpr int WAIT_STEP_MS = 50;
constexpr int PAUSE_STEP_MS = 40;

// Cut toward zero, and kept within what an int holds: a hop has no upper limit.
int TruncateToInt(float fValue) {
    constexpr auto fLimit = static_cast<float>(std::numeric_limits<int>::max());
    return fValue >= fLimit ? std::numeric_limits<int>::max() : static_cast<int>(fValue);
}

}  // namespace

CCaptureLoop::CCaptureLoop(CaptureControl& control, CRecorder& recorder)
    : m_control(control),
      m_recorder(recorder),
      m_nBufferCount(control.m_nBufferCount),
      m_nBufferSamples(control.m_nBufferSamples),
      m_nBlockSamples(control.m_nBlockSamples),
      m_regulator(static_cast<float>(control.m_nHop)),
      m_fEnd(static_cast<float>(control.m_nBlockSamples)) {}

void CCaptureLoop::Run() {
    State state = State::Collect;
    m_recorder.ResetEvent();
    m_recorder.Start();
    while (m_control.m_bRunning) {
        switch (state) {
            case State::Collect:
                state = Collect();
                break;
            case State::Deliver:
                state = Deliver();
                break;
            case State::Release:
                state = Release();
                break;
        }
        WaitWhilePaused();
    }
    m_recorder.Stop();
    for (; m_nHeld > 0; --m_nHeld) {
        m_recorder.PrepareHeader(RingAt(m_nReadIndex));
        m_recorder.AddBuffer(RingAt(m_nReadIndex));
        m_nReadIndex = Next(m_nReadIndex);
    }
}

// Takes the buffers that the device has filled.
CCaptureLoop::State CCaptureLoop::Collect() {
    if (m_recorder.GetCompleted() == 0) {
        if (m_control.m_bAdaptHop) {
            m_regulator.OnIdle();
            PublishHop();
        }
        if (!WaitForBuffer()) {
            return State::Collect;
        }
    } else if (m_control.m_bAdaptHop) {
        m_regulator.OnBusy();
        PublishHop();
    }
    const int nTaken = std::min(m_recorder.GetCompleted(), m_nBufferCount - m_nHeld);
    for (int i = 0; i < nTaken; ++i) {
        m_bRingEmpty = false;
        m_ring[static_cast<std::size_t>(m_nWriteIndex)] = m_recorder.GetBuffer(m_nWriteIndex);
        m_recorder.TakeCompleted();
        m_nWriteIndex = Next(m_nWriteIndex);
    }
    m_nHeld = CountHeld();
    return State::Release;
}

bool CCaptureLoop::WaitForBuffer() {
    m_recorder.ResetEvent();
    // A buffer that came back just before the reset is not waited for.
    if (m_recorder.GetCompleted() != 0) {
        return true;
    }
    for (int nWaited = 0; nWaited < WAIT_MS && m_control.m_bRunning; nWaited += WAIT_STEP_MS) {
        if (m_recorder.WaitForBuffer(WAIT_STEP_MS)) {
            return true;
        }
    }
    return false;
}

int CCaptureLoop::CountHeld() const {
    if (m_nWriteIndex == m_nReadIndex) {
        return m_bRingEmpty ? 0 : m_nBufferCount;
    }
    const int nDistance = m_nWriteIndex - m_nReadIndex;
    return nDistance < 0 ? nDistance + m_nBufferCount : nDistance;
}

// Gives back the buffers that lie wholly before the next block.
CCaptureLoop::State CCaptureLoop::Release() {
    const int nPassed = std::min(TruncateToInt(m_fStart) / m_nBufferSamples, m_nHeld);
    for (int i = 0; i < nPassed; ++i) {
        m_recorder.PrepareHeader(RingAt(m_nReadIndex));
        m_recorder.AddBuffer(RingAt(m_nReadIndex));
        m_fStart -= static_cast<float>(m_nBufferSamples);
        m_fEnd -= static_cast<float>(m_nBufferSamples);
        m_bRingEmpty = --m_nHeld == 0;
        m_nReadIndex = Next(m_nReadIndex);
    }
    return TruncateToInt(m_fEnd) / m_nBufferSamples < m_nHeld ? State::Deliver : State::Collect;
}

// Hands the block to the client, unless newer sound is waiting: then this block is late and is left out.
CCaptureLoop::State CCaptureLoop::Deliver() {
    auto client = CaptureControl::Client::Free;
    if (m_recorder.GetCompleted() == 0 &&
        m_control.m_client.compare_exchange_strong(client, CaptureControl::Client::Inside)) {
        ConvertBlock();
        m_control.m_pfnBlockReady(m_control.m_pBlockReadyArg);
        m_control.m_client = CaptureControl::Client::Free;
    }
    m_fStart += m_regulator.GetHop();
    m_fEnd += m_regulator.GetHop();
    return State::Release;
}

// The block's length is fixed: start and end are rounded each by itself, so that their distance may be off by
// one.
void CCaptureLoop::ConvertBlock() const {
    int nOffset = TruncateToInt(m_fStart);
    int nIndex = m_nReadIndex;
    for (int nConverted = 0; nConverted < m_nBlockSamples; nIndex = Next(nIndex)) {
        const int nPiece = std::min(m_nBufferSamples - nOffset, m_nBlockSamples - nConverted);
        const auto* pnSamples = reinterpret_cast<const std::int16_t*>(RingAt(nIndex).GetData());
        nspsbIntToFloat(pnSamples + nOffset, m_control.m_pfDest + nConverted, nPiece, 16, 0);
        nConverted += nPiece;
        nOffset = 0;
    }
}

void CCaptureLoop::PublishHop() {
    m_control.m_nHop = TruncateToInt(m_regulator.GetHop());
}

void CCaptureLoop::WaitWhilePaused() const {
    while (m_control.m_bPaused && m_control.m_bRunning) {
        Sleep(PAUSE_STEP_MS);
    }
}
