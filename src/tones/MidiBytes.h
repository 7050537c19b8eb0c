#pragma once

#include "platform/base/Archive.h"
#include "platform/base/Types.h"

// The numbers of a Standard MIDI File. Failures of the file arrive as CFileException.

// What a quantity is that could not be read. A file that really holds it is refused all the same.
inline constexpr DWORD NO_QUANTITY = 65535;

// Reads a variable-length quantity of up to three bytes, seven bits in each, the most significant first; a
// byte with its top bit clear is the last. Gives the number of bytes taken; `nValue` is NO_QUANTITY when they
// ran out.
DWORD ReadVarLen(CArchive& archive, DWORD& nValue);
// Writes up to four bytes: the low 28 bits of the value.
void WriteVarLen(CArchive& archive, DWORD nValue);

// Big-endian numbers; false when there are fewer bytes.
bool ReadByte(CArchive& archive, BYTE& nValue);
bool ReadBigEndian(CArchive& archive, WORD& nValue);
bool ReadBigEndian(CArchive& archive, DWORD& nValue);
void WriteByte(CArchive& archive, BYTE nValue);
void WriteBigEndian(CArchive& archive, WORD nValue);
void WriteBigEndian(CArchive& archive, DWORD nValue);
