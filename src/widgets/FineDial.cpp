#include "widgets/FineDial.h"

#include "platform/drawing/Pen.h"
#include "platform/windows/ClientDc.h"
#include "tuning/StringNote.h"
#include "widgets/MemoryPicture.h"
#include "widgets/NeedleGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;

// Where the picture lies in the window, its size and the width of its frame.
constexpr POINT ORIGIN = {250, 43};
constexpr int DIAL_WIDTH = 240;
constexpr int DIAL_HEIGHT = 257;
constexpr int FRAME = 2;

// Letters and digits stand in one row.
constexpr int GLYPH_Y = 20;
constexpr int GLYPH_HEIGHT = 27;
constexpr int NOTE_X = 22;
constexpr int PLUS_X = 119;
constexpr int MINUS_X = 125;
constexpr int TENS_X = 143;
constexpr int ONES_X = 168;
constexpr int PERCENT_X = 195;

// From this column on a note name may be narrower than the one before.
constexpr RECT NOTE_TAIL = {40, GLYPH_Y, 74, GLYPH_Y + GLYPH_HEIGHT};
constexpr RECT SIGN_GROUND = {PLUS_X, GLYPH_Y, PLUS_X + 20, GLYPH_Y + 20};

constexpr int SCALE_Y = 59;
constexpr int NEEDLE_WIDTH = 5;
// Below the scale the needle has the ground for itself.
constexpr int CLEAR_TOP = 128;
constexpr int CLEAR_BOTTOM = 250;
constexpr POINT HUB = {91, 232};

// What a frame sends to the window.
constexpr RECT NOTE_AREA = {20, 20, 80, 48};
constexpr RECT NUMERAL_AREA = {119, 20, 219, 48};
constexpr int NEEDLE_AREA_TOP = 58;

constexpr int GLYPH_PERCENT = 10;
constexpr int GLYPH_MINUS = 11;
constexpr int GLYPH_PLUS = 12;
constexpr int LARGEST_NUMBER = 99;

enum LetterGlyph {
    GLYPH_NONE = -1,
    GLYPH_A,
    GLYPH_B,
    GLYPH_C,
    GLYPH_D,
    GLYPH_E,
    GLYPH_F,
    GLYPH_G,
    GLYPH_SHARP,
    GLYPH_FLAT
};

struct NoteGlyphs {
    LetterGlyph nLetter;
    LetterGlyph nAccidental;
};

constexpr std::array<NoteGlyphs, SEMITONES> NOTE_GLYPHS = {{{GLYPH_C, GLYPH_NONE},
                                                            {GLYPH_C, GLYPH_SHARP},
                                                            {GLYPH_D, GLYPH_NONE},
                                                            {GLYPH_E, GLYPH_FLAT},
                                                            {GLYPH_E, GLYPH_NONE},
                                                            {GLYPH_F, GLYPH_NONE},
                                                            {GLYPH_F, GLYPH_SHARP},
                                                            {GLYPH_G, GLYPH_NONE},
                                                            {GLYPH_G, GLYPH_SHARP},
                                                            {GLYPH_A, GLYPH_NONE},
                                                            {GLYPH_B, GLYPH_FLAT},
                                                            {GLYPH_B, GLYPH_NONE}}};

// The rectangle of a glyph in its strip.
template <std::size_t N>
RECT GlyphRect(const std::array<int, N>& anEdges, int nGlyph) {
    const auto k = static_cast<std::size_t>(nGlyph);
    return {anEdges[k], 0, anEdges[k + 1], GLYPH_HEIGHT};
}

}  // namespace

bool CFineDial::Create(CWnd* pWnd) {
    const CClientDC dc(pWnd);
    if (!CreateMemoryPicture(dc, DIAL_WIDTH, DIAL_HEIGHT, m_dc, m_bitmap)) {
        return false;
    }
    m_nHeight = DIAL_HEIGHT;
    m_nWidth = DIAL_WIDTH;
    return m_notes.Load("NotesClr.bmp", "NotesBev.bmp", pWnd) &&
           m_digits.Load("NumClr.bmp", "NumBev.bmp", pWnd) && m_label.Load("Label.bmp", pWnd) &&
           m_hub.Load("Circle.bmp", pWnd, WHITE);
}

void CFineDial::SetDigitColor(COLORREF clr) {
    m_clrText = clr;
    m_notes.SetColor(clr);
    m_digits.SetColor(clr);
}

void CFineDial::SetColor(COLORREF clr) {
    m_clrNeedle.store(clr, std::memory_order_relaxed);
}

void CFineDial::SetNote(int nSemitone) {
    m_nPrevSemitone.store(m_nSemitone.load(std::memory_order_relaxed), std::memory_order_relaxed);
    m_nSemitone.store(nSemitone, std::memory_order_relaxed);
}

void CFineDial::SetCents(int nCents) {
    m_nPrevCents.store(m_nCents.load(std::memory_order_relaxed), std::memory_order_relaxed);
    m_nCents.store(nCents, std::memory_order_relaxed);
}

