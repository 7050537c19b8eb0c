#include "platform/multimedia/PulsePlayback.h"

#include <pulse/pulseaudio.h>

#include <cstdint>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr std::size_t FRAME_BYTES = 2 * sizeof(float);
// Soon enough for a click of the user, and long enough for a machine that is busy.
constexpr int BUFFERS_PER_SECOND = 25;
constexpr int REQUESTS_PER_SECOND = 100;
constexpr auto SILENCE_BEFORE_PAUSE = 2s;

}  // namespace

CPulsePlayback::CPulsePlayback(int nRate, Source source)
    : m_nRate(nRate),
      m_source(std::move(source)),
      m_pLoop(CPulseLoop::Create()),
      m_lastSound(std::chrono::steady_clock::now()) {
    if (!m_pLoop) {
        return;
    }
    const CPulseLoop::CLock lock(*m_pLoop);
    m_pContext.reset(pa_context_new(m_pLoop->GetApi(), "Fretvane"));
    if (!m_pContext) {
        return;
    }
    pa_context_set_state_callback(
        m_pContext.get(),
        [](pa_context*, void* pArg) { static_cast<CPulsePlayback*>(pArg)->OnContextState(); }, this);
    // To start a server is not a tone's business.
    pa_context_connect(m_pContext.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

CPulsePlayback::~CPulsePlayback() {
    if (m_pLoop) {
        const CPulseLoop::CLock lock(*m_pLoop);
        m_pStream.reset();
        m_pContext.reset();
    }
}

void CPulsePlayback::Wake() {
    if (m_pLoop) {
        const CPulseLoop::CLock lock(*m_pLoop);
        m_lastSound = std::chrono::steady_clock::now();
        m_bSilentSent = false;
        if (m_bCorked) {
            Cork(false);
        }
    }
}

bool CPulsePlayback::IsUsable() const {
    if (!m_pLoop) {
        return false;
    }
    const CPulseLoop::CLock lock(*m_pLoop);
    return m_pContext && PA_CONTEXT_IS_GOOD(pa_context_get_state(m_pContext.get())) &&
           (!m_pStream || PA_STREAM_IS_GOOD(pa_stream_get_state(m_pStream.get())));
}

void CPulsePlayback::Drain(std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    if (!m_pLoop) {
        return;
    }
    const CPulseLoop::CLock lock(*m_pLoop);
    const bool bSounding = !m_bCorked && m_pStream && pa_stream_get_state(m_pStream.get()) == PA_STREAM_READY;
    if (bSounding && m_pLoop->WaitUntil(m_pContext.get(), deadline, [this] { return m_bSilentSent; })) {
        m_bEnding = true;
        const PulseOperationPtr pDrain(pa_stream_drain(
            m_pStream.get(),
            [](pa_stream*, int, void* pArg) { static_cast<CPulsePlayback*>(pArg)->m_pLoop->Signal(); },
            this));
        m_pLoop->WaitUntil(m_pContext.get(), deadline, [&pDrain] {
            return !pDrain || pa_operation_get_state(pDrain.get()) != PA_OPERATION_RUNNING;
        });
    }
    m_bEnding = true;
}

void CPulsePlayback::OnContextState() {
    if (pa_context_get_state(m_pContext.get()) != PA_CONTEXT_READY) {
        return;
    }
    const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(m_nRate), 2};
    m_pStream.reset(pa_stream_new(m_pContext.get(), "Reference tone", &spec, nullptr));
    if (!m_pStream) {
        return;
    }
    pa_stream_set_write_callback(
        m_pStream.get(),
        [](pa_stream*, std::size_t nBytes, void* pArg) {
            static_cast<CPulsePlayback*>(pArg)->OnWritable(nBytes);
        },
        this);
    constexpr auto nServersChoice = static_cast<std::uint32_t>(-1);
    const auto bytesOf = [this](int nPerSecond) {
        return static_cast<std::uint32_t>(FRAME_BYTES * static_cast<std::size_t>(m_nRate / nPerSecond));
    };
    const pa_buffer_attr attributes{nServersChoice, bytesOf(BUFFERS_PER_SECOND), 0,
                                    bytesOf(REQUESTS_PER_SECOND), nServersChoice};
    pa_stream_connect_playback(m_pStream.get(), nullptr, &attributes, PA_STREAM_ADJUST_LATENCY, nullptr,
                               nullptr);
}

void CPulsePlayback::OnWritable(std::size_t nBytes) {
    if (m_bEnding) {
        return;
    }
    void* pBuffer = nullptr;
    if (pa_stream_begin_write(m_pStream.get(), &pBuffer, &nBytes) < 0 || pBuffer == nullptr) {
        return;
    }
    const std::size_t nFrames = nBytes / FRAME_BYTES;
    m_source.render(std::span(static_cast<float*>(pBuffer), nFrames * 2));
    pa_stream_write(m_pStream.get(), pBuffer, nFrames * FRAME_BYTES, nullptr, 0, PA_SEEK_RELATIVE);
    const auto now = std::chrono::steady_clock::now();
    m_bSilentSent = m_source.isSilent();
    if (m_bSilentSent) {
        m_pLoop->Signal();
    } else {
        m_lastSound = now;
    }
    if (m_bSilentSent && !m_bCorked && now - m_lastSound > SILENCE_BEFORE_PAUSE) {
        Cork(true);
    }
}

void CPulsePlayback::Cork(bool bCork) {
    m_bCorked = bCork;
    if (m_pStream && pa_stream_get_state(m_pStream.get()) == PA_STREAM_READY) {
        if (pa_operation* const pCork = pa_stream_cork(m_pStream.get(), bCork ? 1 : 0, nullptr, nullptr)) {
            pa_operation_unref(pCork);
        }
    }
}
