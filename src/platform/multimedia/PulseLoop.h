#pragma once

#include <chrono>
#include <functional>
#include <memory>

struct pa_context;
struct pa_mainloop_api;
struct pa_operation;
struct pa_stream;
struct pa_threaded_mainloop;
struct pa_time_event;

// Closing a context or a stream: its callbacks are taken away, it is disconnected without waiting for an
// answer, and the reference is given up. With the loop's lock held, or on its thread from a timer.
struct PulseContextCloser {
    void operator()(pa_context* pContext) const;
};
struct PulseStreamCloser {
    void operator()(pa_stream* pStream) const;
};
// Cancels the operation, so that its callback is not called any more.
struct PulseOperationCloser {
    void operator()(pa_operation* pOperation) const;
};
using PulseContextPtr = std::unique_ptr<pa_context, PulseContextCloser>;
using PulseStreamPtr = std::unique_ptr<pa_stream, PulseStreamCloser>;
using PulseOperationPtr = std::unique_ptr<pa_operation, PulseOperationCloser>;

using PulseDeadline = std::chrono::steady_clock::time_point;

// Longest time for an answer of the server when a device is opened or the devices are listed.
inline constexpr std::chrono::milliseconds PULSE_PATIENCE{1500};

// The thread on which the sound server's answers arrive and all callbacks run. Whatever uses it takes its
// lock; the callbacks run with the lock held. Contexts and streams must be closed before the loop is
// destroyed.
class CPulseLoop {
public:
    class CLock {
    public:
        explicit CLock(const CPulseLoop& loop);
        ~CLock();
        CLock(const CLock&) = delete;
        CLock& operator=(const CLock&) = delete;

    private:
        pa_threaded_mainloop* m_pMainloop;
    };

    // Null when there is no room for a thread.
    static std::unique_ptr<CPulseLoop> Create();
    // Ends the thread; no callback runs after that. Not from a callback, and without the lock.
    ~CPulseLoop();
    CPulseLoop(const CPulseLoop&) = delete;
    CPulseLoop& operator=(const CPulseLoop&) = delete;

    pa_mainloop_api* GetApi() const;
    // Wakes whoever is in WaitUntil.
    void Signal() const;
    // With the lock held, which is given up while waiting: true once the condition holds, false when the time
    // ran out. The context only lends its clock, in whatever state it is.
    bool WaitUntil(pa_context* pContext, PulseDeadline deadline,
                   const std::function<bool()>& condition) const;

private:
    explicit CPulseLoop(pa_threaded_mainloop* pMainloop);

    pa_threaded_mainloop* m_pMainloop;
};
