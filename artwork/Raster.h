#pragma once

#include "artwork/Picture.h"

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <functional>

// How shapes become pixels: everything is worked out on a grid of SAMPLES by SAMPLES points in each pixel and
// averaged, so that edges come out smooth and the same on every run.
inline constexpr int SAMPLES = 8;

// Light of each channel, 0 to 1.
struct Tone {
    double dRed = 1.0;
    double dGreen = 1.0;
    double dBlue = 1.0;
};
constexpr Tone Grey(double dLight) {
    return {dLight, dLight, dLight};
}
Tone Mix(const Tone& from, const Tone& to, double dPart);
std::uint8_t ToByte(double dLight);

// A plane of numbers, SAMPLES times as wide and high as the picture that it belongs to. It starts at 0.
class CField {
public:
    CField(int nWidth, int nHeight)
        : m_nWidth(nWidth * SAMPLES),
          m_nHeight(nHeight * SAMPLES),
          m_values(static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight)) {}

    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    double& At(int x, int y) { return m_values[Index(x, y)]; }
    double At(int x, int y) const { return m_values[Index(x, y)]; }
    // The value nearest to a point that may lie outside.
    double Near(int x, int y) const;
    // The mean over the samples of one pixel.
    double Mean(int xPixel, int yPixel) const;

private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(x);
    }

    int m_nWidth;
    int m_nHeight;
    std::vector<double> m_values;
};

// How much of each sample a shape covers, 0 to 1. The path's unit is one pixel.
CField Cover(const QPainterPath& path, int nWidth, int nHeight);

// The distance in pixels from each covered sample to the nearest sample that isn't; 0 outside the shape.
CField DistanceInside(const CField& cover);

// Blurs by two passes of a box of 2 * nRadius + 1 samples.
void Blur(CField& field, int nRadius);

// A picture of what paint draws on a ground of one colour; the painter's unit is one pixel.
CPicture Paint(int nWidth, int nHeight, const QColor& ground, const std::function<void(QPainter&)>& paint);

// The same on a clear ground: straight (not premultiplied) colour and opacity.
QImage PaintClear(int nWidth, int nHeight, const std::function<void(QPainter&)>& paint);

// A picture whose light is told for each point (x, y), in pixels from the top left corner.
CPicture Shade(int nWidth, int nHeight, const std::function<Tone(double, double)>& tone);
