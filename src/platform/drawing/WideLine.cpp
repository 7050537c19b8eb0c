#include "platform/drawing/WideLine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr int MAX_COORDINATE = 1 << 20;
constexpr int MAX_WIDTH = 255;

// A run of columns, both ends inside; empty if the right end is left of the left one.
struct Span {
    std::int64_t nLeft;
    std::int64_t nRight;

    bool IsEmpty() const { return nRight < nLeft; }
    Span Shift(std::int64_t n) const { return {nLeft + n, nRight + n}; }
};

constexpr Span SPAN_NONE{1, 0};
constexpr Span SPAN_ALL{INT64_MIN / 4, INT64_MAX / 4};

std::int64_t RootBelow(std::int64_t n) {
    auto nRoot = static_cast<std::int64_t>(std::sqrt(static_cast<double>(n)));
    while (nRoot * nRoot > n) {
        --nRoot;
    }
    while ((nRoot + 1) * (nRoot + 1) <= n) {
        ++nRoot;
    }
    return nRoot;
}

std::int64_t DivideDown(std::int64_t n, std::int64_t nPositive) {
    const std::int64_t nQuotient = n / nPositive;
    return nQuotient - (n % nPositive < 0 ? 1 : 0);
}

std::int64_t DivideUp(std::int64_t n, std::int64_t nPositive) {
    const std::int64_t nQuotient = n / nPositive;
    return nQuotient + (n % nPositive > 0 ? 1 : 0);
}

// All u with nLow <= nFactor * u <= nHigh.
Span Solve(std::int64_t nLow, std::int64_t nFactor, std::int64_t nHigh) {
    if (nFactor > 0) {
        return {DivideUp(nLow, nFactor), DivideDown(nHigh, nFactor)};
    }
    if (nFactor < 0) {
        return {DivideUp(-nHigh, -nFactor), DivideDown(-nLow, -nFactor)};
    }
    return nLow <= 0 && nHigh >= 0 ? SPAN_ALL : SPAN_NONE;
}

Span Intersect(const Span& a, const Span& b) {
    return {std::max(a.nLeft, b.nLeft), std::min(a.nRight, b.nRight)};
}

// Around two runs that belong to one convex figure.
Span Join(const Span& a, const Span& b) {
    if (a.IsEmpty() || b.IsEmpty()) {
        return a.IsEmpty() ? b : a;
    }
    return {std::min(a.nLeft, b.nLeft), std::max(a.nRight, b.nRight)};
}

// Row dy of a disc around column 0.
Span DiscRow(std::int64_t dy, std::int64_t nWidth) {
    const std::int64_t nRest = nWidth * nWidth - 4 * dy * dy;
    if (nRest < 0) {
        return SPAN_NONE;
    }
    const std::int64_t nHalf = RootBelow(nRest) / 2;
    return {-nHalf, nHalf};
}

}  // namespace

RECT DrawWideLine(CSurface& surface, POINT ptFrom, POINT ptTo, int nWidth, COLORREF clr) {
    for (const int n : {ptFrom.x, ptFrom.y, ptTo.x, ptTo.y}) {
        if (n > MAX_COORDINATE || n < -MAX_COORDINATE) {
            return {};
        }
    }
    if (nWidth < 1 || nWidth > MAX_WIDTH) {
        return {};
    }
    const int nReach = nWidth / 2;
    const RECT rc =
        surface.Clip(std::min(ptFrom.x, ptTo.x) - nReach, std::min(ptFrom.y, ptTo.y) - nReach,
                     std::max(ptFrom.x, ptTo.x) + nReach + 1, std::max(ptFrom.y, ptTo.y) + nReach + 1);
    const Pixel pixel = surface.ToPixel(clr);

    // For a pixel at (u, v) from the first end: the length times its distance from the line is |u dy - v dx|,
    // and its foot lies between the ends if 0 <= u dx + v dy <= dx dx + dy dy.
    const std::int64_t dx = ptTo.x - ptFrom.x;
    const std::int64_t dy = ptTo.y - ptFrom.y;
    const std::int64_t nLength2 = dx * dx + dy * dy;
    const std::int64_t nBand = RootBelow(std::int64_t{nWidth} * nWidth * nLength2) / 2;
    for (int y = rc.top; y < rc.bottom; ++y) {
        const std::int64_t v = y - ptFrom.y;
        Span span = Join(DiscRow(v, nWidth), DiscRow(v - dy, nWidth).Shift(dx));
        if (nLength2 > 0) {
            span = Join(span, Intersect(Solve(v * dx - nBand, dy, v * dx + nBand),
                                        Solve(-v * dy, dx, nLength2 - v * dy)));
        }
        span = Intersect(span.Shift(ptFrom.x), {rc.left, rc.right - 1});
        if (!span.IsEmpty()) {
            Pixel* const pRow = surface.GetRow(y);
            std::fill(pRow + span.nLeft, pRow + span.nRight + 1, pixel);
        }
    }
    return rc;
}
