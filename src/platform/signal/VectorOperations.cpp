#include "platform/signal/VectorOperations.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>

namespace {

constexpr int SAMPLE_BITS = 16;

enum class Kind { Highest, Lowest };

template <Kind KIND>
[[gnu::always_inline]] inline bool IsBetter(float a, float b) {
    return KIND == Kind::Highest ? a > b : a < b;
}

// Running results side by side: the extreme of floats is the same in whatever order they are looked at.
// Inlined, so that it is compiled for the vector unit that its caller is compiled for.
template <Kind KIND>
[[gnu::always_inline]] inline float Extreme(const float* pfVector, int n) {
    if (n <= 0) {
        return 0.0F;
    }
    constexpr int LANES = VECTOR_LANES;
    float fResult = pfVector[0];
    int i = 0;
    if (n >= LANES) {
        FloatLanes lanes;
        std::memcpy(&lanes, pfVector, sizeof lanes);
        for (i = LANES; i + LANES <= n; i += LANES) {
            FloatLanes here;
            std::memcpy(&here, pfVector + i, sizeof here);
            lanes = (KIND == Kind::Highest ? here > lanes : here < lanes) ? here : lanes;
        }
        for (std::size_t j = 0; j < VECTOR_LANES; ++j) {
            fResult = IsBetter<KIND>(lanes[j], fResult) ? lanes[j] : fResult;
        }
    }
    for (; i < n; ++i) {
        fResult = IsBetter<KIND>(pfVector[i], fResult) ? pfVector[i] : fResult;
    }
    return fResult;
}

int FindFirst(const float* pfVector, int n, float fValue) {
    return n > 0 ? static_cast<int>(std::find(pfVector, pfVector + n, fValue) - pfVector) : 0;
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

FRETVANE_VECTOR_CLONES
float nspsMax(const float* pfVector, int n) {
    return Extreme<Kind::Highest>(pfVector, n);
}

FRETVANE_VECTOR_CLONES
float nspsMin(const float* pfVector, int n) {
    return Extreme<Kind::Lowest>(pfVector, n);
}

float nspsMaxExt(const float* pfVector, int n, int* pnIndex) {
    const float fHighest = nspsMax(pfVector, n);
    *pnIndex = FindFirst(pfVector, n, fHighest);
    return fHighest;
}

float nspsMinExt(const float* pfVector, int n, int* pnIndex) {
    const float fLowest = nspsMin(pfVector, n);
    *pnIndex = FindFirst(pfVector, n, fLowest);
    return fLowest;
}
