#include "platform/multimedia/WaveInRow.h"

#include "platform/multimedia/WaveIn.h"

CString KeyOfWaveRow(int nRow) {
    WAVEINCAPS caps;
    const bool bDevice = nRow > 0 && waveInGetDevCapsA(static_cast<UINT>(nRow - 1), caps) == MMSYSERR_NOERROR;
    return bDevice ? caps.strKey : CString();
}

int FindWaveRow(const CString& strKey, int nRow) {
    if (strKey.empty()) {
        return nRow;
    }
    WAVEINCAPS caps;
    for (UINT i = 0; waveInGetDevCapsA(i, caps) == MMSYSERR_NOERROR; ++i) {
        if (caps.strKey == strKey) {
            return static_cast<int>(i) + 1;
        }
    }
    return -1;
}
