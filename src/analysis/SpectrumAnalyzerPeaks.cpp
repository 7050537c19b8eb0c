// The peaks of a block: where the power spectrum is higher than on both sides, moved to where reassignment
// puts them, and of these the strongest.

#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/VectorOperations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {
struct Peak {
    float fFrequency;
    float fAmplitude;
};
}  // namespace

void CSpectrumAnalyzer::FindPeaks(bool bTimeGate, int nHop) {
    TransformBlock(bTimeGate);
    m_nHalfHop = nHop / 2;
    const auto fBinDistance = static_cast<float>(m_nSampleRate / static_cast<double>(m_nBlockSamples));
    const int nFirst =
        static_cast<int>(m_nBlockSamples * static_cast<double>(m_fLowestFrequency) / m_nSampleRate);
    const float* X = m_pfSpectrum.Data();
    const float* D = m_pfSlopeSpectrum.Data();
    const float* M = m_pfRampSpectrum.Data();
    std::array<Peak, 600> list;
    std::size_t n = 0;
    float before = 0, here = 0;
    for (int k = nFirst; k < m_nHalfBlock; ++k) {
        const float after = static_cast<float>(static_cast<double>(X[2 * k + 2]) * X[2 * k + 2] +
                                               static_cast<double>(X[2 * k + 3]) * X[2 * k + 3]);
        if (here > after && here > before) {
            bool ok = true;
            if (bTimeGate) {
                const float t = static_cast<float>((static_cast<double>(M[2 * k]) * X[2 * k] +
                                                    static_cast<double>(M[2 * k + 1]) * X[2 * k + 1]) /
                                                   here);
                ok = std::abs(std::trunc(t)) < static_cast<float>(m_nHalfHop);
            }
            const float d = static_cast<float>((static_cast<double>(X[2 * k + 1]) * D[2 * k] -
                                                static_cast<double>(D[2 * k + 1]) * X[2 * k]) /
                                               here);
            ok = ok && std::abs(std::trunc(d)) < m_fHalfBin;
            if (ok)
                list[n++] = {static_cast<float>(static_cast<double>(k) * fBinDistance + d), std::sqrt(here)};
        }
        before = here;
        here = after;
    }
    const std::size_t P = static_cast<std::size_t>(m_nMaxPeaks);
    if (n > P) {
        std::sort(list.begin(), list.begin() + n, [](Peak a, Peak b) { return a.fAmplitude > b.fAmplitude; });
        n = P;
        std::sort(list.begin(), list.begin() + n, [](Peak a, Peak b) { return a.fFrequency < b.fFrequency; });
    }
    m_pfPeakFrequency.FillZero();
    m_pfPeakAmplitude.FillZero();
    for (std::size_t i = 0; i < n; ++i) {
        m_pfPeakFrequency[int(i)] = list[i].fFrequency;
        m_pfPeakAmplitude[int(i)] = list[i].fAmplitude;
    }
}
