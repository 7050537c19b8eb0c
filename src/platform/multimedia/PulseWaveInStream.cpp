#include "platform/multimedia/PulseWaveInStream.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

using namespace std::chrono_literals;

namespace {

// Two channels are asked for and averaged here: not every server mixes them at the same loudness.
constexpr int CHANNELS = 2;
constexpr std::size_t FRAME_BYTES = CHANNELS * sizeof(std::int16_t);

// Pieces in which the server is asked to send, per second.
constexpr UINT FRAGMENTS_PER_SECOND = 43;

constexpr auto TICK = 100ms;
constexpr auto RETRY_INTERVAL = 500ms;
// A source that sends nothing for so long counts as silent: far above the servers' own unevenness.
constexpr auto SILENCE_AFTER = 500ms;

}  // namespace

CPulseWaveInStream::CPulseWaveInStream(std::string strSource, UINT nRate, WaveInNotify notify)
    : m_strSource(std::move(strSource)), m_nRate(nRate), m_queue(std::move(notify)) {}

CPulseWaveInStream::~CPulseWaveInStream() {
    Close();
}

MMRESULT CPulseWaveInStream::Open(PulseDeadline deadline) {
    m_pLoop = CPulseLoop::Create();
    if (!m_pLoop) {
        return MMSYSERR_NOMEM;
    }
    MMRESULT result = MMSYSERR_NOERROR;
    {
        const CPulseLoop::CLock lock(*m_pLoop);
        if (!ConnectServer()) {
            result = MMSYSERR_NODRIVER;
        } else if (!m_pLoop->WaitUntil(m_pContext.get(), deadline,
                                       [this] { return m_link != Link::Opening; })) {
            result = MMSYSERR_ERROR;
        } else if (m_link == Link::Lost) {
            result = m_failure;
        } else {
            m_pTick = pa_context_rttime_new(
                m_pContext.get(),
                pa_rtclock_now() + static_cast<pa_usec_t>(std::chrono::microseconds(TICK).count()),
                [](pa_mainloop_api*, pa_time_event* pTimer, const timeval*, void* pArg) {
                    static_cast<CPulseWaveInStream*>(pArg)->OnTick(pTimer);
                },
                this);
        }
    }
    if (result != MMSYSERR_NOERROR) {
        Close();
    }
    return result;
}

MMRESULT CPulseWaveInStream::AddBuffer(WAVEHDR& header) {
    return m_queue.Add(header);
}

MMRESULT CPulseWaveInStream::Start() {
    const CPulseLoop::CLock lock(*m_pLoop);
    m_bRecording = true;
    m_bSilent = false;
    m_filledUntil = Clock::now();
    Cork(false);
    return MMSYSERR_NOERROR;
}

MMRESULT CPulseWaveInStream::Stop() {
    const CPulseLoop::CLock lock(*m_pLoop);
    m_bRecording = false;
    Cork(true);
    return MMSYSERR_NOERROR;
}

MMRESULT CPulseWaveInStream::Reset() {
    Stop();
    m_queue.GiveBackAll();
    return MMSYSERR_NOERROR;
}

MMRESULT CPulseWaveInStream::Close() {
    if (m_pLoop) {
        {
            const CPulseLoop::CLock lock(*m_pLoop);
            if (m_pTick != nullptr) {
                m_pLoop->GetApi()->time_free(m_pTick);
                m_pTick = nullptr;
            }
            m_pStream.reset();
            m_pContext.reset();
        }
        m_pLoop.reset();
    }
    m_queue.GiveBackAll();
    return MMSYSERR_NOERROR;
}

bool CPulseWaveInStream::ConnectServer() {
    PulseContextPtr pContext(pa_context_new(m_pLoop->GetApi(), "Fretvane"));
    if (!pContext) {
        return false;
    }
    pa_context_set_state_callback(
        pContext.get(),
        [](pa_context*, void* pArg) { static_cast<CPulseWaveInStream*>(pArg)->OnContextState(); }, this);
    m_pContext = std::move(pContext);
    // Only the first connection may wake a server: to bring a lost one back is not our business.
    const auto flags = m_link == Link::Opening ? PA_CONTEXT_NOFLAGS : PA_CONTEXT_NOAUTOSPAWN;
    m_bAttempting = true;
    return pa_context_connect(m_pContext.get(), nullptr, flags, nullptr) >= 0;
}

void CPulseWaveInStream::OnContextState() {
    const pa_context_state_t state = pa_context_get_state(m_pContext.get());
    if (state == PA_CONTEXT_READY) {
        ConnectSource();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        OnLost(MMSYSERR_NODRIVER);
    }
}

void CPulseWaveInStream::ConnectSource() {
    const pa_sample_spec spec{PA_SAMPLE_S16NE, m_nRate, CHANNELS};
    m_pStream.reset(pa_stream_new(m_pContext.get(), "Guitar", &spec, nullptr));
    if (!m_pStream) {
        OnLost(GetFailure());
        return;
    }
    pa_stream_set_state_callback(
        m_pStream.get(),
        [](pa_stream*, void* pArg) { static_cast<CPulseWaveInStream*>(pArg)->OnStreamState(); }, this);
    pa_stream_set_read_callback(
        m_pStream.get(),
        [](pa_stream*, std::size_t, void* pArg) { static_cast<CPulseWaveInStream*>(pArg)->OnReadable(); },
        this);
    constexpr auto nServersChoice = static_cast<std::uint32_t>(-1);
    const auto nFragment =
        static_cast<std::uint32_t>(FRAME_BYTES * std::max(m_nRate / FRAGMENTS_PER_SECOND, 1U));
    const pa_buffer_attr attributes{nServersChoice, nServersChoice, nServersChoice, nServersChoice,
                                    nFragment};
    int nFlags = PA_STREAM_ADJUST_LATENCY;
    if (!m_bRecording) {
        nFlags |= PA_STREAM_START_CORKED;
    }
    if (!m_strSource.empty()) {
        nFlags |= PA_STREAM_DONT_MOVE;
    }
    m_bAttempting = true;
    if (pa_stream_connect_record(m_pStream.get(), m_strSource.empty() ? nullptr : m_strSource.c_str(),
                                 &attributes, static_cast<pa_stream_flags_t>(nFlags)) < 0) {
        OnLost(GetFailure());
    }
}

