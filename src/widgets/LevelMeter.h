#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

#include <atomic>

class CWnd;

// The recording level: a column that rises from the bottom of its rectangle, in colours that run from one for
// too low to one for too high. Linear in the level that it is given.
//
// Threads: SetLevel is a single store, without a lock, on any thread. SetColors and Draw want the window's
// picture lock held.
class CLevelMeter {
public:
    // rc is the meter's place in the window, its frame of two pixels included. False only without memory.
    bool Create(CWnd* pWnd, RECT rc);

    // Paints the gradient; the next full draw shows it.
    void SetColors(COLORREF clrTop, COLORREF clrBottom);
    // 0 is an empty column, 1 a full one; what lies outside is limited, and what is no number counts as 0.
    void SetLevel(float fLevel);

    // Without bFull: only the rows between the old and the new top of the column, straight on pDst. Allocates
    // nothing.
    void Draw(CDC* pDst, bool bFull);

private:
    void DrawFull(CDC* pDst, int nBar);
    void DrawChange(CDC* pDst, int nBar);

    CDC m_dcGradient;
    CBitmap m_bmpGradient;
    CDC m_dcShow;
    CBitmap m_bmpShow;
    RECT m_rc;
    COLORREF m_clrTop = 0;
    COLORREF m_clrBottom = 0;
    std::atomic<int> m_nBar = 0;      // height of the column in pixels
    std::atomic<int> m_nPrevBar = 0;  // the same as last drawn
};
