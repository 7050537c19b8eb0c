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
    std::string info;
    if (picture.bOldHeader) {
        Put(info, 12, 4);
        Put(info, static_cast<std::uint32_t>(picture.nWidth), 2);
        Put(info, static_cast<std::uint32_t>(picture.nHeight), 2);
        Put(info, 1, 2);
        Put(info, static_cast<std::uint32_t>(picture.nBits), 2);
    } else {
        Put(info, 40, 4);
        Put(info, static_cast<std::uint32_t>(picture.nWidth), 4);
        Put(info, static_cast<std::uint32_t>(picture.nHeight), 4);
        Put(info, 1, 2);
        Put(info, static_cast<std::uint32_t>(picture.nBits), 2);
        Put(info, picture.compression, 4);
        Put(info, static_cast<std::uint32_t>(data.size()), 4);
        Put(info, 2835, 4);
        Put(info, 2835, 4);
        Put(info, static_cast<std::uint32_t>(picture.palette.size()), 4);
        Put(info, 0, 4);
    }
    for (const std::uint32_t mask : picture.masks) {
        Put(info, mask, 4);
    }
    for (const Rgb& rgb : picture.palette) {
        Put(info, rgb.blue, 1);
        Put(info, rgb.green, 1);
        Put(info, rgb.red, 1);
        Put(info, 0, picture.bOldHeader ? 0 : 1);
    }
    std::string file = "BM";
    Put(file, static_cast<std::uint32_t>(14 + info.size() + data.size()), 4);
    Put(file, 0, 4);
    Put(file, static_cast<std::uint32_t>(14 + info.size()), 4);
    return file + info + data;
}

std::string Pack(const Picture& picture, const std::function<std::uint32_t(int, int)>& value) {
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
    const Picture picture{.nWidth = nWidth, .nHeight = nHeight, .palette = {}, .masks = {}};
    return Encode(picture, Pack(picture, [&color](int x, int y) {
                      const Rgb rgb = color(x, y);
                      return std::uint32_t{rgb.red} << 16 | std::uint32_t{rgb.green} << 8 | rgb.blue;
                  }));
}

}  // namespace bmp
