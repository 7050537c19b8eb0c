#include "platform/threads/Sleep.h"

#include <chrono>
#include <thread>

void Sleep(int nMilliseconds) {
    if (nMilliseconds > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(nMilliseconds));
    } else {
        std::this_thread::yield();
    }
}
