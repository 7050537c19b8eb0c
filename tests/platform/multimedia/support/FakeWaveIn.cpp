#include "platform/multimedia/support/FakeWaveIn.h"

#include "platform/multimedia/WaveInQueue.h"

#include <algorithm>
#include <utility>

struct CFakeWaveIn::Shared {
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Device> m_devices{Device{}};
    std::vector<UINT> m_absent;
    std::vector<Stream*> m_streams;
    std::vector<Opening> m_openings;
    Calls m_calls;
    bool m_bHangOpen = false;
    bool m_bHangClose = false;
    int m_nHanging = 0;
    std::mutex m_feeding;  // one writer at a time; taken before m_mutex

    bool IsPresent(UINT uDeviceId) const {
        return std::find(m_absent.begin(), m_absent.end(), uDeviceId) == m_absent.end();
    }
    void WaitWhile(std::unique_lock<std::mutex>& lock, const bool& bHang) {
        ++m_nHanging;
        m_changed.wait(lock, [&] { return !bHang; });
        --m_nHanging;
    }
};

class CFakeWaveIn::Stream final : public IWaveInStream {
public:
    Stream(std::shared_ptr<Shared> pShared, UINT uDeviceId, WaveInNotify notify)
        : m_pShared(std::move(pShared)), m_uDeviceId(uDeviceId), m_queue(std::move(notify)) {}
    ~Stream() override { Forget(); }

    MMRESULT AddBuffer(WAVEHDR& header) override {
        const MMRESULT result = m_queue.Add(header);
        const std::lock_guard lock(m_pShared->m_mutex);
        ++m_pShared->m_calls.nAddBuffer;
        if (result == MMSYSERR_NOERROR) {
            m_nRoom += header.dwBufferLength / 2;
        }
        m_pShared->m_changed.notify_all();
        return result;
    }
    MMRESULT Start() override { return Run(m_pShared->m_calls.nStart, true); }
    MMRESULT Stop() override { return Run(m_pShared->m_calls.nStop, false); }
    MMRESULT Reset() override {
        Run(m_pShared->m_calls.nReset, false);
        m_queue.GiveBackAll();
        const std::lock_guard lock(m_pShared->m_mutex);
        m_nRoom = 0;
        return MMSYSERR_NOERROR;
    }
    MMRESULT Close() override {
        {
            std::unique_lock lock(m_pShared->m_mutex);
            ++m_pShared->m_calls.nClose;
            m_pShared->WaitWhile(lock, m_pShared->m_bHangClose);
        }
        Forget();
        m_queue.GiveBackAll();
        return MMSYSERR_NOERROR;
    }

    UINT GetDeviceId() const { return m_uDeviceId; }
    // With the shared lock held.
    bool IsRunning() const { return m_bRunning; }
    std::size_t GetRoom() const { return m_nRoom; }
    void UseRoom(std::size_t nSamples) { m_nRoom -= std::min(m_nRoom, nSamples); }
    // With the feeding lock held.
    void Write(std::span<const std::int16_t> samples) { m_queue.Write(samples); }

private:
    MMRESULT Run(int& nCalls, bool bRun) {
        const std::lock_guard lock(m_pShared->m_mutex);
        ++nCalls;
        m_bRunning = bRun;
        m_pShared->m_changed.notify_all();
        return MMSYSERR_NOERROR;
    }
    // No sample comes any more.
    void Forget() {
        const std::lock_guard feeding(m_pShared->m_feeding);
        const std::lock_guard lock(m_pShared->m_mutex);
        std::erase(m_pShared->m_streams, this);
    }

    std::shared_ptr<Shared> m_pShared;
    const UINT m_uDeviceId;
    CWaveInQueue m_queue;
    bool m_bRunning = false;
    std::size_t m_nRoom = 0;  // samples that the waiting buffers can take
};

CFakeWaveIn::CFakeWaveIn() : m_pShared(std::make_shared<Shared>()) {}

CFakeWaveIn::~CFakeWaveIn() {
    StopPlaying();
    HangOpen(false);
    HangClose(false);
}

void CFakeWaveIn::SetDevices(std::vector<Device> devices) {
    const std::lock_guard lock(m_pShared->m_mutex);
    m_pShared->m_devices = std::move(devices);
}

void CFakeWaveIn::Feed(std::span<const std::int16_t> samples) {
    const std::lock_guard feeding(m_pShared->m_feeding);
    std::vector<Stream*> streams;
    {
        const std::lock_guard lock(m_pShared->m_mutex);
        for (Stream* const pStream : m_pShared->m_streams) {
            if (pStream->IsRunning() && m_pShared->IsPresent(pStream->GetDeviceId())) {
                pStream->UseRoom(samples.size());
                streams.push_back(pStream);
            }
        }
    }
    for (Stream* const pStream : streams) {
        pStream->Write(samples);
    }
}

