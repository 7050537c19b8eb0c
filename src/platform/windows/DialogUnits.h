#pragma once

#include "platform/base/Types.h"

class QFont;

// Dialog units of a font, in pixels: horizontally a quarter of the average character width, vertically an
// eighth of the height. For the .cpp files of this directory only.
class CDialogUnits {
public:
    explicit CDialogUnits(const QFont& font);

    int X(int nUnits) const;
    int Y(int nUnits) const;
    // The same without rounding, for distances that add up.
    double ExactX(int nUnits) const;
    RECT Rect(int x, int y, int cx, int cy) const { return {X(x), Y(y), X(x + cx), Y(y + cy)}; }

private:
    double m_dWidth;
    int m_nWidth;
    int m_nHeight;
};
