#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Dc.h"
#include "platform/windows/Wnd.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

// A client area of the main window's size to draw into, without a window and without a display.
class CStageWnd : public CWnd {
public:
    static constexpr RECT s_rcClient = {0, 0, 500, 396};

    CStageWnd();

    // Draws with a client device context, under the picture's lock.
    void Draw(const std::function<void(CDC*)>& fnDraw);

    // Of a point inside.
    COLORREF GetPixel(int x, int y) const;
};

// The colour of a pixel, counted from the top left of a picture.
using PixelColor = std::function<COLORREF(int x, int y)>;

// The picture that stands in a rectangle of the window.
testing::AssertionResult PixelsAre(const CStageWnd& wnd, const RECT& rc, const PixelColor& fnExpected);
// The same inside a sunken edge of two pixels.
testing::AssertionResult FramedPixelsAre(const CStageWnd& wnd, const RECT& rc, const PixelColor& fnExpected);
testing::AssertionResult ShowTheSame(const CStageWnd& wnd, const CStageWnd& wndExpected);
// Runs a draw on a fresh area and tells whether it wrote to each pixel of these rectangles and to no other
// one.
testing::AssertionResult TouchesExactly(const std::function<void(CDC*)>& fnDraw,
                                        const std::vector<RECT>& rects);

// A BMP file of 24 bits.
void WriteBitmap(const CString& strFile, int cx, int cy, const PixelColor& fnPixel);
