#pragma once

#include <algorithm>
#include <array>
#include <limits>

// One set of values with which the capture may be started.
struct CaptureAttempt {
    bool bPreferredDevice;  // the system's preferred device in place of the one that the user chose
    int nSampleRate;        // Hz
    int nBufferSamples;
    int nBlockSamples;
    float fLowestFrequency;  // Hz
};

// The sets in the order in which they are tried: the long block at the low rate resolves the low strings
// best, and a device that takes no rate at all gives way to the preferred one.
inline constexpr std::array<CaptureAttempt, 6> CAPTURE_LADDER = {{
    {false, 11025, 1024, 1024, 50.0F},
    {false, 22050, 1024, 1024, 35.0F},
    {false, 44100, 2048, 2048, 35.0F},
    {true, 11025, 512, 512, 35.0F},
    {true, 22050, 1024, 1024, 35.0F},
    {true, 44100, 2048, 2048, 35.0F},
}};

// The stored hop as whole samples; it may be any number from 0 up.
inline int CutHop(float fHop) {
    constexpr double LONGEST = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(static_cast<double>(fHop), LONGEST));
}
