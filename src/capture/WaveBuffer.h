#pragma once

#include "platform/multimedia/WaveIn.h"

#include <memory>

// One capture buffer: the header that the device is given, and the sample memory that it points to.
class CWaveBuffer : public WAVEHDR {
public:
    // nBytes of silence. When no memory can be had, GetData is null and the length 0.
    explicit CWaveBuffer(int nBytes);
    const char* GetData() const { return lpData; }

private:
    std::unique_ptr<char[]> m_pData;
};
