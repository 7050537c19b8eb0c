#include "analysis/NoteClaims.h"

#include "platform/signal/VectorOperations.h"

#include <algorithm>
#include <cmath>

namespace {

// A note with a raw strength above this takes part.
constexpr double ACTIVE_STRENGTH = 0.1;
// A note stays when it alone explains this share of the spectrum.
constexpr float LEAST_OWN_SHARE = 0.25F;
// A peak is the one at a frequency if it lies within this, Hz. Nothing sounds below it.
constexpr double SAME_FREQUENCY = 0.1;

}  // namespace

bool CNoteClaims::Init(int nNotes, int nPeaks) {
    Free();
    if (!m_pNotes.Allocate(nNotes) || !m_pfRank.Allocate(nNotes) || !m_pnOrder.Allocate(nNotes) ||
        !m_pfOwnShare.Allocate(nNotes) || !m_pbClaim.Allocate(nNotes * nPeaks) ||
        !m_pnClaimants.Allocate(nPeaks) || !m_pPeaks.Allocate(nPeaks)) {
        Free();
        return false;
    }
    m_nNotes = nNotes;
    m_nPeaks = nPeaks;
    Reset();
    return true;
}

void CNoteClaims::Free() {
    m_nNotes = 0;
    m_nPeaks = 0;
    m_nActive = 0;
    m_pNotes.Free();
    m_pfRank.Free();
    m_pnOrder.Free();
    m_pfOwnShare.Free();
    m_pbClaim.Free();
    m_pnClaimants.Free();
    m_pPeaks.Free();
}

void CNoteClaims::Reset() {
    m_pPeaks.FillZero();
    for (int n = 0; n < m_nNotes; ++n) {
        m_pNotes[n].Set(n, 0, 0.0F, 0.0F, 0.0F);
    }
    m_pfRank.FillZero();
    m_pbClaim.FillZero();
    m_nActive = 0;
    m_fTotal = 0.0F;
}

void CNoteClaims::LoadPeaks(const float* pfFrequency, const float* pfAmplitude, int nCount) {
    for (int p = 0; p < std::min(nCount, m_nPeaks); ++p) {
        m_pPeaks[p] = {pfFrequency[p], pfAmplitude[p]};
        m_fTotal += pfAmplitude[p];
    }
}

void CNoteClaims::ClearNote(int n) {
    m_pNotes[n].Set(n, 0, 0.0F, 0.0F, 0.0F);
    std::fill_n(ClaimsOf(n), m_nPeaks, std::uint8_t{0});
}

bool CNoteClaims::ClaimPeak(int n, float fFrequency) {
    if (fFrequency < SAME_FREQUENCY) {
        return false;
    }
    const auto peaks = m_pPeaks.All();
    const auto itPeak = std::find_if(peaks.begin(), peaks.end(), [fFrequency](const Peak& peak) {
        return std::abs(static_cast<double>(peak.fFrequency) - fFrequency) <= SAME_FREQUENCY;
    });
    if (itPeak == peaks.end()) {
        return false;
    }
    ClaimsOf(n)[itPeak - peaks.begin()] = 1;
    m_pNotes[n].strength += itPeak->fAmplitude;
    return true;
}

bool CNoteClaims::IsActive(int n) const {
    return m_pNotes[n].strength > ACTIVE_STRENGTH;
}

bool CNoteClaims::Rebuild() {
    m_pnOrder.FillZero();
    m_pfOwnShare.FillZero();
    m_pnClaimants.FillZero();
    m_nActive = 0;
    for (int n = 0; n < m_nNotes; ++n) {
        m_pfRank[n] = m_pNotes[n].strength;
        if (!IsActive(n)) {
            continue;
        }
        ++m_nActive;
        const std::uint8_t* pbClaims = ClaimsOf(n);
        for (int p = 0; p < m_nPeaks; ++p) {
            m_pnClaimants[p] += pbClaims[p];
        }
    }
    if (m_nActive == 0) {
        return false;
    }
    for (int r = 0; r < m_nActive; ++r) {
        nspsMaxExt(m_pfRank.Data(), m_nNotes, &m_pnOrder[r]);
        m_pfRank[m_pnOrder[r]] = 0.0F;
    }
    for (int r = 0; r < m_nActive; ++r) {
        m_pfOwnShare[r] = OwnShareOf(m_pnOrder[r]);
    }
    return true;
}

// The part of all amplitude that only note n, an active one, claims.
float CNoteClaims::OwnShareOf(int n) {
    const std::uint8_t* pbClaims = ClaimsOf(n);
    float fShare = 0.0F;
    for (int p = 0; p < m_nPeaks; ++p) {
        if (pbClaims[p] != 0 && m_pnClaimants[p] == 1) {
            fShare = static_cast<float>(fShare + static_cast<double>(m_pPeaks[p].fAmplitude) / m_fTotal);
        }
    }
    return fShare;
}

bool CNoteClaims::DropWeakest() {
    if (m_nActive == 0) {
        return false;
    }
    int nRank = 0;
    const float fShare = nspsMinExt(m_pfOwnShare.Data(), m_nActive, &nRank);
    if (!(fShare < LEAST_OWN_SHARE)) {
        return false;
    }
    ClearNote(m_pnOrder[nRank]);
    Rebuild();
    return true;
}

void CNoteClaims::CopyOut(std::span<NoteReading> readings) const {
    const auto notes = m_pNotes.All();
    std::copy_n(notes.begin(), std::min(notes.size(), readings.size()), readings.begin());
}
