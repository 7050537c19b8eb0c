#pragma once

#include <cstdint>
#include <string>

// The plain types that the rest of the system is written in. Nothing here allocates or locks.

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

// Text is UTF-8 throughout.
using CString = std::string;

// A colour as 0x00BBGGRR: red in the low byte.
using COLORREF = std::uint32_t;

inline constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

constexpr COLORREF MakeColor(int nRed, int nGreen, int nBlue) {
    return static_cast<COLORREF>(nRed & 0xFF) | static_cast<COLORREF>(nGreen & 0xFF) << 8 |
           static_cast<COLORREF>(nBlue & 0xFF) << 16;
}
constexpr int GetRed(COLORREF clr) {
    return static_cast<int>(clr & 0xFF);
}
constexpr int GetGreen(COLORREF clr) {
    return static_cast<int>(clr >> 8 & 0xFF);
}
constexpr int GetBlue(COLORREF clr) {
    return static_cast<int>(clr >> 16 & 0xFF);
}

struct POINT {
    int x = 0;
    int y = 0;
};

// Pixels; the right and bottom edges lie outside.
struct RECT {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr bool IsEmpty() const { return right <= left || bottom <= top; }
    friend constexpr bool operator==(const RECT&, const RECT&) = default;
};

// True if the point is inside: left and top edges are inside, right and bottom edges outside.
constexpr bool PtInRect(const RECT& rc, POINT pt) {
    return pt.x >= rc.left && pt.x < rc.right && pt.y >= rc.top && pt.y < rc.bottom;
}
