#include "window/NeedleFade.h"

#include <algorithm>

namespace {

int FadeChannel(int nFrom, int nTo, float fPart) {
    const double dStep = static_cast<double>(nTo - nFrom) * static_cast<double>(fPart);
    return nFrom + static_cast<int>(dStep);
}

}  // namespace

COLORREF FadeNeedleColor(COLORREF clrNeedle, float fElapsed, float fHold, float fLength) {
    if (fElapsed < fHold) {
        return clrNeedle;
    }
    const double dRatio =
        (static_cast<double>(fElapsed) - static_cast<double>(fHold)) / static_cast<double>(fLength);
    const float fPart = std::min(static_cast<float>(dRatio), 1.0F);
    return MakeColor(FadeChannel(GetRed(clrNeedle), GetRed(CLR_FADED_NEEDLE), fPart),
                     FadeChannel(GetGreen(clrNeedle), GetGreen(CLR_FADED_NEEDLE), fPart),
                     FadeChannel(GetBlue(clrNeedle), GetBlue(CLR_FADED_NEEDLE), fPart));
}
