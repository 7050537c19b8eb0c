#include "widgets/WidgetStage.h"

#include "platform/base/String.h"
#include "platform/drawing/BitmapWriter.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/SysColors.h"
#include "platform/windows/ClientDc.h"

#include <algorithm>
#include <fstream>
#include <mutex>

namespace {

// No widget draws it.
constexpr COLORREF UNTOUCHED = 0xFE01FE;

}  // namespace

CStageWnd::CStageWnd() {
    SetClientSize(s_rcClient.right, s_rcClient.bottom);
}

void CStageWnd::Draw(const std::function<void(CDC*)>& fnDraw) {
    const std::lock_guard lock(GetPictureLock());
    CClientDC dc(this);
    fnDraw(&dc);
}

COLORREF CStageWnd::GetPixel(int x, int y) const {
    const CSurface& surface = GetPicture().GetSurface();
    const bool bInside = x >= 0 && y >= 0 && x < surface.GetWidth() && y < surface.GetHeight();
    return bInside ? ColorFromPixel(surface.GetRow(y)[x]) : CLR_INVALID;
}

void PrintTo(const RECT& rc, std::ostream* pStream) {
    *pStream << '(' << rc.left << ", " << rc.top << ", " << rc.right << ", " << rc.bottom << ')';
}

testing::AssertionResult PixelsAre(const CStageWnd& wnd, const RECT& rc, const ExpectedColor& fnExpected) {
    int nWrong = 0;
    CString strFirst;
    for (int y = rc.top; y < rc.bottom; ++y) {
        for (int x = rc.left; x < rc.right; ++x) {
            const COLORREF clrExpected = fnExpected(x, y);
            const COLORREF clr = wnd.GetPixel(x, y);
            if (clrExpected == CLR_INVALID || clr == clrExpected) {
                continue;
            }
            if (nWrong++ == 0) {
                strFirst = FormatText("(%d, %d) is %06X instead of %06X", x, y, clr, clrExpected);
            }
        }
    }
    if (nWrong == 0) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << nWrong << " pixels differ, first " << strFirst;
}

testing::AssertionResult ShowTheSame(const CStageWnd& wnd, const CStageWnd& wndExpected, const RECT& rc) {
    const CSurface& surface = wnd.GetPicture().GetSurface();
    const CSurface& expected = wndExpected.GetPicture().GetSurface();
    bool bSame = true;
    for (int y = rc.top; y < rc.bottom && bSame; ++y) {
        const Pixel* const pRow = surface.GetRow(y);
        bSame = std::equal(pRow + rc.left, pRow + rc.right, expected.GetRow(y) + rc.left);
    }
    if (bSame) {
        return testing::AssertionSuccess();
    }
    return PixelsAre(wnd, rc, [&](int x, int y) { return wndExpected.GetPixel(x, y); });
}

testing::AssertionResult TouchesExactly(const std::function<void(CDC*)>& fnDraw,
                                        const std::vector<RECT>& rects) {
    CStageWnd wnd;
    wnd.Draw([](CDC* pDc) { pDc->FillSolidRect(CStageWnd::s_rcClient, UNTOUCHED); });
    wnd.Draw(fnDraw);
    for (int y = 0; y < CStageWnd::s_rcClient.bottom; ++y) {
        for (int x = 0; x < CStageWnd::s_rcClient.right; ++x) {
            bool bExpected = false;
            for (const RECT& rc : rects) {
                bExpected = bExpected || PtInRect(rc, {x, y});
            }
            if ((wnd.GetPixel(x, y) != UNTOUCHED) != bExpected) {
                return testing::AssertionFailure()
                       << FormatText("(%d, %d) was %swritten", x, y, bExpected ? "not " : "");
            }
        }
    }
    return testing::AssertionSuccess();
}

void WriteBitmap(const CString& strFile, int cx, int cy, const ExpectedColor& fnPixel) {
    std::ofstream(strFile, std::ios::binary) << bmp::Encode24(cx, cy, [&](int x, int y) {
        const COLORREF clr = fnPixel(x, y);
        return bmp::Rgb{static_cast<BYTE>(GetRed(clr)), static_cast<BYTE>(GetGreen(clr)),
                        static_cast<BYTE>(GetBlue(clr))};
    });
}

COLORREF SunkenEdgeAt(const RECT& rc, int x, int y) {
    const auto ring = [&](int nInset, int nDark, int nLight) {
        if (x == rc.right - 1 - nInset || y == rc.bottom - 1 - nInset) {
            return GetSysColor(nLight);
        }
        return x == rc.left + nInset || y == rc.top + nInset ? GetSysColor(nDark) : CLR_INVALID;
    };
    const COLORREF clrOuter = ring(0, COLOR_BTNSHADOW, COLOR_BTNHILIGHT);
    return clrOuter != CLR_INVALID ? clrOuter : ring(1, COLOR_3DDKSHADOW, COLOR_3DLIGHT);
}
