#include "platform/threads/Sleep.h"

#include <chrono>
#include <thread>

void Sleep(int nMilliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(nMilliseconds));
}
