#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

class CWnd;

// A picture from a file, drawn with one of its colours transparent. Drawn before a load, or after one that
// failed, it draws nothing.
class CMaskedSprite {
public:
    // Once, at set-up. False if the window's device can't copy rectangles or the file can't be loaded.
    bool Load(const CString& strFile, CWnd* pWnd, COLORREF clrTransparent);

    // At (x, y): four copies of the sprite's size.
    void Draw(CDC* pDst, int x, int y);

private:
    CDC m_dcWork;  // what lies under the sprite, in each draw
    CBitmap m_bmpWork;
    CDC m_dcImage;  // the file
    CBitmap m_bmpImage;
    CDC m_dcMask;  // monochrome: 1 where transparent
    CBitmap m_bmpMask;
    CDC m_dcCutout;  // the file, black where transparent
    CBitmap m_bmpCutout;
    int m_nWidth = 0;
    int m_nHeight = 0;
};
