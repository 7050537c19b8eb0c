#include "capture/CaptureThread.h"

#include "platform/threads/Sleep.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

// How long a thread is given to see that it has to end before anybody waits for it.
constexpr int STOP_GRACE_MS = 50;
// A thread that has failed only has to return.
constexpr int FAILED_END_MS = 1000;

}  // namespace

CCaptureThread::CCaptureThread() : m_pControl(std::make_shared<CaptureControl>()) {}

CCaptureThread::~CCaptureThread() {
    if (m_pControl->m_bRunning) {
        Stop();
    }
    if (m_pThread && !m_pThread->WaitForEnd(FAILED_END_MS)) {
        Abandon();
    }
}

void CCaptureThread::SetDevice(int nDevice) {
    m_pControl->m_nDevice = nDevice;
}

void CCaptureThread::SetSampleRate(int nSampleRate) {
    m_pControl->m_nSampleRate = nSampleRate;
}

void CCaptureThread::SetBufferSamples(int nBufferSamples) {
    m_pControl->m_nBufferSamples = nBufferSamples;
}

void CCaptureThread::SetBlockSamples(int nBlockSamples) {
    m_pControl->m_nBlockSamples = nBlockSamples;
}

void CCaptureThread::SetHop(int nHop) {
    m_pControl->m_nHop = nHop;
}

void CCaptureThread::SetDestination(float* pfDest) {
    m_pControl->m_pfDest = pfDest;
}

void CCaptureThread::SetBlockCallback(BlockCallback pfnBlockReady, void* pArg) {
    m_pControl->m_pfnBlockReady = pfnBlockReady;
    m_pControl->m_pBlockReadyArg = pArg;
}

void CCaptureThread::SetAdaptHop(bool bAdaptHop) {
    m_pControl->m_bAdaptHop = bAdaptHop;
}

void CCaptureThread::SetPaused(bool bPaused) {
    m_pControl->m_bPaused = bPaused;
}

bool CCaptureThread::IsRunning() const {
    return m_pControl->m_bRunning;
}

int CCaptureThread::GetHop() const {
    return m_pControl->m_nHop;
}

bool CCaptureThread::Start() {
    if (m_pControl->m_bRunning) {
        Stop();
    }
    if (m_pThread || m_bClientHeld) {
        return false;
    }
    const std::int64_t nRing =
        static_cast<std::int64_t>(m_pControl->m_nBufferCount) * m_pControl->m_nBufferSamples;
    const std::int64_t nLongestHop = std::clamp<std::int64_t>(nRing, 1, std::numeric_limits<int>::max());
    m_pControl->m_nHop = std::clamp(m_pControl->m_nHop.load(), 1, static_cast<int>(nLongestHop));

    m_pThread = CWinThread::Create([pControl = m_pControl] { return CaptureThreadProc(*pControl); },
                                   THREAD_PRIORITY_BELOW_NORMAL);
    if (!m_pThread) {
        return false;
    }
    m_pControl->m_opened.ResetEvent();
    m_pControl->m_opening = CaptureOpening::Pending;
    m_pControl->m_bRunning = true;
    if (!m_pThread->ResumeThread()) {
        m_pControl->m_bRunning = false;
        m_pControl->m_opening = CaptureOpening::Failed;
        m_pThread.reset();
        return false;
    }
    return true;
}

CaptureOpening CCaptureThread::WaitUntilOpen(int nMilliseconds) {
    if (m_pControl->m_opening == CaptureOpening::Pending) {
        m_pControl->m_opened.Wait(nMilliseconds);
    }
    return m_pControl->m_opening;
}

void CCaptureThread::ClearFailed() {
    if (m_pThread && !m_pControl->m_bRunning && m_pThread->WaitForEnd(FAILED_END_MS)) {
        m_pThread.reset();
    }
}

bool CCaptureThread::Stop() {
    if (!m_pThread || !m_pControl->m_bRunning) {
        return true;
    }
    m_pControl->m_bRunning = false;
    Sleep(STOP_GRACE_MS);
    const std::int64_t nWait = (static_cast<std::int64_t>(m_pControl->m_nHop) + 500) * 20;
    if (!m_pThread->WaitForEnd(nWait)) {
        Abandon();
    }
    m_pThread.reset();
    m_pControl->m_opening = CaptureOpening::Failed;
    return true;
}

bool CCaptureThread::IsClientHeld() const {
    return m_bClientHeld;
}

// The thread keeps the control that it knows, with its running flag cleared for good; the next capture gets a
// new one with the same values. A thread inside the callback may still ask for its hop: then there is no next
// capture.
void CCaptureThread::Abandon() {
    auto expected = CaptureControl::Client::Free;
    m_bClientHeld = !m_pControl->m_client.compare_exchange_strong(expected, CaptureControl::Client::ShutOut);
    if (!m_bClientHeld) {
        auto pNew = std::make_shared<CaptureControl>();
        pNew->m_bAdaptHop = m_pControl->m_bAdaptHop.load();
        pNew->m_bPaused = m_pControl->m_bPaused.load();
        pNew->m_nDevice = m_pControl->m_nDevice;
        pNew->m_nSampleRate = m_pControl->m_nSampleRate;
        pNew->m_nBufferSamples = m_pControl->m_nBufferSamples;
        pNew->m_nBlockSamples = m_pControl->m_nBlockSamples;
        pNew->m_nHop = m_pControl->m_nHop.load();
        pNew->m_pfnBlockReady = m_pControl->m_pfnBlockReady;
        pNew->m_pBlockReadyArg = m_pControl->m_pBlockReadyArg;
        pNew->m_pfDest = m_pControl->m_pfDest;
        m_pControl = std::move(pNew);
    }
    m_pThread.reset();
}
