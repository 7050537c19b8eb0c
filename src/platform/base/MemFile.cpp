#include "platform/base/MemFile.h"

#include "platform/base/Exceptions.h"

#include <algorithm>
#include <cstring>

std::size_t CMemFile::Read(void* pBuffer, std::size_t nCount) {
    const std::size_t nRead = std::min(nCount, m_bytes.size() - m_nPosition);
    if (nRead > 0) {
        std::memcpy(pBuffer, m_bytes.data() + m_nPosition, nRead);
        m_nPosition += nRead;
    }
    return nRead;
}

void CMemFile::Write(const void* pBuffer, std::size_t nCount) {
    if (nCount > m_bytes.size() - m_nPosition) {
        if (!m_bOwn || nCount > MAX_BYTES - m_nPosition) {
            throw CFileException();
        }
        m_own.resize(m_nPosition + nCount);
        m_bytes = m_own;
    }
    if (nCount > 0) {
        std::memcpy(m_bytes.data() + m_nPosition, pBuffer, nCount);
        m_nPosition += nCount;
    }
}
