#include "artwork/Picture.h"

#include <fstream>
#include <string>

namespace {

constexpr std::uint32_t BMP_HEADER_SIZE = 14;
constexpr std::uint32_t BMP_INFO_SIZE = 40;
constexpr std::uint32_t BITS_PER_PIXEL = 24;
constexpr std::uint32_t PIXELS_PER_METRE = 3780;  // 96 dots an inch

// Little-endian, whatever the machine.
void Append(std::string& bytes, std::uint32_t nValue, int nBytes) {
    for (int i = 0; i < nBytes; ++i) {
        bytes.push_back(static_cast<char>(nValue >> (8 * i) & 0xFFU));
    }
}

}  // namespace

bool CPicture::SaveBmp(const std::filesystem::path& file) const {
    const auto nWidth = static_cast<std::uint32_t>(m_nWidth);
    const auto nHeight = static_cast<std::uint32_t>(m_nHeight);
    const std::uint32_t nStride = (nWidth * 3 + 3) / 4 * 4;
    const std::uint32_t nOffset = BMP_HEADER_SIZE + BMP_INFO_SIZE;

    std::string bytes = "BM";
    Append(bytes, nOffset + nStride * nHeight, 4);
    Append(bytes, 0, 4);
    Append(bytes, nOffset, 4);
    Append(bytes, BMP_INFO_SIZE, 4);
    Append(bytes, nWidth, 4);
    Append(bytes, nHeight, 4);  // positive: the rows go from the bottom up
    Append(bytes, 1, 2);
    Append(bytes, BITS_PER_PIXEL, 2);
    Append(bytes, 0, 4);
    Append(bytes, nStride * nHeight, 4);
    Append(bytes, PIXELS_PER_METRE, 4);
    Append(bytes, PIXELS_PER_METRE, 4);
    Append(bytes, 0, 4);
    Append(bytes, 0, 4);
    for (int y = m_nHeight - 1; y >= 0; --y) {
        for (int x = 0; x < m_nWidth; ++x) {
            const Rgb& pixel = At(x, y);
            Append(bytes, pixel.blue, 1);
            Append(bytes, pixel.green, 1);
            Append(bytes, pixel.red, 1);
        }
        bytes.append(nStride - nWidth * 3, '\0');
    }

    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return stream.good();
}