void CPulseWaveInStream::OnStreamState() {
    const pa_stream_state_t state = pa_stream_get_state(m_pStream.get());
    if (state == PA_STREAM_READY) {
        m_bAttempting = false;
        m_link = Link::Up;
        // Recording may have begun or ended since the stream was asked for.
        Cork(!m_bRecording);
        m_pLoop->Signal();
    } else if (!PA_STREAM_IS_GOOD(state)) {
        OnLost(GetFailure());
    }
}

MMRESULT CPulseWaveInStream::GetFailure() const {
    switch (pa_context_errno(m_pContext.get())) {
        case PA_ERR_NOENTITY:
            return MMSYSERR_BADDEVICEID;
        case PA_ERR_INVALID:
        case PA_ERR_NOTSUPPORTED:
            return WAVERR_BADFORMAT;
        default:
            return MMSYSERR_ERROR;
    }
}

void CPulseWaveInStream::OnLost(MMRESULT reason) {
    if (m_link == Link::Opening) {
        m_failure = reason;
    }
    m_link = Link::Lost;
    m_bAttempting = false;
    m_lastAttempt = Clock::now();
    m_pLoop->Signal();
}

// From the timer only: an object of the library is never closed inside its own callback.
void CPulseWaveInStream::Reconnect() {
    m_pStream.reset();
    if (PA_CONTEXT_IS_GOOD(pa_context_get_state(m_pContext.get()))) {
        ConnectSource();
    } else if (!ConnectServer()) {
        OnLost(MMSYSERR_NODRIVER);
    }
}

void CPulseWaveInStream::OnTick(pa_time_event* pTimer) {
    const auto now = Clock::now();
    if (m_link == Link::Lost && !m_bAttempting && now - m_lastAttempt >= RETRY_INTERVAL) {
        Reconnect();
    }
    if (m_bRecording) {
        WriteOverdueSilence(now);
    }
    pa_context_rttime_restart(
        m_pContext.get(), pTimer,
        pa_rtclock_now() + static_cast<pa_usec_t>(std::chrono::microseconds(TICK).count()));
}

void CPulseWaveInStream::WriteOverdueSilence(Clock::time_point now) {
    if (!m_bSilent) {
        m_bSilent = now - m_filledUntil >= SILENCE_AFTER;
    }
    if (!m_bSilent) {
        return;
    }
    const auto nOverdue = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_filledUntil).count();
    m_queue.WriteSilence(static_cast<std::size_t>(nOverdue) * m_nRate / 1000);
    m_filledUntil = now;
}

void CPulseWaveInStream::OnReadable() {
    while (pa_stream_readable_size(m_pStream.get()) > 0) {
        const void* pData = nullptr;
        std::size_t nBytes = 0;
        if (pa_stream_peek(m_pStream.get(), &pData, &nBytes) < 0 || nBytes == 0) {
            return;
        }
        if (m_bRecording) {
            WriteSound(pData, nBytes);
            m_filledUntil = Clock::now();
            m_bSilent = false;
        }
        pa_stream_drop(m_pStream.get());
    }
}

// Null data with a length is a hole in the recording.
void CPulseWaveInStream::WriteSound(const void* pData, std::size_t nBytes) {
    std::size_t nFrames = nBytes / FRAME_BYTES;
    if (pData == nullptr) {
        m_queue.WriteSilence(nFrames);
        return;
    }
    const auto* pFrames = static_cast<const char*>(pData);
    std::array<std::int16_t, 512> mono{};
    while (nFrames > 0) {
        const std::size_t nPiece = std::min(nFrames, mono.size());
        for (std::size_t i = 0; i < nPiece; ++i) {
            std::array<std::int16_t, CHANNELS> frame{};
            std::memcpy(frame.data(), pFrames + i * FRAME_BYTES, FRAME_BYTES);
            mono[i] = static_cast<std::int16_t>((frame[0] + frame[1]) / 2);
        }
        m_queue.Write(std::span(mono).first(nPiece));
        pFrames += nPiece * FRAME_BYTES;
        nFrames -= nPiece;
    }
}

void CPulseWaveInStream::Cork(bool bCork) {
    if (!m_pStream || pa_stream_get_state(m_pStream.get()) != PA_STREAM_READY) {
        return;
    }
    if (pa_operation* const pCork = pa_stream_cork(m_pStream.get(), bCork ? 1 : 0, nullptr, nullptr)) {
        pa_operation_unref(pCork);
    }
    // What was recorded before is not wanted when recording begins again.
    if (bCork) {
        if (pa_operation* const pFlush = pa_stream_flush(m_pStream.get(), nullptr, nullptr)) {
            pa_operation_unref(pFlush);
        }
    }
}
