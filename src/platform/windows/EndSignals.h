#pragma once

#include <functional>
#include <memory>

// While it lives, SIGTERM, SIGINT and SIGHUP call a function in the message loop instead of ending the
// process. One at a time.
class CEndSignals {
public:
    explicit CEndSignals(std::function<void()> fnOnSignal);
    ~CEndSignals();
    CEndSignals(const CEndSignals&) = delete;
    CEndSignals& operator=(const CEndSignals&) = delete;
    CEndSignals(CEndSignals&&) = delete;
    CEndSignals& operator=(CEndSignals&&) = delete;

private:
    struct CWatch;
    std::unique_ptr<CWatch> m_pWatch;
};
