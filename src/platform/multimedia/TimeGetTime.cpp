#include "platform/multimedia/TimeGetTime.h"

#include <chrono>

namespace {

// Taken as the program is loaded, before main.
const auto g_origin = std::chrono::steady_clock::now() - std::chrono::minutes(2);

}  // namespace

DWORD timeGetTime() {
    const auto elapsed = std::chrono::steady_clock::now() - g_origin;
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}
