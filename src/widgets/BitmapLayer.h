#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

class CWnd;

// A picture from a file, drawn as it is. Drawn before a load, or after one that failed, it draws nothing.
class CBitmapLayer {
public:
    // Once, at set-up. False if the window's device can't copy rectangles or the file can't be loaded.
    bool Load(const CString& strFile, CWnd* pWnd);

    // The whole picture to (x, y).
    void Draw(CDC* pDst, int x, int y) const;

    // The rectangle at (xSrc, ySrc) of size cx by cy; what of it lies outside the picture isn't drawn.
    void DrawPart(CDC* pDst, int x, int y, int xSrc, int ySrc, int cx, int cy) const;

    int GetHeight() const { return m_nHeight; }

private:
    CDC m_dc;
    CBitmap m_bitmap;
    int m_nWidth = 0;
    int m_nHeight = 0;
};
