#pragma once

#include "platform/multimedia/PulseLoop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <span>

// A stream of sound to the server's default output, asked for without waiting: until it stands, and when the
// server is not there or goes away, nothing is heard and nothing is said.
class CPulsePlayback {
public:
    struct Source {
        // Both on the loop's thread. Fills pairs of left and right.
        std::function<void(std::span<float>)> render;
        std::function<bool()> isSilent;
    };

    CPulsePlayback(int nRate, Source source);
    // At once, whatever state the server is in. No call of the source comes after it.
    ~CPulsePlayback();
    CPulsePlayback(const CPulsePlayback&) = delete;
    CPulsePlayback& operator=(const CPulsePlayback&) = delete;

    // There is something to play: a stream that paused because of silence goes on.
    void Wake();
    // False once the server is gone or wants no stream: only a new object can be heard then.
    bool IsUsable() const;
    // Plays on until the source is silent and that has been heard, for a time at most. Nothing is asked of
    // the source afterwards.
    void Drain(std::chrono::milliseconds atMost);

private:
    void OnContextState();
    void OnWritable(std::size_t nBytes);
    void Cork(bool bCork);

    const int m_nRate;
    const Source m_source;
    std::unique_ptr<CPulseLoop> m_pLoop;
    // On the loop's thread, or with its lock held.
    PulseContextPtr m_pContext;
    PulseStreamPtr m_pStream;
    bool m_bCorked = false;
    bool m_bSilentSent = true;  // the server has got all that was to be heard
    bool m_bEnding = false;
    std::chrono::steady_clock::time_point m_lastSound;
};
