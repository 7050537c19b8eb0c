#include "artwork/Raster.h"

#include <algorithm>
#include <cmath>
#include <limits>

Tone Mix(const Tone& from, const Tone& to, double fPart) {
    return {from.fRed + (to.fRed - from.fRed) * fPart, from.fGreen + (to.fGreen - from.fGreen) * fPart,
            from.fBlue + (to.fBlue - from.fBlue) * fPart};
}

std::uint8_t ToByte(double fLight) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(fLight, 0.0, 1.0) * 255.0));
}

double CField::Near(int x, int y) const {
    return At(std::clamp(x, 0, m_nWidth - 1), std::clamp(y, 0, m_nHeight - 1));
}

double CField::Mean(int xPixel, int yPixel) const {
    double fSum = 0.0;
    for (int y = yPixel * SAMPLES; y < (yPixel + 1) * SAMPLES; ++y) {
        for (int x = xPixel * SAMPLES; x < (xPixel + 1) * SAMPLES; ++x) {
            fSum += At(x, y);
        }
    }
    return fSum / (SAMPLES * SAMPLES);
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
        double fRun = nHeight;
        for (int y = 0; y < nHeight; ++y) {
            fRun = isFree(y) ? 0.0 : fRun + 1.0;
            down.At(x, y) = fRun;
        }
        fRun = nHeight;
        for (int y = nHeight - 1; y >= 0; --y) {
            fRun = isFree(y) ? 0.0 : fRun + 1.0;
            down.At(x, y) = std::min(down.At(x, y), fRun);
        }
    }
    CField distance(nWidth / SAMPLES, nHeight / SAMPLES);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            double fBest = down.At(x, y) * down.At(x, y);
            for (int dx = 1; dx * dx < fBest; ++dx) {
                for (const int xOther : {x - dx, x + dx}) {
                    if (xOther >= 0 && xOther < nWidth) {
                        fBest = std::min(fBest, dx * dx + down.At(xOther, y) * down.At(xOther, y));
                    }
                }
            }
            distance.At(x, y) = std::sqrt(fBest) / SAMPLES;
        }
    }
    return distance;
}

void Blur(CField& field, int nRadius) {
    const double fSize = 2 * nRadius + 1;
    for (int nPass = 0; nPass < 2; ++nPass) {
        CField across = field;
        for (int y = 0; y < field.GetHeight(); ++y) {
            for (int x = 0; x < field.GetWidth(); ++x) {
                double fSum = 0.0;
                for (int d = -nRadius; d <= nRadius; ++d) {
                    fSum += field.Near(x + d, y);
                }
                across.At(x, y) = fSum / fSize;
            }
        }
        for (int y = 0; y < field.GetHeight(); ++y) {
            for (int x = 0; x < field.GetWidth(); ++x) {
                double fSum = 0.0;
                for (int d = -nRadius; d <= nRadius; ++d) {
                    fSum += across.Near(x, y + d);
                }
                field.At(x, y) = fSum / fSize;
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
    double fRed = 0.0;
    double fGreen = 0.0;
    double fBlue = 0.0;
    double fAlpha = 0.0;
};

// The means of premultiplied colour and of opacity over one pixel, 0 to 255.
Sums MeanOfPixel(const QImage& image, int xPixel, int yPixel) {
    Sums sums;
    for (int y = yPixel * SAMPLES; y < (yPixel + 1) * SAMPLES; ++y) {
        const auto* const pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = xPixel * SAMPLES; x < (xPixel + 1) * SAMPLES; ++x) {
            sums.fRed += qRed(pRow[x]);
            sums.fGreen += qGreen(pRow[x]);
            sums.fBlue += qBlue(pRow[x]);
            sums.fAlpha += qAlpha(pRow[x]);
        }
    }
    constexpr double COUNT = SAMPLES * SAMPLES;
    return {sums.fRed / COUNT, sums.fGreen / COUNT, sums.fBlue / COUNT, sums.fAlpha / COUNT};
}

}  // namespace

CPicture Paint(int nWidth, int nHeight, const QColor& ground, const std::function<void(QPainter&)>& paint) {
    const QImage image = PaintSamples(nWidth, nHeight, ground, paint);
    CPicture picture(nWidth, nHeight);
    for (int y = 0; y < nHeight; ++y) {
        for (int x = 0; x < nWidth; ++x) {
            const Sums mean = MeanOfPixel(image, x, y);
            picture.At(x, y) = {ToByte(mean.fRed / 255.0), ToByte(mean.fGreen / 255.0),
                                ToByte(mean.fBlue / 255.0)};
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
            const double fScale = mean.fAlpha > 0.0 ? 1.0 / mean.fAlpha : 0.0;
            clear.setPixel(x, y,
                           qRgba(ToByte(mean.fRed * fScale), ToByte(mean.fGreen * fScale),
                                 ToByte(mean.fBlue * fScale), ToByte(mean.fAlpha / 255.0)));
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
                sum.fRed += sample.fRed;
                sum.fGreen += sample.fGreen;
                sum.fBlue += sample.fBlue;
            }
            constexpr double COUNT = SAMPLES * SAMPLES;
            picture.At(x, y) = {ToByte(sum.fRed / COUNT), ToByte(sum.fGreen / COUNT),
                                ToByte(sum.fBlue / COUNT)};
        }
    }
    return picture;
}
