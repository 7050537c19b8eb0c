#include "artwork/Raster.h"

#include <algorithm>
#include <cmath>

Tone Mix(const Tone& from, const Tone& to, double dPart) {
    return {from.dRed + (to.dRed - from.dRed) * dPart, from.dGreen + (to.dGreen - from.dGreen) * dPart,
            from.dBlue + (to.dBlue - from.dBlue) * dPart};
}

std::uint8_t ToByte(double dLight) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(dLight, 0.0, 1.0) * 255.0));
}

double CField::Near(int x, int y) const {
    return At(std::clamp(x, 0, m_nWidth - 1), std::clamp(y, 0, m_nHeight - 1));
}

double CField::Mean(int xPixel, int yPixel) const {
    double dSum = 0.0;
    for (int y = yPixel * SAMPLES; y < (yPixel + 1) * SAMPLES; ++y) {
        for (int x = xPixel * SAMPLES; x < (xPixel + 1) * SAMPLES; ++x) {
            dSum += At(x, y);
        }
    }
    return dSum / (SAMPLES * SAMPLES);
}

CField Cover(const QPainterPath& path, int nWidth, int nHeight) {
    CField field(nWidth, nHeight);
    QImage image(field.GetWidth(), field.GetHeight(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(SAMPLES, SAMPLES);
    painter.fillPath(path, Qt::black);
    painter.end();
    for (int y = 0; y < field.GetHeight(); ++y) {
        for (int x = 0; x < field.GetWidth(); ++x) {
            field.At(x, y) = (255 - qBlue(image.pixel(x, y))) / 255.0;
        }
    }
    return field;
}

CField DistanceInside(const CField& cover) {
    // Down each column the distance to the nearest free sample, then along each row the least of
    // dx^2 + dy^2. Strokes are thin, so the search along the row ends soon.
    const int nWidth = cover.GetWidth();
    const int nHeight = cover.GetHeight();
    CField down(nWidth / SAMPLES, nHeight / SAMPLES);
    for (int x = 0; x < nWidth; ++x) {
        const auto isFree = [&](int y) { return cover.At(x, y) < 0.5; };
        double dRun = nHeight;
        for (int y = 0; y < nHeight; ++y) {
            dRun = isFree(y) ? 0.0 : dRun + 1.0;
            down.At(x, y) = dRun;
        }
        dRun = nHeight;
        for (int y = nHeight - 1; y >= 0; --y) {
            dRun = isFree(y) ? 0.0 : dRun + 1.0;
            down.At(x, y) = std::min(down.At(x, y), dRun);
        }
    }
    CField distance(nWidth / SAMPLES, nHeight / SAMPLES);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            double dBest = down.At(x, y) * down.At(x, y);
            for (int dx = 1; dx * dx < dBest; ++dx) {
                for (const int xOther : {x - dx, x + dx}) {
                    if (xOther >= 0 && xOther < nWidth) {
                        dBest = std::min(dBest, dx * dx + down.At(xOther, y) * down.At(xOther, y));
                    }
                }
            }
            distance.At(x, y) = std::sqrt(dBest) / SAMPLES;
        }
    }
    return distance;
}

void Blur(CField& field, int nRadius) {
    const double dSize = 2 * nRadius + 1;
    for (int nPass = 0; nPass < 2; ++nPass) {
        CField across = field;
        for (int y = 0; y < field.GetHeight(); ++y) {
            for (int x = 0; x < field.GetWidth(); ++x) {
                double dSum = 0.0;
                for (int d = -nRadius; d <= nRadius; ++d) {
                    dSum += field.Near(x + d, y);
                }
                across.At(x, y) = dSum / dSize;
            }
        }
        for (int y = 0; y < field.GetHeight(); ++y) {
            for (int x = 0; x < field.GetWidth(); ++x) {
                double dSum = 0.0;
                for (int d = -nRadius; d <= nRadius; ++d) {
                    dSum += across.Near(x, y + d);
                }
                field.At(x, y) = dSum / dSize;
            }
        }
    }
}

namespace {

QImage PaintSamples(int nWidth, int nHeight, const QColor& ground,
                    const std::function<void(QPainter&)>& paint) {
    QImage image(nWidth * SAMPLES, nHeight * SAMPLES, QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(SAMPLES, SAMPLES);
    painter.setPen(Qt::NoPen);
    paint(painter);
    painter.end();
    return image;
}

struct Sums {
    double dRed = 0.0;
    double dGreen = 0.0;
    double dBlue = 0.0;
    double dAlpha = 0.0;
};

// The means of premultiplied colour and of opacity over one pixel, 0 to 255.
Sums MeanOfPixel(const QImage& image, int xPixel, int yPixel) {
    Sums sums;
    for (int y = yPixel * SAMPLES; y < (yPixel + 1) * SAMPLES; ++y) {
        const auto* const pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = xPixel * SAMPLES; x < (xPixel + 1) * SAMPLES; ++x) {
            sums.dRed += qRed(pRow[x]);
            sums.dGreen += qGreen(pRow[x]);
            sums.dBlue += qBlue(pRow[x]);
            sums.dAlpha += qAlpha(pRow[x]);
        }
    }
    constexpr double COUNT = SAMPLES * SAMPLES;
    return {sums.dRed / COUNT, sums.dGreen / COUNT, sums.dBlue / COUNT, sums.dAlpha / COUNT};
}

}  // namespace

CPicture Paint(int nWidth, int nHeight, const QColor& ground, const std::function<void(QPainter&)>& paint) {
    const QImage image = PaintSamples(nWidth, nHeight, ground, paint);
    CPicture picture(nWidth, nHeight);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            const Sums mean = MeanOfPixel(image, x, y);
            picture.At(x, y) = {ToByte(mean.dRed / 255.0), ToByte(mean.dGreen / 255.0),
                                ToByte(mean.dBlue / 255.0)};
        }
    }
    return picture;
}

QImage PaintClear(int nWidth, int nHeight, const std::function<void(QPainter&)>& paint) {
    const QImage image = PaintSamples(nWidth, nHeight, Qt::transparent, paint);
    QImage clear(nWidth, nHeight, QImage::Format_ARGB32);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            const Sums mean = MeanOfPixel(image, x, y);
            const double dScale = mean.dAlpha > 0.0 ? 1.0 / mean.dAlpha : 0.0;
            clear.setPixel(x, y,
                           qRgba(ToByte(mean.dRed * dScale), ToByte(mean.dGreen * dScale),
                                 ToByte(mean.dBlue * dScale), ToByte(mean.dAlpha / 255.0)));
        }
    }
    return clear;
}

CPicture Shade(int nWidth, int nHeight, const std::function<Tone(double, double)>& tone) {
    CPicture picture(nWidth, nHeight);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            Tone sum = Grey(0.0);
            for (int i = 0; i < SAMPLES * SAMPLES; ++i) {
                const int nColumn = i % SAMPLES;
                const int nRow = i / SAMPLES;
                const Tone sample = tone(x + (nColumn + 0.5) / SAMPLES, y + (nRow + 0.5) / SAMPLES);
                sum.dRed += sample.dRed;
                sum.dGreen += sample.dGreen;
                sum.dBlue += sample.dBlue;
            }
            constexpr double COUNT = SAMPLES * SAMPLES;
            picture.At(x, y) = {ToByte(sum.dRed / COUNT), ToByte(sum.dGreen / COUNT),
                                ToByte(sum.dBlue / COUNT)};
        }
    }
    return picture;
}
