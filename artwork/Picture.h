#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

struct Rgb {
    std::uint8_t red = 255;
    std::uint8_t green = 255;
    std::uint8_t blue = 255;
    friend constexpr bool operator==(const Rgb&, const Rgb&) = default;
};

// A finished picture, row by row from the top. It starts white.
class CPicture {
public:
    CPicture(int nWidth, int nHeight)
        : m_nWidth(nWidth),
          m_nHeight(nHeight),
          m_pixels(static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight)) {}

    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }
    Rgb& At(int x, int y) { return m_pixels[Index(x, y)]; }
    const Rgb& At(int x, int y) const { return m_pixels[Index(x, y)]; }

    // Writes a BMP file of 24 bits a pixel, whose bytes depend on nothing but size and pixels. False if the
    // file can't be written.
    bool SaveBmp(const std::filesystem::path& file) const;

private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(x);
    }

    int m_nWidth;
    int m_nHeight;
    std::vector<Rgb> m_pixels;
};
