#include "platform/multimedia/PulseWaveIn.h"

#include "platform/multimedia/PulseSources.h"
#include "platform/multimedia/PulseWaveInStream.h"
#include "platform/multimedia/WaveInBackend.h"

#include <array>
#include <chrono>
#include <mutex>
#include <optional>
#include <utility>

namespace {

PulseDeadline NextDeadline() {
    return std::chrono::steady_clock::now() + PULSE_PATIENCE;
}

// A source gives what its own rate and channels hold; the server makes any width of sample of it.
DWORD FormatsOf(const PulseSource& source) {
    struct Row {
        UINT nRate;
        DWORD dwMono;
        DWORD dwStereo;
    };
    constexpr std::array<Row, 3> rows = {{
        {11025, WAVE_FORMAT_1M08 | WAVE_FORMAT_1M16, WAVE_FORMAT_1S08 | WAVE_FORMAT_1S16},
        {22050, WAVE_FORMAT_2M08 | WAVE_FORMAT_2M16, WAVE_FORMAT_2S08 | WAVE_FORMAT_2S16},
        {44100, WAVE_FORMAT_4M08 | WAVE_FORMAT_4M16, WAVE_FORMAT_4S08 | WAVE_FORMAT_4S16},
    }};
    DWORD dwFormats = 0;
    for (const Row& row : rows) {
        if (row.nRate <= source.nRate) {
            dwFormats |= row.dwMono | (source.nChannels >= 2 ? row.dwStereo : 0);
        }
    }
    return dwFormats;
}

class CPulseWaveInBackend final : public IWaveInBackend {
public:
    UINT GetNumDevs() override;
    MMRESULT GetDevCaps(UINT uDeviceId, WAVEINCAPS& caps) override;
    MMRESULT Open(UINT uDeviceId, const WAVEFORMATEX& format, WaveInNotify notify,
                  std::shared_ptr<IWaveInStream>& pStream) override;

private:
    // The latest list; taken now if there was none yet.
    PulseSourceList GetList();

    std::mutex m_mutex;  // never held while the server is asked
    std::optional<PulseSourceList> m_list;
};

UINT CPulseWaveInBackend::GetNumDevs() {
    PulseSourceList list = ListPulseSources(NextDeadline());
    const std::lock_guard lock(m_mutex);
    m_list = std::move(list);
    return static_cast<UINT>(m_list->sources.size());
}

PulseSourceList CPulseWaveInBackend::GetList() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_list) {
            return *m_list;
        }
    }
    GetNumDevs();
    const std::lock_guard lock(m_mutex);
    return *m_list;
}

MMRESULT CPulseWaveInBackend::GetDevCaps(UINT uDeviceId, WAVEINCAPS& caps) {
    const PulseSourceList list = GetList();
    if (uDeviceId == WAVE_MAPPER ? list.defaultSource.strName.empty() : uDeviceId >= list.sources.size()) {
        return MMSYSERR_BADDEVICEID;
    }
    const PulseSource& source = uDeviceId == WAVE_MAPPER ? list.defaultSource : list.sources[uDeviceId];
    caps.szPname = source.strDescription;
    caps.dwFormats = FormatsOf(source);
    caps.wChannels = static_cast<WORD>(source.nChannels);
    caps.vDriverVersion = list.vServerVersion;
    caps.strKey = source.strName;
    return MMSYSERR_NOERROR;
}

MMRESULT CPulseWaveInBackend::Open(UINT uDeviceId, const WAVEFORMATEX& format, WaveInNotify notify,
                                   std::shared_ptr<IWaveInStream>& pStream) {
    constexpr UINT nHighestRate = 384000;
    if (format.wFormatTag != WAVE_FORMAT_PCM || format.nChannels != 1 || format.wBitsPerSample != 16 ||
        format.nSamplesPerSec == 0 || format.nSamplesPerSec > nHighestRate) {
        return WAVERR_BADFORMAT;
    }
    std::string strSource;
    if (uDeviceId != WAVE_MAPPER) {
        const PulseSourceList list = GetList();
        if (uDeviceId >= list.sources.size()) {
            return MMSYSERR_BADDEVICEID;
        }
        strSource = list.sources[uDeviceId].strName;
    }
    auto pNew =
        std::make_shared<CPulseWaveInStream>(std::move(strSource), format.nSamplesPerSec, std::move(notify));
    const MMRESULT result = pNew->Open(NextDeadline());
    if (result == MMSYSERR_NOERROR) {
        pStream = std::move(pNew);
    }
    return result;
}

}  // namespace

std::shared_ptr<IWaveInBackend> MakePulseWaveInBackend() {
    return std::make_shared<CPulseWaveInBackend>();
}
