#pragma once

#include "platform/multimedia/MidiOutBackend.h"

#include <memory>

// The MIDI system that a machine has: nothing is tried, and so nothing can fail loudly, where there is none.
std::shared_ptr<IMidiOutBackend> MakeMidiPortsBackend();
