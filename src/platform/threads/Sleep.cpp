#include "platform/threads/Sleep.h"

#include <chrono>
#include <thread>

namespace {

// A thread that asks at every sample would spend an eighth of its time on asking: to give way once in so long
// is as good for everybody else, and the system preempts it anyway for a thread that it prefers.
constexpr std::chrono::milliseconds BETWEEN_YIELDS{1};

void GiveWay() {
    thread_local std::chrono::steady_clock::time_point last;
    const auto now = std::chrono::steady_clock::now();
    if (now - last >= BETWEEN_YIELDS) {
        last = now;
        std::this_thread::yield();
    }
}

}  // namespace

void Sleep(int nMilliseconds) {
    if (nMilliseconds > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(nMilliseconds));
    } else {
        GiveWay();
    }
}
