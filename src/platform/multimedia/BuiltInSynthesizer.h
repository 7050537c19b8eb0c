#pragma once

#include "platform/multimedia/MidiOutBackend.h"

#include <memory>
#include <string>
#include <vector>

// The SoundFonts that are tried, in this order.
std::vector<std::string> DefaultSoundFonts();

// One MIDI device: a synthesizer of our own that plays through the sound server. It is loaded once, beside
// the caller, from the first of the SoundFonts that can be; what is sent before it stands is played as soon
// as it does. It can be open once at a time. Once it is known that there is no SoundFont, opening fails.
std::shared_ptr<IMidiOutBackend> MakeBuiltInSynthesizer(std::vector<std::string> soundFonts);
