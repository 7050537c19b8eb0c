#include "tones/MidiDataBlock.h"

#include "tones/MidiBytes.h"

#include <cstddef>
#include <utility>

bool ReadDataBlock(CArchive& archive, int& nLength, std::unique_ptr<BYTE[]>& pData, DWORD& nBytesRead) {
    nLength = 0;
    pData.reset();
    DWORD nWanted = 0;
    nBytesRead = ReadVarLen(archive, nWanted);
    if (nWanted == NO_QUANTITY) {
        return false;
    }
    if (nWanted == 0) {
        return true;
    }
    auto pBlock = std::make_unique_for_overwrite<BYTE[]>(nWanted);
    const std::size_t nRead = archive.Read(pBlock.get(), nWanted);
    nBytesRead += static_cast<DWORD>(nRead);
    if (nRead != nWanted) {
        return false;
    }
    nLength = static_cast<int>(nWanted);
    pData = std::move(pBlock);
    return true;
}

void WriteDataBlock(CArchive& archive, int nLength, const BYTE* pData) {
    WriteVarLen(archive, static_cast<DWORD>(nLength));
    archive.Write(pData, static_cast<std::size_t>(nLength));
}
