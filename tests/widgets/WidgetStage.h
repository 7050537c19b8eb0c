#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Dc.h"
#include "platform/windows/Wnd.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <vector>

// A client area of the main window's size to draw into, without a window and without a display.
class CStageWnd : public CWnd {
public:
    static constexpr RECT s_rcClient = {0, 0, 500, 396};

    CStageWnd();

    // Draws with a client device context, under the picture's lock.
    void Draw(const std::function<void(CDC*)>& fnDraw);

    COLORREF GetPixel(int x, int y) const;
};

void PrintTo(const RECT& rc, std::ostream* pStream);

// The colour expected at a pixel; CLR_INVALID leaves it out.
using ExpectedColor = std::function<COLORREF(int x, int y)>;

testing::AssertionResult PixelsAre(const CStageWnd& wnd, const RECT& rc, const ExpectedColor& fnExpected);
testing::AssertionResult ShowTheSame(const CStageWnd& wnd, const CStageWnd& wndExpected, const RECT& rc);
// Runs a draw on a fresh area and tells whether it wrote to each pixel of these rectangles and to no other
// one.
testing::AssertionResult TouchesExactly(const std::function<void(CDC*)>& fnDraw,
                                        const std::vector<RECT>& rects);

// A BMP file of 24 bits.
void WriteBitmap(const CString& strFile, int cx, int cy, const ExpectedColor& fnPixel);

// The colour that the sunken edge of the rectangle has at a pixel, CLR_INVALID inside it.
COLORREF SunkenEdgeAt(const RECT& rc, int x, int y);
