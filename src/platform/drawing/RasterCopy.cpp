#include "platform/drawing/RasterCopy.h"

#include "platform/drawing/Dc.h"

#include <cstddef>
#include <cstring>

namespace {

// Where the two rectangles lie: what both loops below need.
struct Rows {
    CSurface& dst;
    const RECT& rcDst;
    const CSurface& src;
    int xSrc;
    int ySrc;

    // Rows are visited so that none is overwritten before it is read: upward where the copy goes downward.
    template <class TRow>
    void ForEach(TRow row) const {
        const int nHeight = rcDst.Height();
        const bool bUpward = &dst == &src && rcDst.top > ySrc;
        for (int i = 0; i < nHeight; ++i) {
            const int n = bUpward ? nHeight - 1 - i : i;
            row(dst.GetRow(rcDst.top + n) + rcDst.left, src.GetRow(ySrc + n) + xSrc);
        }
    }

    // Within one row, the same.
    bool IsLeftward() const { return &dst == &src && rcDst.top == ySrc && rcDst.left > xSrc; }
};

template <class TRop, class TConvert>
void CopyRows(const Rows& rows, TRop rop, TConvert convert) {
    const int nWidth = rows.rcDst.Width();
    const auto combine = [rop, convert](Pixel dst, Pixel src) {
        return static_cast<Pixel>(rop(dst, convert(src)) | PIXEL_BLACK);
    };
    if (rows.IsLeftward()) {
        rows.ForEach([nWidth, combine](Pixel* pDst, const Pixel* pSrc) {
            for (int i = nWidth - 1; i >= 0; --i) {
                pDst[i] = combine(pDst[i], pSrc[i]);
            }
        });
    } else {
        rows.ForEach([nWidth, combine](Pixel* pDst, const Pixel* pSrc) {
            for (int i = 0; i < nWidth; ++i) {
                pDst[i] = combine(pDst[i], pSrc[i]);
            }
        });
    }
}

template <class TRop>
void ConvertAndCopy(const Rows& rows, TRop rop, const BitColors& colors) {
    if (rows.dst.IsMonochrome() == rows.src.IsMonochrome()) {
        CopyRows(rows, rop, [](Pixel src) { return src; });
    } else if (rows.src.IsMonochrome()) {
        CopyRows(rows, rop, [one = colors.ofOne, zero = colors.ofZero](Pixel src) {
            return src == PIXEL_WHITE ? one : zero;
        });
    } else {
        CopyRows(rows, rop,
                 [bit = colors.toBit](Pixel src) { return src == bit ? PIXEL_WHITE : PIXEL_BLACK; });
    }
}

}  // namespace

bool CopyRaster(CSurface& dst, const RECT& rcDst, const CSurface& src, int xSrc, int ySrc, DWORD dwRop,
                const BitColors& colors) {
    const Rows rows{dst, rcDst, src, xSrc, ySrc};
    switch (dwRop) {
        case SRCCOPY:
            if (dst.IsMonochrome() == src.IsMonochrome()) {
                const std::size_t nBytes = static_cast<std::size_t>(rcDst.Width()) * sizeof(Pixel);
                rows.ForEach([nBytes](Pixel* pDst, const Pixel* pSrc) { std::memmove(pDst, pSrc, nBytes); });
            } else {
                ConvertAndCopy(
                    rows, [](Pixel /*dst*/, Pixel s) { return s; }, colors);
            }
            return true;
        case SRCAND:
            ConvertAndCopy(
                rows, [](Pixel d, Pixel s) { return d & s; }, colors);
            return true;
        case SRCINVERT:
            ConvertAndCopy(
                rows, [](Pixel d, Pixel s) { return d ^ s; }, colors);
            return true;
        case DSNA:
            ConvertAndCopy(
                rows, [](Pixel d, Pixel s) { return d & ~s; }, colors);
            return true;
        default:
            return false;
    }
}
