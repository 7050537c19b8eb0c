#include "artwork/Pictures.h"
#include "artwork/Raster.h"
#include "artwork/Typeface.h"

#include <QtGui/QLinearGradient>

// The logo in the window's top right corner: the mark and the name. Its colours are of middle lightness, so
// that they stand out from a light face and from a dark one; edges blend through the opacity picture.

namespace {

constexpr int LOGO_WIDTH = 121;
constexpr int LOGO_HEIGHT = 37;
constexpr double MARK_SIDE = 33.0;
constexpr double MARK_TOP = 2.0;
constexpr double NAME_LEFT = 38.0;
constexpr double NAME_CAP = 14.0;
constexpr double NAME_BASE = 26.0;

void PaintLogo(QPainter& painter) {
    painter.translate(0.0, MARK_TOP);
    PaintMark(painter, MARK_SIDE);
    painter.translate(0.0, -MARK_TOP);

    const QPainterPath name =
        TextOutline(QStringLiteral("Fretvane"), QFont::Bold, NAME_CAP).translated(NAME_LEFT, NAME_BASE);
    QLinearGradient gradient(0.0, NAME_BASE - NAME_CAP, 0.0, NAME_BASE);
    gradient.setColorAt(0.0, QColor(0x37, 0x7B, 0xD5));
    gradient.setColorAt(1.0, QColor(0x2C, 0x6E, 0xC8));
    painter.fillPath(name, gradient);
}

}  // namespace

Logo DrawLogo() {
    const QImage image = PaintClear(LOGO_WIDTH, LOGO_HEIGHT, PaintLogo);
    Logo logo{CPicture(LOGO_WIDTH, LOGO_HEIGHT), CPicture(LOGO_WIDTH, LOGO_HEIGHT)};
    for (int y = 0; y < LOGO_HEIGHT; ++y) {
        for (int x = 0; x < LOGO_WIDTH; ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto nClear = static_cast<std::uint8_t>(255 - qAlpha(pixel));
            logo.opacity.At(x, y) = {nClear, nClear, nClear};
            // Where nothing shows the colour still leaves a trace of 1/256: a middle grey keeps it unseen.
            logo.base.At(x, y) = qAlpha(pixel) == 0 ? Rgb{0x80, 0x80, 0x80}
                                                    : Rgb{static_cast<std::uint8_t>(qRed(pixel)),
                                                          static_cast<std::uint8_t>(qGreen(pixel)),
                                                          static_cast<std::uint8_t>(qBlue(pixel))};
        }
    }
    return logo;
}
