#pragma once

#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"

#include <cstddef>
#include <random>
#include <vector>

// A memory context with its bitmap, for the tests.
struct MemoryDc {
    MemoryDc(int cx, int cy, bool bMonochrome = false) {
        dc.CreateCompatibleDC(nullptr);
        if (bMonochrome) {
            bitmap.CreateBitmap(cx, cy, 1, 1, nullptr);
        } else {
            bitmap.CreateCompatibleBitmap(&dc, cx, cy);
        }
        dc.SelectObject(&bitmap);
    }

    CDC dc;
    CBitmap bitmap;
};

// All pixels as colours, row by row.
inline std::vector<COLORREF> ReadAll(const CDC& dc, SIZE size) {
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            pixels.push_back(dc.GetPixel(x, y));
        }
    }
    return pixels;
}

// The same numbers in every run.
inline std::mt19937 Random(unsigned nSeed) {
    return std::mt19937(nSeed);
}

// One of few colours, so that two random ones are often equal.
inline COLORREF RandomColor(std::mt19937& random) {
    static constexpr COLORREF s_palette[] = {0x000000, 0xFFFFFF, 0x123456, 0x0000FF, 0xA0A0A0, 0xF0E1D2};
    return s_palette[random() % std::size(s_palette)];
}

// Where a pixel stands in such a list.
inline std::size_t IndexOf(int x, int y, int cx) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(cx) + static_cast<std::size_t>(x);
}

inline int RandomInt(std::mt19937& random, int nLow, int nHigh) {
    return std::uniform_int_distribution<int>(nLow, nHigh)(random);
}

inline void Scribble(CDC& dc, SIZE size, std::mt19937& random) {
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            dc.SetPixel(x, y, RandomColor(random));
        }
    }
}
