#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"
#include "widgets/BitmapLayer.h"
#include "widgets/MaskedSprite.h"
#include "widgets/TintedBitmap.h"

#include <array>
#include <atomic>

class CWnd;

// The dial at (250, 43) to (490, 300) of the main window: the name of the nearest note without its octave,
// the distance from it in cents with a sign and two digits, and a needle over a scale. It jumps to what it is
// given.
//
// It composes in a picture of its own. A full draw builds that from nothing; any other draws only what the
// last setter calls changed, and sends only those rectangles to the window. So there is one call of SetNote
// and one of SetCents for each such draw. What it leaves standing beside a changed glyph must be white in the
// bitmaps: the last three columns of the sharp, the columns of a digit past the narrowest one's 24; what the
// plus has outside the 20 by 20 pixels that are cleared for the minus must be white, or under the minus. The
// scale must fill rows 59 to 127, the hub end above row 255.
//
// Threads: SetNote and SetCents belong to the thread that draws the frames; they, and SetColor on any thread,
// are single stores without a lock. SetDigitColor and Draw want the window's picture lock held.
class CFineDial {
public:
    // Makes the picture and loads the bitmaps from the current directory. False at the first that is missing;
    // the dial then draws what it has.
    bool Create(CWnd* pWnd);

    // Colour of letters and digits. Renders them anew, pixel by pixel; the next full draw shows it.
    void SetDigitColor(COLORREF clr);
    // Colour of the needle. The caller tells the next draw of it.
    void SetColor(COLORREF clr);
    // 0 to 11 from C; anything else shows no note.
    void SetNote(int nSemitone);
    // The needle takes any value; the digits end at 99.
    void SetCents(int nCents);

    // Without bFull: what changed between the last two SetNote and the last two SetCents, and the needle if
    // bColorChanged. Allocates nothing.
    void Draw(CDC* pDst, bool bFull, bool bColorChanged);

private:
    void DrawNote(int nSemitone);
    void DrawNumerals(int nCents, int nPrevCents, bool bFull);
    void DrawNeedle(int nCents, bool bMoved, bool bFull);
    int DrawLetter(int x, int nGlyph);
    void DrawDigit(int x, int nGlyph);
    void CopyChanges(CDC* pDst, bool bNote, bool bNeedle) const;

    CDC m_dc;
    CBitmap m_bitmap;
    CTintedBitmap m_notes;
    CTintedBitmap m_digits;
    CBitmapLayer m_label;
    CMaskedSprite m_hub;
    // Edges of the glyphs in the strips: A to G, sharp, flat; 0 to 9, percent, minus, plus.
    static constexpr std::array<int, 10> m_anNoteX = {0, 32, 60, 90, 119, 146, 170, 200, 225, 249};
    static constexpr std::array<int, 14> m_anDigitX = {0,   26,  50,  75,  99,  125, 150,
                                                       175, 200, 225, 250, 286, 299, 321};
    std::atomic<int> m_nSemitone = 0;
    std::atomic<int> m_nCents = 0;
    std::atomic<int> m_nPrevSemitone = 0;
    std::atomic<int> m_nPrevCents = 0;
    COLORREF m_clrText = 0;
    std::atomic<COLORREF> m_clrNeedle = 0;
    int m_nHeight = 0;
    int m_nWidth = 0;
    int m_nStripX = 110;
};
