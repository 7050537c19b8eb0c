#include "platform/multimedia/PulseSources.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

// Collects the answers to one enquiry.
struct Enquiry {
    const CPulseLoop* pLoop = nullptr;
    std::vector<PulseSource> sources;
    std::string strDefault;
    UINT vVersion = 0;
    bool bServerTold = false;
    bool bSourcesTold = false;
};

UINT ParseVersion(const char* szVersion) {
    char* szRest = nullptr;
    const unsigned long nMajor = std::strtoul(szVersion, &szRest, 10);
    const unsigned long nMinor = *szRest == '.' ? std::strtoul(szRest + 1, nullptr, 10) : 0;
    return static_cast<UINT>((nMajor & 0xFF) << 8 | (nMinor & 0xFF));
}

void OnServerInfo(pa_context* /*pContext*/, const pa_server_info* pInfo, void* pArg) {
    auto& enquiry = *static_cast<Enquiry*>(pArg);
    if (pInfo != nullptr && pInfo->default_source_name != nullptr) {
        enquiry.strDefault = pInfo->default_source_name;
    }
    if (pInfo != nullptr && pInfo->server_version != nullptr) {
        enquiry.vVersion = ParseVersion(pInfo->server_version);
    }
    enquiry.bServerTold = true;
    enquiry.pLoop->Signal();
}

void OnSourceInfo(pa_context* /*pContext*/, const pa_source_info* pInfo, int nEnd, void* pArg) {
    auto& enquiry = *static_cast<Enquiry*>(pArg);
    if (nEnd != 0) {
        enquiry.bSourcesTold = true;
        enquiry.pLoop->Signal();
        return;
    }
    enquiry.sources.push_back({pInfo->name, pInfo->description != nullptr ? pInfo->description : pInfo->name,
                               pInfo->monitor_of_sink != PA_INVALID_INDEX, pInfo->sample_spec.rate,
                               pInfo->sample_spec.channels});
}

PulseSourceList MakeList(Enquiry enquiry) {
    PulseSourceList list;
    list.vServerVersion = enquiry.vVersion;
    const auto found =
        std::find_if(enquiry.sources.begin(), enquiry.sources.end(),
                     [&](const PulseSource& source) { return source.strName == enquiry.strDefault; });
    if (found != enquiry.sources.end()) {
        list.defaultSource = *found;
    }
    std::erase_if(enquiry.sources, [](const PulseSource& source) { return source.bMonitor; });
    std::sort(enquiry.sources.begin(), enquiry.sources.end(),
              [](const PulseSource& a, const PulseSource& b) { return a.strName < b.strName; });
    list.sources = std::move(enquiry.sources);
    return list;
}

void OnContextState(pa_context* /*pContext*/, void* pArg) {
    static_cast<const CPulseLoop*>(pArg)->Signal();
}

}  // namespace

PulseSourceList ListPulseSources(PulseDeadline deadline) {
    const auto pLoop = CPulseLoop::Create();
    if (!pLoop) {
        return {};
    }
    const CPulseLoop::CLock lock(*pLoop);
    const PulseContextPtr pContext(pa_context_new(pLoop->GetApi(), "Fretvane"));
    if (!pContext) {
        return {};
    }
    pa_context_set_state_callback(pContext.get(), OnContextState, pLoop.get());
    if (pa_context_connect(pContext.get(), nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0) {
        return {};
    }
    const auto isBroken = [&] { return !PA_CONTEXT_IS_GOOD(pa_context_get_state(pContext.get())); };
    const auto isReady = [&] { return pa_context_get_state(pContext.get()) == PA_CONTEXT_READY; };
    if (!pLoop->WaitUntil(pContext.get(), deadline, [&] { return isReady() || isBroken(); }) || !isReady()) {
        return {};
    }
    Enquiry enquiry{pLoop.get(), {}, {}};
    const PulseOperationPtr pServer(pa_context_get_server_info(pContext.get(), OnServerInfo, &enquiry));
    const PulseOperationPtr pSources(pa_context_get_source_info_list(pContext.get(), OnSourceInfo, &enquiry));
    const auto isTold = [&] { return enquiry.bServerTold && enquiry.bSourcesTold; };
    pLoop->WaitUntil(pContext.get(), deadline, [&] { return isTold() || isBroken(); });
    return isTold() ? MakeList(std::move(enquiry)) : PulseSourceList{};
}
