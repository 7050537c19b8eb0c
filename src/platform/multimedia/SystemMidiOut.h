#pragma once

#include <memory>

class IMidiOutBackend;

// Device 0 is the built-in synthesizer; behind it stand the system's MIDI ports, as long as it has any.
std::shared_ptr<IMidiOutBackend> MakeSystemMidiOutBackend();
