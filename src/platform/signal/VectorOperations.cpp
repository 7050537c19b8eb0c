#include "platform/signal/VectorOperations.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>

namespace {

constexpr int SAMPLE_BITS = 16;

// Independent running results, so that the compiler may keep them in vector registers: the extreme of floats
// is the same in whatever order they are looked at.
constexpr int LANES = 8;

template <class Better>
float Extreme(const float* pfVector, int n, Better better) {
    if (n <= 0) {
        return 0.0F;
    }
    float fResult = pfVector[0];
    int i = 0;
    if (n >= LANES) {
        std::array<float, LANES> lanes;
        std::copy_n(pfVector, LANES, lanes.begin());
        for (i = LANES; i + LANES <= n; i += LANES) {
            for (std::size_t j = 0; j < LANES; ++j) {
                const float f = pfVector[static_cast<std::size_t>(i) + j];
                lanes[j] = better(f, lanes[j]) ? f : lanes[j];
            }
        }
        for (const float f : lanes) {
            fResult = better(f, fResult) ? f : fResult;
        }
    }
    for (; i < n; ++i) {
        fResult = better(pfVector[i], fResult) ? pfVector[i] : fResult;
    }
    return fResult;
}

template <class Better>
float FirstExtreme(const float* pfVector, int n, int* pnIndex, Better better) {
    *pnIndex = 0;
    if (n <= 0) {
        return 0.0F;
    }
    const float fResult = Extreme(pfVector, n, better);
    *pnIndex = static_cast<int>(std::find(pfVector, pfVector + n, fResult) - pfVector);
    return fResult;
}

}  // namespace

FRETVANE_VECTOR_CLONES
void nspsbIntToFloat(const std::int16_t* pnSource, float* pfDest, int n, int nWordBits, int nScaleFactor) {
    if (nWordBits != SAMPLE_BITS) {
        return;
    }
    const float fScale = std::ldexp(1.0F, -nScaleFactor);
    for (int i = 0; i < n; ++i) {
        pfDest[i] = static_cast<float>(pnSource[i]) * fScale;
    }
}

void nspsWinBlackmanStd(float* pfVector, int n) {
    if (n < 2) {
        return;
    }
    for (int i = 0; i < n; ++i) {
        const double dPhase = 2.0 * std::numbers::pi * i / (n - 1);
        const double dWeight = 0.42 - 0.5 * std::cos(dPhase) + 0.08 * std::cos(2.0 * dPhase);
        pfVector[i] = static_cast<float>(pfVector[i] * dWeight);
    }
}

FRETVANE_VECTOR_CLONES
void nspsbMpy2(const float* pfSource, float* pfSourceDest, int n) {
    for (int i = 0; i < n; ++i) {
        pfSourceDest[i] *= pfSource[i];
    }
}

FRETVANE_VECTOR_CLONES
void nspsbMpy3(const float* pfSource1, const float* pfSource2, float* pfDest, int n) {
    for (int i = 0; i < n; ++i) {
        pfDest[i] = pfSource1[i] * pfSource2[i];
    }
}

void nspsbCopy(const float* pfSource, float* pfDest, int n) {
    std::copy_n(pfSource, std::max(n, 0), pfDest);
}

float nspsMax(const float* pfVector, int n) {
    return Extreme(pfVector, n, std::greater<>());
}

float nspsMin(const float* pfVector, int n) {
    return Extreme(pfVector, n, std::less<>());
}

float nspsMaxExt(const float* pfVector, int n, int* pnIndex) {
    return FirstExtreme(pfVector, n, pnIndex, std::greater<>());
}

float nspsMinExt(const float* pfVector, int n, int* pnIndex) {
    return FirstExtreme(pfVector, n, pnIndex, std::less<>());
}
