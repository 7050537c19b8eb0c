#include "platform/signal/SpectrumOperations.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

FRETVANE_VECTOR_CLONES
void PowerSpectrum(const float* pfBins, float* pfPower, int n) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double dReal = pfBins[2 * i];
        const double dImaginary = pfBins[2 * i + 1];
        pfPower[i] = static_cast<float>(dReal * dReal + dImaginary * dImaginary);
    }
}

FRETVANE_VECTOR_CLONES
int FindLocalMaxima(const float* pfVector, int n, int* pnPlaces) {
    constexpr int CHUNK = 64;
    std::array<std::uint8_t, CHUNK> flags;
    int nFound = 0;
    for (int nFirst = 1; nFirst < n - 1; nFirst += CHUNK) {
        const int nCount = std::min(CHUNK, n - 1 - nFirst);
        const float* pfHere = pfVector + nFirst;
        for (int i = 0; i < nCount; ++i) {
            const bool bAboveBoth = (pfHere[i] > pfHere[i - 1]) & (pfHere[i] > pfHere[i + 1]);
            flags[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(bAboveBoth);
        }
        // Writes each place and keeps it by counting on: a branch here could not be foreseen.
        for (int i = 0; i < nCount; ++i) {
            pnPlaces[nFound] = nFirst + i;
            nFound += flags[static_cast<std::size_t>(i)];
        }
    }
    return nFound;
}

// By bisection of the bit pattern, in which floats that are not negative keep their order.
FRETVANE_VECTOR_CLONES
float NthLargest(const float* pfValues, int n, int nRank) {
    std::uint32_t nLow = 0;
    auto nHigh = std::bit_cast<std::uint32_t>(3.4e38F);
    while (nHigh - nLow > 1) {
        const std::uint32_t nMiddle = nLow + (nHigh - nLow) / 2;
        const auto fMiddle = std::bit_cast<float>(nMiddle);
        int nCount = 0;
        for (int i = 0; i < n; ++i) {
            nCount += static_cast<int>(pfValues[i] >= fMiddle);
        }
        if (nCount == nRank) {
            return fMiddle;
        }
        (nCount > nRank ? nLow : nHigh) = nMiddle;
    }
    return std::bit_cast<float>(nLow);
}
