#pragma once

#include <array>

// The six sets of values that a capture is tried with, in this order.
struct CaptureSet {
    int nSampleRate;  // Hz
    int nBufferSamples;
    int nBlockSamples;
    float fLowestFrequency;  // Hz
};

inline constexpr std::array<CaptureSet, 6> CAPTURE_SETS = {{{11025, 1024, 1024, 50.0F},
                                                            {22050, 1024, 1024, 35.0F},
                                                            {44100, 2048, 2048, 35.0F},
                                                            {11025, 512, 512, 35.0F},
                                                            {22050, 1024, 1024, 35.0F},
                                                            {44100, 2048, 2048, 35.0F}}};
