#pragma once

#include "stage/ChildProcess.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// A picture as 0x00RRGGBB, row by row.
struct Picture {
    int nWidth = 0;
    int nHeight = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t At(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(nWidth) +
                      static_cast<std::size_t>(x)];
    }
};

// A part of it, which must lie inside.
Picture Crop(const Picture& picture, int x, int y, int nWidth, int nHeight);
std::optional<Picture> LoadPicture(const std::filesystem::path& file);
bool SavePng(const Picture& picture, const std::filesystem::path& file);

// A virtual X server whose screen can be looked at. Its size defaults to that of the tuner's client area, so
// that without a window manager the screen is the window.
class CVirtualScreen {
public:
    // With the density told the way desktops tell it.
    bool Start(int nWidth = 500, int nHeight = 396, int nDotsPerInch = 96);
    // What DISPLAY has to be for a program that is to appear here.
    const std::string& GetDisplay() const { return m_strDisplay; }
    std::optional<Picture> Grab() const;

private:
    CTemporaryDirectory m_directory;
    std::string m_strDisplay;
    CChildProcess m_server;
};
