#include "capture/WaveFormat.h"

void CWaveFormat::Set(int nChannelCount, int nSampleRate, int nBits) {
    wFormatTag = WAVE_FORMAT_PCM;
    nChannels = static_cast<WORD>(nChannelCount);
    nSamplesPerSec = static_cast<DWORD>(nSampleRate);
    wBitsPerSample = static_cast<WORD>(nBits);
    const DWORD dwFrameBytes = DWORD{nChannels} * (wBitsPerSample / 8U);
    nBlockAlign = static_cast<WORD>(dwFrameBytes);
    nAvgBytesPerSec = dwFrameBytes * nSamplesPerSec;
    cbSize = 0;
}
