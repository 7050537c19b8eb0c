#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

class CWnd;

// A strip of glyphs rendered in a colour of choice from two files, of which only the blue channel counts. The
// first is the shape: black takes the colour, white stays white. The second is light and shade, multiplied
// in: white keeps what the first gives, black darkens to black; where it is smaller it counts as white. Drawn
// before a load, or after one that failed, it draws nothing.
class CTintedBitmap {
public:
    // Once, at set-up; renders in the colour that is set (black at first). False, and nothing rendered, if
    // the window's device can't copy rectangles or either file can't be loaded.
    bool Load(const CString& strColorFile, const CString& strBevelFile, CWnd* pWnd);

    // Renders anew. Pixel by pixel: not for a frame.
    void SetColor(COLORREF clr);

    // The rectangle *prcSrc of the rendered strip to (x, y).
    void DrawPart(CDC* pDst, int x, int y, const RECT* prcSrc) const;

private:
    void Render();

    CDC m_dcResult;
    CBitmap m_bmpResult;
    CDC m_dcColor;
    CBitmap m_bmpColor;
    CDC m_dcBevel;
    CBitmap m_bmpBevel;
    int m_nWidth = 0;
    int m_nHeight = 0;
    COLORREF m_clrTint = 0;
};
