#include "platform/multimedia/MultimediaTimer.h"

#include "platform/multimedia/BackendSlot.h"
#include "platform/multimedia/TimerBackend.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr UINT SHORTEST_PERIOD = 1;
constexpr UINT LONGEST_PERIOD = 1000000;
constexpr auto LARGEST_DELAY_MADE_UP = 100ms;

class CTicker {
public:
    // May throw std::system_error when there is no room for a thread.
    template <class Tick>
    CTicker(std::chrono::milliseconds period, Tick tick)
        : m_pEnd(std::make_shared<End>()), m_thread([pEnd = m_pEnd, period, tick] {
              auto next = std::chrono::steady_clock::now() + period;
              while (!pEnd->HasComeBefore(next)) {
                  tick();
                  next += period;
                  const auto now = std::chrono::steady_clock::now();
                  if (now - next > LARGEST_DELAY_MADE_UP) {
                      next = now + period;
                  }
              }
          }) {}
    ~CTicker() {
        {
            const std::lock_guard lock(m_pEnd->m_mutex);
            m_pEnd->m_bCame = true;
        }
        m_pEnd->m_condition.notify_all();
        if (m_thread.get_id() == std::this_thread::get_id()) {
            m_thread.detach();
        } else {
            m_thread.join();
        }
    }
    CTicker(const CTicker&) = delete;
    CTicker& operator=(const CTicker&) = delete;

private:
    // Outlives the ticker where that is ended from its own tick.
    struct End {
        bool HasComeBefore(std::chrono::steady_clock::time_point time) {
            std::unique_lock lock(m_mutex);
            return m_condition.wait_until(lock, time, [this] { return m_bCame; });
        }
        std::mutex m_mutex;
        std::condition_variable m_condition;
        bool m_bCame = false;
    };

    std::shared_ptr<End> m_pEnd;
    std::thread m_thread;
};

class CSystemTimerBackend final : public ITimerBackend {
public:
    MMRESULT GetDevCaps(TIMECAPS& caps) override {
        caps = {SHORTEST_PERIOD, LONGEST_PERIOD};
        return TIMERR_NOERROR;
    }
    // The clock is always as precise as it can be.
    MMRESULT BeginPeriod(UINT uPeriod) override { return CheckPeriod(uPeriod); }
    MMRESULT EndPeriod(UINT uPeriod) override { return CheckPeriod(uPeriod); }

    UINT SetEvent(UINT uDelay, TimeProc pfnCallback, std::uintptr_t dwUser) override {
        if (CheckPeriod(uDelay) != TIMERR_NOERROR) {
            return 0;
        }
        const std::lock_guard lock(m_mutex);
        const UINT uTimerId = ++m_uLast;
        try {
            m_tickers[uTimerId] = std::make_unique<CTicker>(
                std::chrono::milliseconds(uDelay),
                [pfnCallback, uTimerId, dwUser] { pfnCallback(uTimerId, 0, dwUser, 0, 0); });
        } catch (const std::exception&) {
            return 0;
        }
        return uTimerId;
    }

    MMRESULT KillEvent(UINT uTimerId) override {
        std::unique_ptr<CTicker> pTicker;
        const std::lock_guard lock(m_mutex);
        auto node = m_tickers.extract(uTimerId);
        if (node.empty()) {
            return MMSYSERR_INVALPARAM;
        }
        pTicker = std::move(node.mapped());
        return TIMERR_NOERROR;
    }

private:
    static MMRESULT CheckPeriod(UINT uPeriod) {
        return uPeriod >= SHORTEST_PERIOD && uPeriod <= LONGEST_PERIOD ? TIMERR_NOERROR : TIMERR_NOCANDO;
    }

    std::mutex m_mutex;  // never held while a tick is waited for: a ticker ends after it is given up
    std::map<UINT, std::unique_ptr<CTicker>> m_tickers;
    UINT m_uLast = 0;
};

std::shared_ptr<ITimerBackend> MakeSystemTimerBackend() {
    return std::make_shared<CSystemTimerBackend>();
}

// At the end of the process it goes before the MIDI outputs that its ticks play on: whoever uses both asks
// for the outputs first.
CBackendSlot<ITimerBackend>& Backend() {
    static CBackendSlot<ITimerBackend> backend(&MakeSystemTimerBackend);
    return backend;
}

}  // namespace

std::shared_ptr<ITimerBackend> SetTimerBackend(std::shared_ptr<ITimerBackend> pBackend) {
    return Backend().Exchange(std::move(pBackend));
}

MMRESULT timeGetDevCaps(TIMECAPS& caps) {
    return Backend().Get()->GetDevCaps(caps);
}

MMRESULT timeBeginPeriod(UINT uPeriod) {
    return Backend().Get()->BeginPeriod(uPeriod);
}

MMRESULT timeEndPeriod(UINT uPeriod) {
    return Backend().Get()->EndPeriod(uPeriod);
}

UINT timeSetEvent(UINT uDelay, UINT /*uResolution*/, TimeProc pfnCallback, std::uintptr_t dwUser,
                  UINT uKind) {
    return pfnCallback != nullptr && uKind == TIME_PERIODIC
               ? Backend().Get()->SetEvent(uDelay, pfnCallback, dwUser)
               : 0;
}

MMRESULT timeKillEvent(UINT uTimerId) {
    return Backend().Get()->KillEvent(uTimerId);
}
