#include "analysis/SpectrumAnalyzer.h"
#include "platform/signal/VectorOperations.h"

#include <algorithm>
#include <cmath>

void CSpectrumAnalyzer::ResetProbes() {
    for (int t = 0; t < m_nProbes; ++t) {
        m_pfProbeFrequency[t] =
            static_cast<float>(std::pow(2.0, static_cast<double>(t) / m_nProbes) * m_fLowestFrequency);
        m_pfProbeScore[t] = 0.0F;
    }
}

void CSpectrumAnalyzer::SearchProbes() {
    ResetProbes();
    for (int t = 0; t < m_nProbes; ++t) {
        m_pfProbeScore[t] = ScoreProbe(m_pfProbeFrequency[t], t);
    }
    int t = 0;
    while (nspsMaxExt(m_pfProbeScore.Data(), m_nProbes, &t) > 0.0F) {
        int nDivisor = 2;
        const bool bFound = FindDivisor(t, &nDivisor);
        const double dLifted = nDivisor * static_cast<double>(m_pfProbeFrequency[t]);
        if (bFound && dLifted < m_nSampleRate / 2) {
            m_pfProbeFrequency[t] = static_cast<float>(dLifted);
            m_pfProbeScore[t] = ScoreProbe(m_pfProbeFrequency[t], t);
        } else {
            AcceptProbe(t);
        }
    }
}

float CSpectrumAnalyzer::ScoreProbe(float fFrequency, int nProbe) {
    const double lo = static_cast<float>(static_cast<double>(fFrequency) * m_fBandRatio);
    const double hi = static_cast<float>(static_cast<double>(fFrequency) / m_fBandRatio);
    const int nBase = nProbe * m_nMaxPeaks;
    int* H = m_pnSlotHarmonic.Data() + nBase;
    float* F = m_pfSlotFrequency.Data() + nBase;
    float* A = m_pfSlotAmplitude.Data() + nBase;
    for (int i = 0; i < m_nMaxPeaks; ++i) {
        H[i] = 0;
        F[i] = A[i] = 0;
    }
    int h = 0, last = -1, s = -1;
    for (int i = 0; i < m_nMaxPeaks; ++i) {
        const float a = m_pfPeakAmplitude[i], g = m_pfPeakFrequency[i];
        if (!(a > 0))
            continue;
        while (h * hi < g)
            ++h;
        if (h * lo >= g)
            continue;
        if (h != last) {
            ++s;
            last = h;
        }
        if (A[s] < a) {
            H[s] = h;
            F[s] = g;
            A[s] = a;
        }
    }
    float fScore = 0;
    for (int i = 0; i < m_nMaxPeaks; ++i)
        fScore += A[i];
    return fScore;
}

bool CSpectrumAnalyzer::FindDivisor(int nProbe, int* pnDivisor) {
    m_pfPrimeEnergy.FillZero();
    const int nBase = nProbe * m_nMaxPeaks;
    for (int i = nBase; i < nBase + m_nMaxPeaks; ++i) {
        const int h = m_pnSlotHarmonic[i];
        if (h == 0)
            return false;
        for (int q = 0; q < m_nPrimes && m_pnPrimes[q] <= h; ++q) {
            if (h % m_pnPrimes[q] != 0)
                continue;
            m_pfPrimeEnergy[q] += m_pfSlotAmplitude[i];
            if (static_cast<double>(m_pfProbeScore[nProbe]) * m_pfPrimeShare[q] < m_pfPrimeEnergy[q]) {
                *pnDivisor = m_pnPrimes[q];
                return true;
            }
        }
    }
    return false;
}

bool CSpectrumAnalyzer::IsFundamental(int nProbe) const {
    const int nBase = nProbe * m_nMaxPeaks;
    const int* H = m_pnSlotHarmonic.Data() + nBase;
    const float* A = m_pfSlotAmplitude.Data() + nBase;
    float adjacent = 0, low = 0;
    for (int i = 0; i < m_nMaxPeaks; ++i) {
        if (i > 0 && H[i - 1] == H[i] - 1)
            adjacent += A[i];
        if (i + 1 < m_nMaxPeaks && H[i + 1] == H[i] + 1)
            adjacent += A[i];
        if (H[i] <= 5)
            low += A[i];
    }
    adjacent *= 0.5F;
    const double s = m_pfProbeScore[nProbe];
    return !(0.5 * s > adjacent) && low > 0.25 * s;
}

void CSpectrumAnalyzer::AcceptProbe(int nProbe) {
    if (IsFundamental(nProbe)) {
        const NoteReading r = EstimateFundamental(nProbe);
        if (r.strength > m_pCandidates[r.semitone].strength) {
            m_pCandidates[r.semitone] = r;
            m_claims.ClearNote(r.semitone);
            m_claims.SetOctave(r.semitone, r.octave);
            m_claims.SetFrequency(r.semitone, r.frequency);
            for (int i = 0; i < m_nMaxPeaks; ++i)
                m_claims.ClaimPeak(r.semitone, m_pfSlotFrequency[nProbe * m_nMaxPeaks + i]);
        }
    }
    m_pfProbeScore[nProbe] = 0.0F;
    m_pfProbeFrequency[nProbe] = 0.0F;
}

NoteReading CSpectrumAnalyzer::EstimateFundamental(int nProbe) {
    float w = 0, a = 0;
    for (int i = nProbe * m_nMaxPeaks; i < (nProbe + 1) * m_nMaxPeaks; ++i) {
        if (m_pnSlotHarmonic[i] == 0)
            continue;
        w = static_cast<float>(w + static_cast<double>(m_pfSlotFrequency[i]) / m_pnSlotHarmonic[i] *
                                       m_pfSlotAmplitude[i]);
        a += m_pfSlotAmplitude[i];
    }
    return MakeReading(static_cast<float>(static_cast<double>(w) / a), a);
}
