#include "platform/multimedia/PulseLoop.h"

#include <pulse/pulseaudio.h>

#include <algorithm>

void PulseContextCloser::operator()(pa_context* pContext) const {
    pa_context_set_state_callback(pContext, nullptr, nullptr);
    pa_context_disconnect(pContext);
    pa_context_unref(pContext);
}

void PulseStreamCloser::operator()(pa_stream* pStream) const {
    pa_stream_set_state_callback(pStream, nullptr, nullptr);
    pa_stream_set_read_callback(pStream, nullptr, nullptr);
    pa_stream_set_write_callback(pStream, nullptr, nullptr);
    pa_stream_disconnect(pStream);
    pa_stream_unref(pStream);
}

void PulseOperationCloser::operator()(pa_operation* pOperation) const {
    pa_operation_cancel(pOperation);
    pa_operation_unref(pOperation);
}

CPulseLoop::CLock::CLock(const CPulseLoop& loop) : m_pMainloop(loop.m_pMainloop) {
    pa_threaded_mainloop_lock(m_pMainloop);
}

CPulseLoop::CLock::~CLock() {
    pa_threaded_mainloop_unlock(m_pMainloop);
}

CPulseLoop::CPulseLoop(pa_threaded_mainloop* pMainloop) : m_pMainloop(pMainloop) {}

std::unique_ptr<CPulseLoop> CPulseLoop::Create() {
    pa_threaded_mainloop* const pMainloop = pa_threaded_mainloop_new();
    if (pMainloop == nullptr) {
        return nullptr;
    }
    std::unique_ptr<CPulseLoop> pLoop(new CPulseLoop(pMainloop));
    return pa_threaded_mainloop_start(pMainloop) < 0 ? nullptr : std::move(pLoop);
}

CPulseLoop::~CPulseLoop() {
    pa_threaded_mainloop_stop(m_pMainloop);
    pa_threaded_mainloop_free(m_pMainloop);
}

pa_mainloop_api* CPulseLoop::GetApi() const {
    return pa_threaded_mainloop_get_api(m_pMainloop);
}

void CPulseLoop::Signal() const {
    pa_threaded_mainloop_signal(m_pMainloop, 0);
}

bool CPulseLoop::WaitUntil(pa_context* pContext, PulseDeadline deadline,
                           const std::function<bool()>& condition) const {
    struct Alarm {
        const CPulseLoop* pLoop;
        bool bRang = false;
    } alarm{this};
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - std::chrono::steady_clock::now());
    const auto nLeft = static_cast<pa_usec_t>(std::max<std::int64_t>(left.count(), 0));
    pa_time_event* const pTimer = pa_context_rttime_new(
        pContext, pa_rtclock_now() + nLeft,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* pArg) {
            auto* const pAlarm = static_cast<Alarm*>(pArg);
            pAlarm->bRang = true;
            pAlarm->pLoop->Signal();
        },
        &alarm);
    if (pTimer == nullptr) {
        return condition();
    }
    while (!condition() && !alarm.bRang) {
        pa_threaded_mainloop_wait(m_pMainloop);
    }
    GetApi()->time_free(pTimer);
    return condition();
}
