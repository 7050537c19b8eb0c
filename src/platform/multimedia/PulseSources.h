#pragma once

#include "platform/multimedia/PulseLoop.h"
#include "platform/multimedia/WaveIn.h"

#include <string>
#include <vector>

// A source of the sound server.
struct PulseSource {
    std::string strName;         // stable, for the server
    std::string strDescription;  // for the user
    bool bMonitor = false;       // what goes to an output, not a device of its own
    UINT nRate = 0;              // Hz
    int nChannels = 0;
};

// What the server had to offer at one moment.
struct PulseSourceList {
    std::vector<PulseSource> sources;  // real ones, by stable name
    PulseSource defaultSource;         // without a name if there is none
    UINT vServerVersion = 0;           // major in the high byte, minor in the low one
};

// Asks the server. Empty when there is none or it does not answer in time.
PulseSourceList ListPulseSources(PulseDeadline deadline);
