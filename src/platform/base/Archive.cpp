#include "platform/base/Archive.h"

#include "platform/base/Exceptions.h"

#include <algorithm>
#include <cstring>

CArchive::CArchive(CFile& file, Mode mode, std::size_t nBufferSize)
    : m_file(file), m_mode(mode), m_buffer(mode == Mode::Load ? std::max<std::size_t>(nBufferSize, 1) : 0) {}

std::size_t CArchive::Read(void* pBuffer, std::size_t nCount) {
    if (m_mode != Mode::Load) {
        throw CFileException();
    }
    auto* pOut = static_cast<BYTE*>(pBuffer);
    std::size_t nRead = 0;
    while (nRead < nCount) {
        if (m_nNext == m_nFilled) {
            const std::size_t nFilled = m_file.Read(m_buffer.data(), m_buffer.size());
            if (nFilled == 0) {
                // What was read last stays, so that it can be stepped back to.
                break;
            }
            m_nNext = 0;
            m_nFilled = nFilled;
        }
        const std::size_t nPiece = std::min(nCount - nRead, m_nFilled - m_nNext);
        std::memcpy(pOut + nRead, m_buffer.data() + m_nNext, nPiece);
        m_nNext += nPiece;
        nRead += nPiece;
    }
    return nRead;
}

void CArchive::StepBack() {
    if (m_nNext == 0) {
        throw CFileException();
    }
    --m_nNext;
}

void CArchive::Write(const void* pBuffer, std::size_t nCount) {
    if (m_mode != Mode::Store) {
        throw CFileException();
    }
    m_file.Write(pBuffer, nCount);
}
