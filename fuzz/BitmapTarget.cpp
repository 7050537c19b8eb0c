#include "fuzz/Require.h"
#include "platform/drawing/Bitmap.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>

// Any bytes are a picture, whole and of its size, or are refused and leave an empty one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const int nFile = memfd_create("picture", MFD_CLOEXEC);
    Require(nFile >= 0 && write(nFile, pData, nSize) == static_cast<ssize_t>(nSize));
    CBitmap bitmap;
    const bool bLoaded = bitmap.LoadFile("/proc/self/fd/" + std::to_string(nFile));
    close(nFile);
    const SIZE size = bitmap.GetSize();
    Require(bLoaded ? size.cx > 0 && size.cy > 0 : size.cx == 0 && size.cy == 0);
    std::uint64_t nSum = 0;
    for (int y = 0; y < size.cy; ++y) {
        const Pixel* const pRow = bitmap.GetSurface().GetRow(y);
        nSum = std::accumulate(pRow, pRow + size.cx, nSum);
    }
    Require(nSum <= std::uint64_t{0xFFFFFFFF} * static_cast<std::uint64_t>(size.cx) *
                        static_cast<std::uint64_t>(size.cy));
    return 0;
}
