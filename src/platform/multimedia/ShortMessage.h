#pragma once

#include "platform/base/Types.h"

#include <array>
#include <cstddef>

// The bytes of a short message: status, first and second data byte, from the low end.
inline std::array<unsigned char, 3> BytesOf(DWORD dwMessage) {
    return {static_cast<unsigned char>(dwMessage), static_cast<unsigned char>(dwMessage >> 8),
            static_cast<unsigned char>(dwMessage >> 16)};
}

// How many of its bytes a message really has. 0 for what is no message: a status without its top bit, or a
// data byte with one. Such a byte must not be masked either, which would make another message of it.
inline std::size_t ShortMessageLength(DWORD dwMessage) {
    constexpr unsigned char HIGHEST_DATA = 0x7F;
    const auto bytes = BytesOf(dwMessage);
    const int nClass = bytes[0] & 0xF0;
    if (nClass < 0x80) {
        return 0;
    }
    if (nClass == 0xF0) {
        // Of the system messages, those of one byte.
        return bytes[0] >= 0xF8 ? 1 : 0;
    }
    const bool bOne = nClass == 0xC0 || nClass == 0xD0;
    if (bytes[1] > HIGHEST_DATA || (!bOne && bytes[2] > HIGHEST_DATA)) {
        return 0;
    }
    return bOne ? 2 : 3;
}
