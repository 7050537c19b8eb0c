#include "platform/drawing/Bitmap.h"

#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QImageReader>
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <optional>

namespace {

constexpr int FILE_HEADER_SIZE = 14;
constexpr int OLD_INFO_SIZE = 12;
constexpr int INFO_SIZE = 40;
constexpr int MASKS_AT = FILE_HEADER_SIZE + INFO_SIZE;
constexpr int WITH_MASKS = MASKS_AT + 3 * 4;

constexpr std::uint32_t PLAIN = 0;
constexpr std::uint32_t BIT_FIELDS = 3;

using ChannelMasks = std::array<std::uint32_t, 3>;  // red, green, blue

// What the reader does not check or tell.
struct Header {
    int nWidth;
    int nHeight;
    std::int64_t nBytesNeeded;          // of the whole file
    std::optional<ChannelMasks> masks;  // of a picture of 16 bits
};

using HeaderBytes = std::array<char, WITH_MASKS>;

// A number of up to four bytes, the lowest first.
std::uint32_t FieldAt(const HeaderBytes& bytes, std::size_t nOffset, std::size_t nBytes) {
    std::uint32_t n = 0;
    for (std::size_t i = nBytes; i-- > 0;) {
        n = n << 8 | static_cast<std::uint8_t>(bytes[nOffset + i]);
    }
    return n;
}

std::optional<Header> ReadHeader(QFile& file) {
    HeaderBytes bytes{};
    const qint64 nRead = file.peek(bytes.data(), static_cast<qint64>(bytes.size()));
    if (nRead < FILE_HEADER_SIZE + OLD_INFO_SIZE || bytes[0] != 'B' || bytes[1] != 'M') {
        return std::nullopt;
    }
    const auto nOffset = FieldAt(bytes, 10, 4);
    const auto nInfoSize = FieldAt(bytes, 14, 4);
    const bool bOld = nInfoSize == OLD_INFO_SIZE;
    if (nOffset < std::uint64_t{nInfoSize} + FILE_HEADER_SIZE ||
        (!bOld && (nInfoSize < INFO_SIZE || nRead < MASKS_AT))) {
        return std::nullopt;
    }
    const auto nWidth = static_cast<std::int32_t>(FieldAt(bytes, 18, bOld ? 2 : 4));
    const auto nRows = static_cast<std::int32_t>(bOld ? FieldAt(bytes, 20, 2) : FieldAt(bytes, 22, 4));
    const std::int64_t nHeight = std::abs(std::int64_t{nRows});
    const std::int64_t nBits = FieldAt(bytes, bOld ? 24 : 28, 2);
    const std::uint32_t nCompression = bOld ? PLAIN : FieldAt(bytes, 30, 4);
    if (nWidth < 1 || nHeight < 1 || nWidth * nHeight > CSurface::s_nMaxPixels || nBits > 32) {
        return std::nullopt;
    }
    const bool bRunLength = nCompression != PLAIN && nCompression != BIT_FIELDS;
    const std::int64_t nData =
        bRunLength ? std::int64_t{FieldAt(bytes, 34, 4)} : (nWidth * nBits + 31) / 32 * 4 * nHeight;

    Header header{nWidth, static_cast<int>(nHeight), nOffset + nData, std::nullopt};
    if (nBits == 16) {
        header.masks = ChannelMasks{0x7C00, 0x03E0, 0x001F};
        if (nCompression == BIT_FIELDS) {
            if (nRead < WITH_MASKS) {
                return std::nullopt;
            }
            header.masks = ChannelMasks{FieldAt(bytes, MASKS_AT, 4), FieldAt(bytes, MASKS_AT + 4, 4),
                                        FieldAt(bytes, MASKS_AT + 8, 4)};
        }
    }
    return header;
}

// The reader leaves the low bits of a short channel 0. Repeating its high bits there makes full brightness
// 255.
Pixel Stretch(Pixel pixel, const ChannelMasks& masks) {
    Pixel result = PIXEL_BLACK;
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
                           [&masks](QRgb rgb) { return masks ? Stretch(rgb, *masks) : PIXEL_BLACK | rgb; });
        }
        return true;
    } catch (const std::exception&) {
        DeleteObject();
        return false;
    }
}