void CFineDial::Draw(CDC* pDst, bool bFull, bool bColorChanged) {
    // Each value is read once: a full draw may meet the setters of the next frame on the other thread.
    const int nSemitone = m_nSemitone.load(std::memory_order_relaxed);
    const int nCents = m_nCents.load(std::memory_order_relaxed);
    const int nPrevCents = m_nPrevCents.load(std::memory_order_relaxed);
    const bool bNoteChanged = nSemitone != m_nPrevSemitone.load(std::memory_order_relaxed);
    const bool bMoved = nCents != nPrevCents;

    if (bFull) {
        m_dc.FillSolidRect({FRAME, FRAME, m_nWidth - FRAME, m_nHeight - FRAME}, WHITE);
    }
    if (bNoteChanged || bFull) {
        DrawNote(nSemitone);
    }
    if (bMoved || bFull) {
        DrawNumerals(nCents, nPrevCents, bFull);
    }
    if (bMoved || bFull || bColorChanged) {
        DrawNeedle(nCents, bMoved, bFull);
    }
    if (bFull) {
        m_dc.DrawEdge({0, 0, m_nWidth, m_nHeight}, EDGE_SUNKEN, BF_RECT);
        pDst->BitBlt(ORIGIN.x, ORIGIN.y, m_nWidth, m_nHeight, &m_dc, 0, 0, SRCCOPY);
    } else {
        CopyChanges(pDst, bNoteChanged, bMoved || bColorChanged);
    }
}

void CFineDial::DrawNote(int nSemitone) {
    m_dc.FillSolidRect(NOTE_TAIL, WHITE);
    if (nSemitone < 0 || nSemitone >= SEMITONES) {
        return;
    }
    const NoteGlyphs& glyphs = NOTE_GLYPHS[static_cast<std::size_t>(nSemitone)];
    const int x = DrawLetter(NOTE_X, glyphs.nLetter);
    if (glyphs.nAccidental != GLYPH_NONE) {
        DrawLetter(x, glyphs.nAccidental);
    }
}

// Returns where the next glyph begins.
int CFineDial::DrawLetter(int x, int nGlyph) {
    const RECT rcGlyph = GlyphRect(m_anNoteX, nGlyph);
    m_notes.DrawPart(&m_dc, x, GLYPH_Y, &rcGlyph);
    return x + rcGlyph.Width();
}

void CFineDial::DrawDigit(int x, int nGlyph) {
    const RECT rcGlyph = GlyphRect(m_anDigitX, nGlyph);
    m_digits.DrawPart(&m_dc, x, GLYPH_Y, &rcGlyph);
}

void CFineDial::DrawNumerals(int nCents, int nPrevCents, bool bFull) {
    // Two digits are all there is room for.
    const int nShown = std::clamp(nCents, -LARGEST_NUMBER, LARGEST_NUMBER);
    const int nPrevShown = std::clamp(nPrevCents, -LARGEST_NUMBER, LARGEST_NUMBER);

    // The plus covers a minus; the minus, being narrower, needs its ground cleared. 0 has a plus.
    if (nShown == 0 || (nShown > 0 && (nPrevShown < 0 || bFull))) {
        DrawDigit(PLUS_X, GLYPH_PLUS);
    } else if (nShown < 0 && (nPrevShown >= 0 || bFull)) {
        m_dc.FillSolidRect(SIGN_GROUND, WHITE);
        DrawDigit(MINUS_X, GLYPH_MINUS);
    }

    const int nTens = std::abs(nShown) / 10;
    const int nOnes = std::abs(nShown) % 10;
    // A tens digit that stands already isn't drawn again, but for one under the other sign.
    const bool bTensStand = nTens > 0 ? nTens == nPrevShown / 10 : std::abs(nPrevShown) < 10;
    if (!bTensStand || bFull) {
        DrawDigit(TENS_X, nTens);
    }
    DrawDigit(ONES_X, nOnes);
    if (bFull) {
        DrawDigit(PERCENT_X, GLYPH_PERCENT);
    }
}

void CFineDial::DrawNeedle(int nCents, bool bMoved, bool bFull) {
    if (bMoved) {
        m_dc.FillSolidRect({FRAME, CLEAR_TOP, m_nWidth - FRAME, CLEAR_BOTTOM}, WHITE);
    }
    const NeedleGeometry needle = GetNeedleGeometry(nCents);
    if (bFull) {
        m_label.Draw(&m_dc, FRAME, SCALE_Y);
    } else {
        // Only the columns that the last needle crossed.
        m_label.DrawPart(&m_dc, m_nStripX, SCALE_Y, m_nStripX - FRAME, 0, NEEDLE_STRIP_WIDTH,
                         m_label.GetHeight());
        m_nStripX = needle.nStripX;
    }
    CPen pen(PS_SOLID, NEEDLE_WIDTH, m_clrNeedle.load(std::memory_order_relaxed));
    CPen* const pOldPen = m_dc.SelectObject(&pen);
    m_dc.MoveTo(needle.ptBase.x, needle.ptBase.y);
    m_dc.LineTo(needle.ptTip.x, needle.ptTip.y);
    m_dc.SelectObject(pOldPen);
    m_hub.Draw(&m_dc, HUB.x, HUB.y);
}

void CFineDial::CopyChanges(CDC* pDst, bool bNote, bool bNeedle) const {
    const auto Copy = [&](const RECT& rc) {
        pDst->BitBlt(ORIGIN.x + rc.left, ORIGIN.y + rc.top, rc.Width(), rc.Height(), &m_dc, rc.left, rc.top,
                     SRCCOPY);
    };
    if (bNote) {
        Copy(NOTE_AREA);
    }
    if (bNeedle) {
        Copy(NUMERAL_AREA);
        Copy({FRAME, NEEDLE_AREA_TOP, m_nWidth - FRAME, m_nHeight});
    }
}
