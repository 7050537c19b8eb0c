#include "capture/WaveFormat.h"

void CWaveFormat::Set(int nChannelCount, int nSampleRate, int nBits) {
    wFormatTag = WAVE_FORMAT_PCM;
    nChannels = static_cast<WORD>(nChannelCount);
    nSamplesPerSec = static_cast<DWORD>(nSampleRate);
    wBitsPerSample = static_cast<WORD>(nBits);
    nBlockAlign = static_cast<WORD>(nChannels * (wBitsPerSample / 8));
    nAvgBytesPerSec = nBlockAlign * nSamplesPerSec;
    cbSize = 0;
}
