#include "platform/multimedia/WaveIn.h"

#include <cstdio>

// Lists the recording devices as the tuner numbers them; 0 would be the preferred one. Fails where there is
// none.
int main() {
    const UINT nDevices = waveInGetNumDevs();
    for (UINT i = 0; i < nDevices; ++i) {
        WAVEINCAPS caps;
        if (waveInGetDevCapsA(i, caps) == MMSYSERR_NOERROR) {
            std::printf("%u  %s\n", i + 1, caps.szPname.c_str());
        }
    }
    return nDevices == 0 ? 1 : 0;
}
