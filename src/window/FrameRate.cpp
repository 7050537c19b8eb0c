#include "window/FrameRate.h"

#include "platform/base/String.h"

CString FormatFrameRate(std::int64_t nFrames, DWORD dwElapsed) {
    return FormatText("Frames per second: %.2f",
                      static_cast<double>(nFrames) / static_cast<double>(dwElapsed) * 1000.0);
}
