#pragma once

#include "platform/signal/AlignedArray.h"
#include "tuning/NoteReading.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Who explains which peak. Several fundamentals can be accepted in one block although the same partials fit
// them all; this table records which note claims which of the block's peaks and removes notes, the one that
// owns least first, until each that is left explains a quarter of the spectrum with peaks that no other note
// claims: at most four.
//
// For a block: Reset, LoadPeaks, the claims of each accepted note, Rebuild, DropWeakest until false, CopyOut.
// On the thread of the analysis; Init and Free while nothing is analysed. Only Init allocates.
class CNoteClaims {
public:
    // Room for nNotes notes and nPeaks peaks, all empty. False without memory.
    bool Init(int nNotes, int nPeaks);
    void Free();
    void Reset();

    // Takes the block's peaks: frequencies in Hz and amplitudes, nCount of each, at most as many as there is
    // room for.
    void LoadPeaks(const float* pfFrequency, const float* pfAmplitude, int nCount);

    // Makes note n one without claims.
    void ClearNote(int n);
    void SetOctave(int n, int nOctave) { m_pNotes[n].octave = nOctave; }
    void SetFrequency(int n, float fFrequency) { m_pNotes[n].frequency = fFrequency; }
    // Lets note n claim the peak at fFrequency (within 0.1 Hz). False when there is none, or fFrequency is
    // none.
    bool ClaimPeak(int n, float fFrequency);

    // Ranks the notes and works out what each owns. False when no note claims anything.
    bool Rebuild();
    // Removes the note with the smallest own share if that is below a quarter. False when there was none to
    // remove.
    bool DropWeakest();

    // The notes in order of semitone, `strength` being the raw strength: 0 for a note that is none.
    void CopyOut(std::span<NoteReading> readings) const;

private:
    struct Peak {
        float fFrequency;
        float fAmplitude;
    };
    bool IsActive(int n) const;
    std::uint8_t* ClaimsOf(int n) { return m_pbClaim.Data() + static_cast<std::ptrdiff_t>(n) * m_nPeaks; }
    float OwnShareOf(int n);

    int m_nNotes = 0;
    int m_nPeaks = 0;
    int m_nActive = 0;
    float m_fTotal = 0.0F;
    CAlignedArray<NoteReading> m_pNotes;  // `strength` is a raw strength here
    CAlignedArray<float> m_pfRank;
    CAlignedArray<int> m_pnOrder;
    CAlignedArray<float> m_pfOwnShare;  // by rank
    CAlignedArray<std::uint8_t> m_pbClaim;
    CAlignedArray<int> m_pnClaimants;  // how many active notes claim a peak
    CAlignedArray<Peak> m_pPeaks;
};
