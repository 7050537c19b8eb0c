#include "end_to_end/Crowd.h"

#include <pulse/pulseaudio.h>

#include <vector>

namespace {

constexpr int MORE_THAN_ANY_SERVER_ALLOWS = 2000;

}  // namespace

struct CCrowd::Connection {
    Connection() : pContext(pa_context_new(pa_mainloop_get_api(pLoop), "Others")) {}
    ~Connection() {
        for (pa_stream* const pStream : streams) {
            pa_stream_unref(pStream);
        }
        pa_context_disconnect(pContext);
        pa_context_unref(pContext);
        pa_mainloop_free(pLoop);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool Connect(const char* szServer) const {
        if (pa_context_connect(pContext, szServer, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            return false;
        }
        while (pa_context_get_state(pContext) != PA_CONTEXT_READY) {
            if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(pContext)) ||
                pa_mainloop_iterate(pLoop, 1, nullptr) < 0) {
                return false;
            }
        }
        return true;
    }
    // One more that records; false if it is refused.
    bool Add(const char* szSource) {
        const pa_sample_spec spec{PA_SAMPLE_S16LE, 48000, 2};
        pa_stream* const pStream = pa_stream_new(pContext, "Recording", &spec, nullptr);
        streams.push_back(pStream);
        pa_stream_connect_record(pStream, szSource, nullptr, PA_STREAM_START_CORKED);
        while (pa_stream_get_state(pStream) == PA_STREAM_CREATING) {
            pa_mainloop_iterate(pLoop, 1, nullptr);
        }
        return pa_stream_get_state(pStream) == PA_STREAM_READY;
    }

    pa_mainloop* pLoop = pa_mainloop_new();
    pa_context* pContext;
    std::vector<pa_stream*> streams;
};

CCrowd::CCrowd() = default;

CCrowd::~CCrowd() = default;

bool CCrowd::Gather(const std::string& strServer, const std::string& strSource) {
    m_pConnection = std::make_unique<Connection>();
    if (!m_pConnection->Connect(strServer.c_str())) {
        return false;
    }
    for (int i = 0; i < MORE_THAN_ANY_SERVER_ALLOWS; ++i) {
        if (!m_pConnection->Add(strSource.c_str())) {
            return pa_context_get_state(m_pConnection->pContext) == PA_CONTEXT_READY && i > 0;
        }
    }
    return false;
}

void CCrowd::Disperse() {
    m_pConnection.reset();
}
