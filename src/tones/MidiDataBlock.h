#pragma once

#include "platform/base/Archive.h"
#include "platform/base/Types.h"

#include <memory>

// A length and as many bytes, as meta and system exclusive events carry them. A length takes three bytes, so
// that a block never has more than 2 MiB, whatever a file claims. Failures of the file arrive as
// CFileException.

// False when the bytes ran out: then there is no block. `nBytesRead` becomes the bytes taken.
bool ReadDataBlock(CArchive& archive, int& nLength, std::unique_ptr<BYTE[]>& pData, DWORD& nBytesRead);
void WriteDataBlock(CArchive& archive, int nLength, const BYTE* pData);
