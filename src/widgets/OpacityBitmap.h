#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

class CWnd;

// A picture blended onto one background colour through a second file of opacities: its blue channel at 0
// shows the picture, at 255 the background to within 1/256 of the difference. Where the second file is
// smaller it counts as 255. Drawn before a blend it is black; without a load, or after one that failed, it
// draws nothing.
class COpacityBitmap {
public:
    // Once, at set-up. False if the window's device can't copy rectangles or either file can't be loaded.
    bool Load(const CString& strFile, const CString& strOpacityFile, CWnd* pWnd);

    // Renders what is drawn, from the files and not from the last result. Pixel by pixel: not for a frame.
    // Always true.
    bool Blend(COLORREF clrBack);

    // The whole result to (x, y).
    void Draw(CDC* pDst, int x, int y) const;

private:
    CDC m_dcBase;
    CBitmap m_bmpBase;
    CDC m_dcOpacity;
    CBitmap m_bmpOpacity;
    CDC m_dcResult;
    CBitmap m_bmpResult;
    int m_nWidth = 0;
    int m_nHeight = 0;
};
