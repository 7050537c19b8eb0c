#include "platform/windows/EndSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QtCore/QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace {

constexpr std::array SIGNALS{SIGTERM, SIGINT, SIGHUP};

// Where the handler writes to: a pipe, for it is all that a handler may use.
volatile std::sig_atomic_t g_nPipe = -1;

void OnSignal(int /*nSignal*/) {
    const int nError = errno;
    const char byte = 0;
    // A full pipe already tells what there is to tell.
    [[maybe_unused]] const auto nWritten = write(g_nPipe, &byte, 1);
    errno = nError;
}

}  // namespace

struct CEndSignals::CWatch {
    CWatch(int nReadEnd, int nWriteEnd)
        : read(nReadEnd), write(nWriteEnd), notifier(nReadEnd, QSocketNotifier::Read) {}
    ~CWatch() {
        notifier.setEnabled(false);
        close(read);
        close(write);
    }
    CWatch(const CWatch&) = delete;
    CWatch& operator=(const CWatch&) = delete;
    CWatch(CWatch&&) = delete;
    CWatch& operator=(CWatch&&) = delete;

    int read;
    int write;
    QSocketNotifier notifier;
    std::array<struct sigaction, SIGNALS.size()> previous{};
};

CEndSignals::CEndSignals(std::function<void()> fnOnSignal) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_pWatch = std::make_unique<CWatch>(ends[0], ends[1]);
    QObject::connect(&m_pWatch->notifier, &QSocketNotifier::activated, &m_pWatch->notifier,
                     [nEnd = ends[0], fnCall = std::move(fnOnSignal)] {
                         std::array<char, 16> bytes{};
                         while (read(nEnd, bytes.data(), bytes.size()) > 0) {
                         }
                         fnCall();
                     });
    g_nPipe = ends[1];
    struct sigaction action {};
    action.sa_handler = &OnSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) {
        sigaction(SIGNALS[i], &action, &m_pWatch->previous[i]);
    }
}

CEndSignals::~CEndSignals() {
    if (!m_pWatch) {
        return;
    }
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) {
        sigaction(SIGNALS[i], &m_pWatch->previous[i], nullptr);
    }
    g_nPipe = -1;
}
