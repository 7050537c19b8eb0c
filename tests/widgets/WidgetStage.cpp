#include "widgets/WidgetStage.h"

#include "platform/base/String.h"
#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/SysColors.h"
#include "platform/windows/ClientDc.h"

#include <algorithm>
#include <fstream>
#include <mutex>

CStageWnd::CStageWnd() {
    SetClientSize(s_rcClient.right, s_rcClient.bottom);
}

void CStageWnd::Draw(const std::function<void(CDC*)>& fnDraw) {
    const std::lock_guard lock(GetPictureLock());
    CClientDC dc(this);
    fnDraw(&dc);
}

COLORREF CStageWnd::GetPixel(int x, int y) const {
    return ColorFromPixel(GetPicture().GetSurface().GetRow(y)[x]);
}

testing::AssertionResult PixelsAre(const CStageWnd& wnd, const RECT& rc, const PixelColor& fnExpected) {
    for (int y = 0; y < rc.Height(); ++y) {
        for (int x = 0; x < rc.Width(); ++x) {
            const COLORREF clrExpected = fnExpected(x, y);
            const COLORREF clr = wnd.GetPixel(rc.left + x, rc.top + y);
            if (clr != clrExpected) {
                return testing::AssertionFailure()
                       << FormatText("(%d, %d) is %06X instead of %06X", x, y, clr, clrExpected);
            }
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult FramedPixelsAre(const CStageWnd& wnd, const RECT& rc, const PixelColor& fnExpected) {
    constexpr int COLORS[2][2] = {{COLOR_BTNSHADOW, COLOR_BTNHILIGHT}, {COLOR_3DDKSHADOW, COLOR_3DLIGHT}};
    return PixelsAre(wnd, rc, [&](int x, int y) {
        const int nInset = std::min({x, y, rc.Width() - 1 - x, rc.Height() - 1 - y});
        const bool bLight = x == rc.Width() - 1 - nInset || y == rc.Height() - 1 - nInset;
        return nInset > 1 ? fnExpected(x, y) : GetSysColor(COLORS[nInset][bLight ? 1 : 0]);
    });
}

testing::AssertionResult ShowTheSame(const CStageWnd& wnd, const CStageWnd& wndExpected) {
    const RECT& rc = CStageWnd::s_rcClient;
    const Pixel* const pPixels = wnd.GetPicture().GetSurface().GetRow(0);
    const bool bSame = std::equal(pPixels, pPixels + std::ptrdiff_t{rc.right} * rc.bottom,
                                  wndExpected.GetPicture().GetSurface().GetRow(0));
    return bSame ? testing::AssertionSuccess()
                 : PixelsAre(wnd, rc, [&](int x, int y) { return wndExpected.GetPixel(x, y); });
}

testing::AssertionResult TouchesExactly(const std::function<void(CDC*)>& fnDraw,
                                        const std::vector<RECT>& rects) {
    constexpr COLORREF UNTOUCHED = 0xFE01FE;  // no widget draws it
    CStageWnd wnd;
    wnd.Draw([](CDC* pDc) { pDc->FillSolidRect(CStageWnd::s_rcClient, UNTOUCHED); });
    wnd.Draw(fnDraw);
    for (int y = 0; y < CStageWnd::s_rcClient.bottom; ++y) {
        for (int x = 0; x < CStageWnd::s_rcClient.right; ++x) {
            const bool bExpected = std::any_of(rects.begin(), rects.end(), [&](const RECT& rc) {
                return PtInRect(rc, {x, y});
            });
            if ((wnd.GetPixel(x, y) != UNTOUCHED) != bExpected) {
                return testing::AssertionFailure()
                       << FormatText("(%d, %d) was %swritten", x, y, bExpected ? "not " : "");
            }
        }
    }
    return testing::AssertionSuccess();
}

void WriteBitmap(const CString& strFile, int cx, int cy, const PixelColor& fnPixel) {
    std::ofstream(strFile, std::ios::binary) << bmp::Encode24(cx, cy, [&](int x, int y) {
        const COLORREF clr = fnPixel(x, y);
        return bmp::Rgb{static_cast<BYTE>(GetRed(clr)), static_cast<BYTE>(GetGreen(clr)),
                        static_cast<BYTE>(GetBlue(clr))};
    });
}
