#pragma once

#include "platform/multimedia/WaveIn.h"

#include <functional>
#include <memory>

// The narrow interface behind the waveIn functions: a sound system is one implementation of these two
// classes.

// Told for each message of an open device, on a thread of the sound system or on the caller's own. It may
// take what the message brings and signal others; of the stream's operations it may call AddBuffer alone, for
// the others may wait for it.
using WaveInNotify = std::function<void(UINT uMessage, WAVEHDR* pHeader)>;

// One open device. Operations come from any thread; a result may be given as waveIn functions give theirs.
class IWaveInStream {
public:
    virtual ~IWaveInStream() = default;
    // The header is prepared and not queued. It comes back through the notification MM_WIM_DATA.
    virtual MMRESULT AddBuffer(WAVEHDR& header) = 0;
    virtual MMRESULT Start() = 0;
    virtual MMRESULT Stop() = 0;
    // Stops and gives every queued buffer back before it returns.
    virtual MMRESULT Reset() = 0;
    // As Reset, then lets the device go: no notification comes after it. Called once.
    virtual MMRESULT Close() = 0;

    IWaveInStream(const IWaveInStream&) = delete;
    IWaveInStream& operator=(const IWaveInStream&) = delete;

protected:
    IWaveInStream() = default;
};

class IWaveInBackend {
public:
    virtual ~IWaveInBackend() = default;
    // Takes the list of devices anew and gives its length.
    virtual UINT GetNumDevs() = 0;
    virtual MMRESULT GetDevCaps(UINT uDeviceId, WAVEINCAPS& caps) = 0;
    // On success the result is 0 and pStream is set. Bounded: a device that does not answer counts as failed.
    virtual MMRESULT Open(UINT uDeviceId, const WAVEFORMATEX& format, WaveInNotify notify,
                          std::shared_ptr<IWaveInStream>& pStream) = 0;

    IWaveInBackend(const IWaveInBackend&) = delete;
    IWaveInBackend& operator=(const IWaveInBackend&) = delete;

protected:
    IWaveInBackend() = default;
};

// Puts a backend in place of the present one and gives that back; null stands for the system's own sound
// server, which is also what stands there first. Handles that are open stay with the backend that opened
// them.
std::shared_ptr<IWaveInBackend> SetWaveInBackend(std::shared_ptr<IWaveInBackend> pBackend);
