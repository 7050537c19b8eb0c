#include "tones/MidiBytes.h"

#include <array>
#include <cstddef>

namespace {

constexpr DWORD LONGEST_READ = 3;
constexpr int LONGEST_WRITTEN = 4;
constexpr BYTE MORE_FOLLOWS = 0x80;
constexpr BYTE SEVEN_BITS = 0x7F;

template <class Number>
bool ReadNumber(CArchive& archive, Number& nValue) {
    std::array<BYTE, sizeof(Number)> bytes{};
    if (archive.Read(bytes.data(), bytes.size()) != bytes.size()) {
        return false;
    }
    DWORD nRead = 0;
    for (const BYTE nByte : bytes) {
        nRead = nRead << 8 | nByte;
    }
    nValue = static_cast<Number>(nRead);
    return true;
}

template <class Number>
void WriteNumber(CArchive& archive, Number nValue) {
    std::array<BYTE, sizeof(Number)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<BYTE>(nValue >> 8 * (bytes.size() - 1 - i));
    }
    archive.Write(bytes.data(), bytes.size());
}

}  // namespace

DWORD ReadVarLen(CArchive& archive, DWORD& nValue) {
    nValue = 0;
    for (DWORD nTaken = 1;; ++nTaken) {
        BYTE nByte = 0;
        if (!ReadByte(archive, nByte)) {
            nValue = NO_QUANTITY;
            return nTaken - 1;
        }
        nValue = nValue << 7 | (nByte & SEVEN_BITS);
        if ((nByte & MORE_FOLLOWS) == 0 || nTaken == LONGEST_READ) {
            return nTaken;
        }
    }
}

void WriteVarLen(CArchive& archive, DWORD nValue) {
    bool bStarted = false;
    for (int nGroup = LONGEST_WRITTEN - 1; nGroup >= 0; --nGroup) {
        const auto nBits = static_cast<BYTE>(nValue >> 7 * nGroup & SEVEN_BITS);
        bStarted = bStarted || nBits != 0 || nGroup == 0;
        if (bStarted) {
            WriteByte(archive, nGroup == 0 ? nBits : static_cast<BYTE>(nBits | MORE_FOLLOWS));
        }
    }
}

bool ReadByte(CArchive& archive, BYTE& nValue) {
    return archive.Read(&nValue, 1) == 1;
}

bool ReadBigEndian(CArchive& archive, WORD& nValue) {
    return ReadNumber(archive, nValue);
}

bool ReadBigEndian(CArchive& archive, DWORD& nValue) {
    return ReadNumber(archive, nValue);
}

void WriteByte(CArchive& archive, BYTE nValue) {
    archive.Write(&nValue, 1);
}

void WriteBigEndian(CArchive& archive, WORD nValue) {
    WriteNumber(archive, nValue);
}

void WriteBigEndian(CArchive& archive, DWORD nValue) {
    WriteNumber(archive, nValue);
}
