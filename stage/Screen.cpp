#include "stage/Screen.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QtGui/QImage>
#include <array>
#include <bit>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

// The words of the header of an X window dump that are needed here, by their place; all are big-endian.
enum DumpWord : std::size_t {
    HeaderSize = 0,
    Width = 4,
    Height = 5,
    BitsPerPixel = 11,
    BytesPerLine = 12,
    Colors = 19
};

std::uint32_t Word(const std::vector<char>& bytes, DumpWord word) {
    std::array<unsigned char, 4> raw{};
    std::memcpy(raw.data(), bytes.data() + static_cast<std::size_t>(word) * 4, 4);
    return std::uint32_t{raw[0]} << 24 | std::uint32_t{raw[1]} << 16 | std::uint32_t{raw[2]} << 8 | raw[3];
}

std::optional<Picture> FromImage(const QImage& image) {
    if (image.isNull()) {
        return std::nullopt;
    }
    Picture picture{image.width(), image.height(), {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            picture.pixels.push_back(image.pixel(x, y) & 0xFFFFFFU);
        }
    }
    return picture;
}

}  // namespace

Picture Crop(const Picture& picture, int x, int y, int nWidth, int nHeight) {
    Picture part{nWidth, nHeight, {}};
    for (int row = y; row < y + nHeight; ++row) {
        for (int column = x; column < x + nWidth; ++column) {
            part.pixels.push_back(picture.At(column, row));
        }
    }
    return part;
}

std::optional<Picture> LoadPicture(const std::filesystem::path& file) {
    return FromImage(QImage(QString::fromStdString(file.string())));
}

bool SavePng(const Picture& picture, const std::filesystem::path& file) {
    QImage image(picture.nWidth, picture.nHeight, QImage::Format_RGB32);
    for (int y = 0; y < picture.nHeight; ++y) {
        for (int x = 0; x < picture.nWidth; ++x) {
            image.setPixel(x, y, 0xFF000000U | picture.At(x, y));
        }
    }
    return image.save(QString::fromStdString(file.string()), "PNG");
}

bool CVirtualScreen::Start(int nWidth, int nHeight, int nDotsPerInch) {
    std::array<int, 2> pipeEnds{};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) {
        return false;
    }
    const std::string geometry = std::to_string(nWidth) + "x" + std::to_string(nHeight) + "x24";
    // Goes with whoever started it, also if that is killed; what is on the screen goes with it.
    const bool bStarted =
        m_server.Start({"setpriv", "--pdeathsig", "TERM", "Xvfb", "-displayfd", std::to_string(pipeEnds[1]),
                        "-screen", "0", geometry, "-dpi", "96", "-fbdir", m_directory.GetPath().string(),
                        "-nolisten", "tcp", "-noreset", "-nocursor"},
                       {}, m_directory.GetPath(), m_directory.GetPath() / "log", pipeEnds[1]);
    close(pipeEnds[1]);
    // The server writes its number once it takes connections.
    std::string number;
    char digit = 0;
    pollfd readable{pipeEnds[0], POLLIN, 0};
    while (bStarted && poll(&readable, 1, 10000) > 0 && read(pipeEnds[0], &digit, 1) == 1 && digit != '\n') {
        number += digit;
    }
    close(pipeEnds[0]);
    m_strDisplay = ":" + number;
    if (number.empty() || nDotsPerInch == 96) {
        return !number.empty();
    }
    return RunCommand({"xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER",
                       "Xft.dpi:\t" + std::to_string(nDotsPerInch) + "\n"},
                      {{"DISPLAY", m_strDisplay}})
        .has_value();
}

std::optional<Picture> CVirtualScreen::Grab() const {
    std::ifstream file(m_directory.GetPath() / "Xvfb_screen0", std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (bytes.size() < 100 || Word(bytes, BitsPerPixel) != 32) {
        return std::nullopt;
    }
    Picture picture{static_cast<int>(Word(bytes, Width)), static_cast<int>(Word(bytes, Height)), {}};
    const std::size_t nPixels =
        static_cast<std::size_t>(picture.nWidth) * static_cast<std::size_t>(picture.nHeight);
    const std::size_t nStart = Word(bytes, HeaderSize) + std::size_t{Word(bytes, Colors)} * 12;
    static_assert(std::endian::native == std::endian::little);
    if (Word(bytes, BytesPerLine) != Word(bytes, Width) * 4 || bytes.size() < nStart + nPixels * 4) {
        return std::nullopt;
    }
    picture.pixels.resize(nPixels);
    std::memcpy(picture.pixels.data(), bytes.data() + nStart, nPixels * 4);
    for (std::uint32_t& pixel : picture.pixels) {
        pixel &= 0xFFFFFFU;
    }
    return picture;
}
