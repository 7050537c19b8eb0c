#include "platform/multimedia/WaveIn.h"

#include "platform/multimedia/BackendSlot.h"
#include "platform/multimedia/PulseWaveIn.h"
#include "platform/multimedia/WaveInBackend.h"

#include <map>
#include <mutex>
#include <utility>

namespace {

struct OpenHandle {
    std::shared_ptr<IWaveInStream> pStream;
    WaveInNotify notify;
};

// What is held once for the program. Never destroyed: an abandoned capture thread may come here while the
// program ends.
struct Registry {
    CBackendSlot<IWaveInBackend> m_backend{&MakePulseWaveInBackend};
    std::mutex m_mutex;  // of the handles; never held while a backend is called
    std::map<HWAVEIN, OpenHandle> m_handles;
    HWAVEIN m_hLast = 0;
};

Registry& GetRegistry() {
    static auto& registry = *new Registry;
    return registry;
}

std::shared_ptr<IWaveInBackend> CurrentBackend() {
    return GetRegistry().m_backend.Get();
}

HWAVEIN NewHandle() {
    Registry& registry = GetRegistry();
    const std::lock_guard lock(registry.m_mutex);
    return ++registry.m_hLast;
}

// Null for a handle that is not open.
std::shared_ptr<IWaveInStream> FindStream(HWAVEIN hWaveIn) {
    Registry& registry = GetRegistry();
    const std::lock_guard lock(registry.m_mutex);
    const auto found = registry.m_handles.find(hWaveIn);
    return found == registry.m_handles.end() ? nullptr : found->second.pStream;
}

}  // namespace

std::shared_ptr<IWaveInBackend> SetWaveInBackend(std::shared_ptr<IWaveInBackend> pBackend) {
    return GetRegistry().m_backend.Exchange(std::move(pBackend));
}

UINT waveInGetNumDevs() {
    return CurrentBackend()->GetNumDevs();
}

MMRESULT waveInGetDevCapsA(UINT uDeviceId, WAVEINCAPS& caps) {
    return CurrentBackend()->GetDevCaps(uDeviceId, caps);
}

MMRESULT waveInOpen(HWAVEIN& hWaveIn, UINT uDeviceId, const WAVEFORMATEX& format, WaveInProc pfnCallback,
                    std::uintptr_t dwInstance, DWORD dwFlags) {
    hWaveIn = 0;
    if (pfnCallback == nullptr || dwFlags != CALLBACK_FUNCTION) {
        return MMSYSERR_INVALPARAM;
    }
    const HWAVEIN hNew = NewHandle();
    WaveInNotify notify = [hNew, pfnCallback, dwInstance](UINT uMessage, WAVEHDR* pHeader) {
        pfnCallback(hNew, uMessage, dwInstance, reinterpret_cast<std::uintptr_t>(pHeader), 0);
    };
    std::shared_ptr<IWaveInStream> pStream;
    const MMRESULT result = CurrentBackend()->Open(uDeviceId, format, notify, pStream);
    if (result != MMSYSERR_NOERROR) {
        return result;
    }
    {
        Registry& registry = GetRegistry();
        const std::lock_guard lock(registry.m_mutex);
        registry.m_handles[hNew] = {std::move(pStream), notify};
    }
    hWaveIn = hNew;
    notify(MM_WIM_OPEN, nullptr);
    return MMSYSERR_NOERROR;
}

MMRESULT waveInPrepareHeader(HWAVEIN hWaveIn, WAVEHDR& header, UINT uSize) {
    if (uSize < sizeof(WAVEHDR) || header.lpData == nullptr) {
        return MMSYSERR_INVALPARAM;
    }
    if (!FindStream(hWaveIn)) {
        return MMSYSERR_INVALHANDLE;
    }
    header.dwFlags |= WHDR_PREPARED;
    return MMSYSERR_NOERROR;
}

MMRESULT waveInAddBuffer(HWAVEIN hWaveIn, WAVEHDR& header, UINT uSize) {
    if (uSize < sizeof(WAVEHDR)) {
        return MMSYSERR_INVALPARAM;
    }
    const auto pStream = FindStream(hWaveIn);
    return pStream ? pStream->AddBuffer(header) : MMSYSERR_INVALHANDLE;
}

MMRESULT waveInStart(HWAVEIN hWaveIn) {
    const auto pStream = FindStream(hWaveIn);
    return pStream ? pStream->Start() : MMSYSERR_INVALHANDLE;
}

MMRESULT waveInStop(HWAVEIN hWaveIn) {
    const auto pStream = FindStream(hWaveIn);
    return pStream ? pStream->Stop() : MMSYSERR_INVALHANDLE;
}

MMRESULT waveInReset(HWAVEIN hWaveIn) {
    const auto pStream = FindStream(hWaveIn);
    return pStream ? pStream->Reset() : MMSYSERR_INVALHANDLE;
}

MMRESULT waveInClose(HWAVEIN hWaveIn) {
    OpenHandle handle;
    {
        Registry& registry = GetRegistry();
        const std::lock_guard lock(registry.m_mutex);
        auto node = registry.m_handles.extract(hWaveIn);
        if (node.empty()) {
            return MMSYSERR_INVALHANDLE;
        }
        handle = std::move(node.mapped());
    }
    const MMRESULT result = handle.pStream->Close();
    handle.notify(MM_WIM_CLOSE, nullptr);
    return result;
}
