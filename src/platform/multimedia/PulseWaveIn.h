#pragma once

#include <memory>

class IWaveInBackend;

// Recording over the sound server. Id WAVE_MAPPER is the server's default source and follows it; the other
// ids are the server's real sources, ordered by their stable names, and stay with the source of that name:
// monitors of outputs are not listed. A device that is lost while it is open gives silence and is taken up
// again by itself as soon as it is there again.
std::shared_ptr<IWaveInBackend> MakePulseWaveInBackend();