void CFakeWaveIn::Play(std::function<std::int16_t(std::uint64_t)> signal, Rhythm rhythm) {
    m_player = std::jthread([this, signal = std::move(signal), rhythm](const std::stop_token& stop) {
        std::vector<std::int16_t> chunk(rhythm.nChunk);
        auto next = std::chrono::steady_clock::now();
        for (std::uint64_t nSample = 0; !stop.stop_requested();) {
            if (rhythm.interval.count() > 0) {
                next += rhythm.interval;
                std::this_thread::sleep_until(next);
            } else {
                std::unique_lock lock(m_pShared->m_mutex);
                const auto hasRoom = [&] {
                    return std::any_of(m_pShared->m_streams.begin(), m_pShared->m_streams.end(),
                                       [&](const Stream* pStream) {
                                           return pStream->IsRunning() && pStream->GetRoom() >= rhythm.nChunk;
                                       });
                };
                if (!m_pShared->m_changed.wait_for(lock, std::chrono::milliseconds(20), hasRoom)) {
                    continue;
                }
            }
            for (std::int16_t& nValue : chunk) {
                nValue = signal(nSample++);
            }
            Feed(chunk);
        }
    });
}

void CFakeWaveIn::StopPlaying() {
    m_player = {};
}

void CFakeWaveIn::SetPresent(UINT uDeviceId, bool bPresent) {
    const std::lock_guard lock(m_pShared->m_mutex);
    std::erase(m_pShared->m_absent, uDeviceId);
    if (!bPresent) {
        m_pShared->m_absent.push_back(uDeviceId);
    }
}

void CFakeWaveIn::HangOpen(bool bHang) {
    const std::lock_guard lock(m_pShared->m_mutex);
    m_pShared->m_bHangOpen = bHang;
    m_pShared->m_changed.notify_all();
}

void CFakeWaveIn::HangClose(bool bHang) {
    const std::lock_guard lock(m_pShared->m_mutex);
    m_pShared->m_bHangClose = bHang;
    m_pShared->m_changed.notify_all();
}

CFakeWaveIn::Calls CFakeWaveIn::GetCalls() const {
    const std::lock_guard lock(m_pShared->m_mutex);
    return m_pShared->m_calls;
}

std::vector<CFakeWaveIn::Opening> CFakeWaveIn::GetOpenings() const {
    const std::lock_guard lock(m_pShared->m_mutex);
    return m_pShared->m_openings;
}

int CFakeWaveIn::GetOpenCount() const {
    const std::lock_guard lock(m_pShared->m_mutex);
    return static_cast<int>(m_pShared->m_streams.size());
}

bool CFakeWaveIn::IsAnybodyHanging() const {
    const std::lock_guard lock(m_pShared->m_mutex);
    return m_pShared->m_nHanging > 0;
}

UINT CFakeWaveIn::GetNumDevs() {
    const std::lock_guard lock(m_pShared->m_mutex);
    return static_cast<UINT>(m_pShared->m_devices.size());
}

MMRESULT CFakeWaveIn::GetDevCaps(UINT uDeviceId, WAVEINCAPS& caps) {
    const std::lock_guard lock(m_pShared->m_mutex);
    const UINT uIndex = uDeviceId == WAVE_MAPPER ? 0 : uDeviceId;
    if (uIndex >= m_pShared->m_devices.size()) {
        return MMSYSERR_BADDEVICEID;
    }
    const Device& device = m_pShared->m_devices[uIndex];
    caps.szPname = device.strName;
    caps.dwFormats = device.dwFormats;
    caps.wChannels = device.nChannels;
    caps.vDriverVersion = device.vDriverVersion;
    caps.strKey = device.strKey;
    return MMSYSERR_NOERROR;
}

MMRESULT CFakeWaveIn::Open(UINT uDeviceId, const WAVEFORMATEX& format, WaveInNotify notify,
                           std::shared_ptr<IWaveInStream>& pStream) {
    std::unique_lock lock(m_pShared->m_mutex);
    ++m_pShared->m_calls.nOpen;
    m_pShared->WaitWhile(lock, m_pShared->m_bHangOpen);
    const UINT uIndex = uDeviceId == WAVE_MAPPER ? 0 : uDeviceId;
    MMRESULT result = MMSYSERR_NOERROR;
    if (uIndex >= m_pShared->m_devices.size() || !m_pShared->IsPresent(uIndex)) {
        result = MMSYSERR_BADDEVICEID;
    } else if (m_pShared->m_devices[uIndex].bRefusesAll ||
               m_pShared->m_devices[uIndex].refusedRates.contains(format.nSamplesPerSec)) {
        result = WAVERR_BADFORMAT;
    } else {
        auto pNew = std::make_shared<Stream>(m_pShared, uIndex, std::move(notify));
        m_pShared->m_streams.push_back(pNew.get());
        pStream = std::move(pNew);
    }
    m_pShared->m_openings.push_back({uDeviceId, format.nSamplesPerSec, result});
    m_pShared->m_changed.notify_all();
    return result;
}

CFakeWaveInScope::CFakeWaveInScope()
    : m_pFake(std::make_shared<CFakeWaveIn>()), m_pPrevious(SetWaveInBackend(m_pFake)) {}

CFakeWaveInScope::~CFakeWaveInScope() {
    m_pFake->StopPlaying();
    m_pFake->HangOpen(false);
    m_pFake->HangClose(false);
    SetWaveInBackend(m_pPrevious);
}
