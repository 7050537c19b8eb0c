#pragma once

#include "platform/base/File.h"
#include "platform/base/Types.h"

#include <cstddef>
#include <span>
#include <vector>

// A file in memory: over bytes of the caller's, which then outlive it and bound it, or over bytes of its own,
// which grow as they are written, up to MAX_BYTES.
class CMemFile final : public CFile {
public:
    static constexpr std::size_t MAX_BYTES = 64UL * 1024 * 1024;

    CMemFile() = default;
    explicit CMemFile(std::span<BYTE> bytes) : m_bytes(bytes), m_bOwn(false) {}

    std::size_t Read(void* pBuffer, std::size_t nCount) override;
    // Writes all or throws CFileException.
    void Write(const void* pBuffer, std::size_t nCount) override;
    std::span<const BYTE> GetBytes() const { return m_bytes; }

private:
    std::vector<BYTE> m_own;
    std::span<BYTE> m_bytes;
    std::size_t m_nPosition = 0;
    bool m_bOwn = true;
};
