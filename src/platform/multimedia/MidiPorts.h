#pragma once

#include "platform/multimedia/MidiOutBackend.h"

#include <memory>

enum class MidiSystem {
    AlsaSequencer,  // the one that the program uses
    Jack,           // has ports also where there is neither hardware nor a sequencer; its server must run
};

// The ports of one MIDI system. Of the ALSA sequencer nothing is tried, and so nothing can fail loudly, where
// there is none.
std::shared_ptr<IMidiOutBackend> MakeMidiPortsBackend(MidiSystem system = MidiSystem::AlsaSequencer);
