#include "platform/drawing/BitmapWriter.h"

namespace bmp {

namespace {

void Put(std::string& out, std::uint32_t n, int nBytes) {
    for (int i = 0; i < nBytes; ++i) {
        out.push_back(static_cast<char>(n >> 8 * i & 0xFF));
    }
}

}  // namespace

std::string Encode(const Picture& picture, const std::string& data) {
    const auto nWidth = static_cast<std::uint32_t>(picture.nWidth);
    const auto nHeight = static_cast<std::uint32_t>(picture.nHeight);
    const int nSizeBytes = picture.bOldHeader ? 2 : 4;
    std::string info;
    Put(info, picture.bOldHeader ? 12 : 40, 4);
    Put(info, nWidth, nSizeBytes);
    Put(info, nHeight, nSizeBytes);
    Put(info, 1, 2);
    Put(info, static_cast<std::uint32_t>(picture.nBits), 2);
    if (!picture.bOldHeader) {
        const auto nColors = static_cast<std::uint32_t>(picture.palette.size());
        for (const std::uint32_t n :
             {picture.compression, static_cast<std::uint32_t>(data.size()), 2835U, 2835U, nColors, 0U}) {
            Put(info, n, 4);
        }
    }
    for (const std::uint32_t mask : picture.masks) {
        Put(info, mask, 4);
    }
    for (const Rgb& rgb : picture.palette) {
        Put(info, Packed(rgb), picture.bOldHeader ? 3 : 4);
    }
    std::string file = "BM";
    Put(file, static_cast<std::uint32_t>(14 + info.size() + data.size()), 4);
    Put(file, 0, 4);
    Put(file, static_cast<std::uint32_t>(14 + info.size()), 4);
    return file + info + data;
}

std::string Pack(const Picture& picture, const Values& value) {
    const int nRows = std::abs(picture.nHeight);
    std::string data;
    for (int i = 0; i < nRows; ++i) {
        const int y = picture.nHeight < 0 ? i : nRows - 1 - i;
        std::string row;
        std::uint32_t pending = 0;
        int nPending = 0;
        for (int x = 0; x < picture.nWidth; ++x) {
            if (picture.nBits >= 8) {
                Put(row, value(x, y), picture.nBits / 8);
                continue;
            }
            pending = pending << picture.nBits | value(x, y);
            nPending += picture.nBits;
            if (nPending == 8 || x == picture.nWidth - 1) {
                Put(row, pending << (8 - nPending), 1);
                pending = 0;
                nPending = 0;
            }
        }
        row.resize((row.size() + 3) / 4 * 4, '\0');
        data += row;
    }
    return data;
}

std::string Encode24(int nWidth, int nHeight, const std::function<Rgb(int, int)>& color) {
    const Picture picture{.nWidth = nWidth, .nHeight = nHeight};
    return Encode(picture, Pack(picture, [&color](int x, int y) { return Packed(color(x, y)); }));
}

}  // namespace bmp
