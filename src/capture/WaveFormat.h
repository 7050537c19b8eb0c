#pragma once

#include "platform/multimedia/WaveIn.h"

// The format with which a device is opened: uncompressed samples.
struct CWaveFormat : WAVEFORMATEX {
    CWaveFormat(int nChannelCount, int nSampleRate, int nBits) { Set(nChannelCount, nSampleRate, nBits); }
    // Channels and bits are taken as 16-bit values.
    void Set(int nChannelCount, int nSampleRate, int nBits);
};
