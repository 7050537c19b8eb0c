#pragma once

#include <cstddef>
#include <string_view>

// A run of bytes with one position, from which reading and writing go on. Failures arrive as CFileException.
class CFile {
public:
    virtual ~CFile() = default;
    // Reads up to nCount bytes; gives how many there were.
    virtual std::size_t Read(void* pBuffer, std::size_t nCount) = 0;
    virtual void Write(const void* pBuffer, std::size_t nCount) = 0;
    void WriteString(std::string_view text) { Write(text.data(), text.size()); }

    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

protected:
    CFile() = default;
};
