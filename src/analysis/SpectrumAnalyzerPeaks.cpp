// The peaks of a block: where the power spectrum is higher than on both sides, moved to where reassignment
// puts them, and of these the strongest.
//
// Which bins are peaks cannot be foreseen, so that branches on it cost more than the arithmetic: the loops
// here write every result and count on only for those that are kept.

#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/SpectrumOperations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

// How many more than are kept are looked at first: some are refused for lying too far from their bin.
constexpr int SPARE_PEAKS = 12;

}  // namespace

void CSpectrumAnalyzer::FindPeaks(bool bTimeGate, int nHop) {
    TransformBlock(bTimeGate);
    m_nHalfHop = nHop / 2;
    ScanPeaks();
    // The strongest suffice, unless too many of them are refused.
    const int nFirstLook = std::min(m_nScanned, m_nMaxPeaks + SPARE_PEAKS);
    int nFound = CorrectPeaks(nFirstLook, bTimeGate);
    if (nFound < m_nMaxPeaks && nFirstLook < m_nScanned) {
        nFound = CorrectPeaks(m_nScanned, bTimeGate);
    }
    SelectPeaks(nFound);
}

// Lists the bins from the lowest frequency up that are higher than both neighbours. The first bin counts as
// empty.
void CSpectrumAnalyzer::ScanPeaks() {
    const int nFirst =
        static_cast<int>(m_nBlockSamples * static_cast<double>(m_fLowestFrequency) / m_nSampleRate);
    const int nCount = m_nHalfBlock + 1 - nFirst;
    m_nScanned = 0;
    if (nCount < 3) {
        return;
    }
    float* pfPower = m_pfPower.Data() + nFirst;
    PowerSpectrum(m_pfSpectrum.Data() + 2 * static_cast<std::ptrdiff_t>(nFirst), pfPower, nCount);
    pfPower[0] = 0.0F;
    m_nScanned = FindLocalMaxima(pfPower, nCount, m_pnScannedBin.Data());
    for (int i = 0; i < m_nScanned; ++i) {
        m_pnScannedBin[i] += nFirst;
        m_pfScannedPower[i] = m_pfPower[m_pnScannedBin[i]];
    }
}

// Lists the nStrongest (or more, if several are equal) of the scanned bins at their corrected frequencies,
// without those that lie too far from their bin or too early or late in the block. In the order of the bins.
int CSpectrumAnalyzer::CorrectPeaks(int nStrongest, bool bTimeGate) {
    if (nStrongest == 0) {
        return 0;
    }
    const double dBinDistance = static_cast<float>(m_nSampleRate / static_cast<double>(m_nBlockSamples));
    // What is cut to whole Hz, or whole block halves, is below a limit when the uncut value is below the next
    // whole number.
    const double dHighestCorrection = std::ceil(m_fHalfBin);
    const float fLeastPower = NthLargest(m_pfScannedPower.Data(), m_nScanned, nStrongest);
    const float* pfX = m_pfSpectrum.Data();
    const float* pfD = m_pfSlopeSpectrum.Data();
    const float* pfM = m_pfRampSpectrum.Data();
    int nStrong = 0;
    for (int i = 0; i < m_nScanned; ++i) {
        m_pnStrongBin[nStrong] = m_pnScannedBin[i];
        nStrong += static_cast<int>(m_pfScannedPower[i] >= fLeastPower);
    }
    int nFound = 0;
    for (int i = 0; i < nStrong; ++i) {
        const std::ptrdiff_t k = m_pnStrongBin[i];
        const double dReal = pfX[2 * k];
        const double dImaginary = pfX[2 * k + 1];
        const float fPower = m_pfPower[m_pnStrongBin[i]];
        const auto fCorrection =
            static_cast<float>((dImaginary * pfD[2 * k] - dReal * pfD[2 * k + 1]) / fPower);
        m_pfFoundFrequency[nFound] = static_cast<float>(static_cast<double>(k) * dBinDistance + fCorrection);
        m_pfFoundPower[nFound] = fPower;
        bool bKept = std::abs(fCorrection) < dHighestCorrection;
        if (bTimeGate) {
            const auto fTime =
                static_cast<float>((dReal * pfM[2 * k] + dImaginary * pfM[2 * k + 1]) / fPower);
            bKept = bKept && std::abs(fTime) < static_cast<float>(m_nHalfHop);
        }
        nFound += static_cast<int>(bKept);
    }
    return nFound;
}

// Puts the strongest of the nFound corrected peaks, as many as are kept, into the selection.
void CSpectrumAnalyzer::SelectPeaks(int nFound) {
    int nSurplus = std::max(nFound - m_nMaxPeaks, 0);
    const float fLeastPower = nSurplus > 0 ? NthLargest(m_pfFoundPower.Data(), nFound, m_nMaxPeaks) : 0.0F;
    // Of equal ones at the limit some have to go.
    int nAbove = 0;
    for (int i = 0; i < nFound; ++i) {
        nAbove += static_cast<int>(m_pfFoundPower[i] >= fLeastPower);
    }
    nSurplus = std::max(nAbove - m_nMaxPeaks, 0);
    m_nSelected = 0;
    for (int i = 0; i < nFound && m_nSelected < m_nMaxPeaks; ++i) {
        const bool bSurplus = nSurplus > 0 && m_pfFoundPower[i] == fLeastPower;
        nSurplus -= static_cast<int>(bSurplus);
        m_pfPeakFrequency[m_nSelected] = m_pfFoundFrequency[i];
        m_pfPeakAmplitude[m_nSelected] = std::sqrt(m_pfFoundPower[i]);
        m_nSelected += static_cast<int>(!bSurplus && m_pfFoundPower[i] >= fLeastPower);
    }
    for (int i = m_nSelected; i < m_nMaxPeaks; ++i) {
        m_pfPeakFrequency[i] = 0.0F;
        m_pfPeakAmplitude[i] = 0.0F;
    }
}
