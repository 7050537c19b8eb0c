#include "platform/drawing/Bitmap.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QtEndian>
#include <QtGui/QImage>
#include <QtGui/QImageReader>
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <optional>

namespace {

constexpr int g_nFileHeaderSize = 14;
constexpr int g_nOldInfoSize = 12;
constexpr int g_nInfoSize = 40;
constexpr int g_nMasksAt = g_nFileHeaderSize + g_nInfoSize;
constexpr int g_nWithMasks = g_nMasksAt + 3 * 4;

constexpr std::uint32_t g_nPlain = 0;
constexpr std::uint32_t g_nBitFields = 3;

using ChannelMasks = std::array<std::uint32_t, 3>;  // red, green, blue

// What the reader does not check or tell.
struct Header {
    int nWidth;
    int nHeight;
    std::int64_t nBytesNeeded;          // of the whole file
    std::optional<ChannelMasks> masks;  // of a picture of 16 bits
};

template <class T>
T FieldAt(const QByteArray& bytes, int nOffset) {
    return qFromLittleEndian<T>(bytes.constData() + nOffset);
}

std::optional<Header> ReadHeader(QFile& file) {
    const QByteArray bytes = file.peek(g_nWithMasks);
    if (bytes.size() < g_nFileHeaderSize + g_nOldInfoSize || !bytes.startsWith("BM")) {
        return std::nullopt;
    }
    const auto nOffset = FieldAt<std::uint32_t>(bytes, 10);
    const auto nInfoSize = FieldAt<std::uint32_t>(bytes, 14);
    const bool bOld = nInfoSize == g_nOldInfoSize;
    if (nOffset < std::uint64_t{nInfoSize} + g_nFileHeaderSize ||
        (!bOld && (nInfoSize < g_nInfoSize || bytes.size() < g_nMasksAt))) {
        return std::nullopt;
    }
    const std::int64_t nWidth = bOld ? FieldAt<std::uint16_t>(bytes, 18) : FieldAt<std::int32_t>(bytes, 18);
    const std::int64_t nRows = bOld ? FieldAt<std::uint16_t>(bytes, 20) : FieldAt<std::int32_t>(bytes, 22);
    const std::int64_t nHeight = std::abs(nRows);
    const std::int64_t nBits = FieldAt<std::uint16_t>(bytes, bOld ? 24 : 28);
    const auto nCompression = bOld ? g_nPlain : FieldAt<std::uint32_t>(bytes, 30);
    if (nWidth < 1 || nHeight < 1 || nWidth * nHeight > CSurface::s_nMaxPixels || nBits > 32) {
        return std::nullopt;
    }
    const bool bRunLength = nCompression != g_nPlain && nCompression != g_nBitFields;
    const std::int64_t nData =
        bRunLength ? FieldAt<std::uint32_t>(bytes, 34) : (nWidth * nBits + 31) / 32 * 4 * nHeight;

    Header header{static_cast<int>(nWidth), static_cast<int>(nHeight), nOffset + nData, std::nullopt};
    if (nBits == 16) {
        header.masks = ChannelMasks{0x7C00, 0x03E0, 0x001F};
        if (nCompression == g_nBitFields) {
            if (bytes.size() < g_nWithMasks) {
                return std::nullopt;
            }
            header.masks = ChannelMasks{FieldAt<std::uint32_t>(bytes, g_nMasksAt),
                                        FieldAt<std::uint32_t>(bytes, g_nMasksAt + 4),
                                        FieldAt<std::uint32_t>(bytes, g_nMasksAt + 8)};
        }
    }
    return header;
}

// The reader leaves the low bits of a short channel 0. Repeating its high bits there makes full brightness
// 255.
Pixel Stretch(Pixel pixel, const ChannelMasks& masks) {
    Pixel result = g_pixelBlack;
    for (int i = 0; i < 3; ++i) {
        const int nShift = 16 - 8 * i;
        const int nBits = std::clamp(std::popcount(masks[static_cast<std::size_t>(i)]), 4, 8);
        const Pixel channel = pixel >> nShift & 0xFF;
        result |= (channel | channel >> nBits) << nShift;
    }
    return result;
}

QImage ReadPicture(const CString& strFile, std::optional<ChannelMasks>& masks) {
    QFile file(QString::fromStdString(strFile));
    if (strFile.empty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const std::optional<Header> header = ReadHeader(file);
    if (!header || file.size() < header->nBytesNeeded) {
        return {};
    }
    masks = header->masks;
    QImageReader reader(&file, "bmp");
    reader.setAutoDetectImageFormat(false);
    // Read into a cleared picture: runs may leave pixels out, and those would stay as the memory was.
    QImage image(header->nWidth, header->nHeight, reader.imageFormat());
    if (image.isNull()) {
        return {};
    }
    image.fill(0);
    if (!reader.read(&image)) {
        return {};
    }
    return image.convertToFormat(QImage::Format_RGB32);
}

}  // namespace

bool CBitmap::LoadFile(const CString& strFile) {
    DeleteObject();
    try {
        std::optional<ChannelMasks> masks;
        const QImage image = ReadPicture(strFile, masks);
        if (image.isNull() || !m_surface.Create(image.width(), image.height(), false)) {
            return false;
        }
        for (int y = 0; y < image.height(); ++y) {
            const auto* const pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            std::transform(pRow, pRow + image.width(), m_surface.GetRow(y),
                           [&masks](QRgb rgb) { return masks ? Stretch(rgb, *masks) : g_pixelBlack | rgb; });
        }
        return true;
    } catch (const std::exception&) {
        DeleteObject();
        return false;
    }
}
