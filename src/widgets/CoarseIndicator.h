#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"
#include "platform/drawing/Font.h"
#include "tuning/StringNote.h"
#include "tuning/Tuning.h"
#include "widgets/BitmapLayer.h"

#include <array>
#include <atomic>

class CWnd;

// The strip at (10, 310) to (490, 360) of the main window: the notes of the tuning on a logarithmic scale of
// pitch, which always spans the lowest to the highest of them, and a highlight where the sound lies.
//
// Threads: SetFrequency is a single store, without a lock, on any thread. SetColor, SetTuning, SetAFrequency,
// Rebuild and Draw want the window's picture lock held.
class CCoarseIndicator {
public:
    // Makes the pictures and loads the bitmaps from the current directory. False if one is missing.
    bool Create(CWnd* pWnd);

    // The colour that the highlight is a tint of. Takes effect with the next Rebuild.
    void SetColor(COLORREF clr);
    // These two rebuild the scale; the next full draw shows it.
    void SetTuning(const Tuning& tuning);
    void SetAFrequency(float fA);
    // Hz. The highlight stands at the limits of the strip for what lies beyond, and at the lowest note for
    // what has no logarithm: 0, as long as nothing was heard.
    void SetFrequency(float fHz);

    // Places the marks and paints the scale, on white and on the tint. Doesn't touch the window.
    void Rebuild();
    // Without bFull: only the highlight, where it was and where it is, and nothing while it stays. Allocates
    // nothing.
    void Draw(CDC* pDst, bool bFull);

private:
    void CollectMarks();
    void PlaceMarks();
    void PaintScale(COLORREF clrTint);
    COLORREF GetTint() const;
    int GetHighlightX() const;

    Tuning m_tuning;
    CBitmapLayer m_tic;
    CBitmapLayer m_bar;
    CFont m_font;
    CDC m_dcShow;
    CBitmap m_bmpShow;
    CDC m_dcBase;
    CBitmap m_bmpBase;
    CDC m_dcLit;
    CBitmap m_bmpLit;
    int m_nMarks = 0;
    std::array<int, 6> m_anMarkX = {};
    float m_fScale = 0.0F;   // pixels for each octave
    float m_fLogLow = 0.0F;  // base-2 logarithm of the lowest note's frequency in Hz
    float m_fAFrequency = DEFAULT_A_FREQUENCY;
    std::atomic<float> m_fLogFrequency = 0.0F;  // base-2 logarithm of Hz
    int m_nLastX = 2;
    bool m_bHighlightShown = false;  // at m_nLastX, on the present scale
    std::array<StringNote, 6> m_marks;
    COLORREF m_clrBase = 0xA00000;
    int m_nHeight = 0;
    int m_nWidth = 0;
};
