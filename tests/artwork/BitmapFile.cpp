#include "artwork/BitmapFile.h"

#include <fstream>
#include <iterator>

BitmapFile ReadBitmap(const std::string& strName) {
    std::ifstream stream(std::string(FRETVANE_SOURCE_DIR) + "/data/" + strName, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto byteAt = [&](int n) {
        return static_cast<int>(static_cast<unsigned char>(bytes[static_cast<std::size_t>(n)]));
    };
    const auto wordAt = [&](int n) { return byteAt(n) | byteAt(n + 1) << 8; };
    const auto longAt = [&](int n) { return wordAt(n) | wordAt(n + 2) << 16; };

    constexpr int HEADERS = 54;
    if (bytes.size() < HEADERS || bytes[0] != 'B' || bytes[1] != 'M' || longAt(10) != HEADERS ||
        wordAt(28) != 24 || longAt(30) != 0) {
        return {};
    }
    BitmapFile bitmap{longAt(18), longAt(22), {}};
    const int nStride = (bitmap.nWidth * 3 + 3) / 4 * 4;
    const int nSize = HEADERS + nStride * bitmap.nHeight;
    if (std::ssize(bytes) != nSize || longAt(2) != nSize) {
        return {};
    }
    for (int y = bitmap.nHeight - 1; y >= 0; --y) {
        for (int x = 0; x < bitmap.nWidth; ++x) {
            const int n = HEADERS + y * nStride + x * 3;
            bitmap.pixels.push_back({byteAt(n + 2), byteAt(n + 1), byteAt(n)});
        }
    }
    return bitmap;
}
