#pragma once

#include <unistd.h>

#include <utility>

// Owns a file descriptor; -1 is none.
class CFileDescriptor {
public:
    explicit CFileDescriptor(int nDescriptor = -1) : m_nDescriptor(nDescriptor) {}
    ~CFileDescriptor() { Close(); }
    CFileDescriptor(const CFileDescriptor&) = delete;
    CFileDescriptor& operator=(const CFileDescriptor&) = delete;
    CFileDescriptor(CFileDescriptor&&) = delete;
    CFileDescriptor& operator=(CFileDescriptor&&) = delete;

    bool IsOpen() const { return m_nDescriptor >= 0; }
    int Get() const { return m_nDescriptor; }
    // False if an earlier write turns out to have failed.
    bool Close() {
        const int nDescriptor = std::exchange(m_nDescriptor, -1);
        return nDescriptor < 0 || ::close(nDescriptor) == 0;
    }

private:
    int m_nDescriptor;
};
