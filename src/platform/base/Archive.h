#pragma once

#include "platform/base/MemFile.h"

#include <cstddef>
#include <vector>

// Objects go into a file or come out of it through an archive, which works in one direction. A loading
// archive reads ahead by its buffer, a storing one writes at once. Failures of the file arrive as
// CFileException.
class CArchive {
public:
    enum class Mode { Load, Store };

    CArchive(CFile& file, Mode mode, std::size_t nBufferSize = 4096);
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsLoading() const { return m_mode == Mode::Load; }
    // Gives the number of bytes that could be read, less than nCount only at the end of the file.
    std::size_t Read(void* pBuffer, std::size_t nCount);
    // Makes the byte that was read last the next one again. Only directly after a Read of at least one byte,
    // and once.
    void StepBack();
    void Write(const void* pBuffer, std::size_t nCount);

private:
    CFile& m_file;
    const Mode m_mode;
    std::vector<BYTE> m_buffer;
    std::size_t m_nNext = 0;  // of the bytes in the buffer, the next to be read
    std::size_t m_nFilled = 0;
};
