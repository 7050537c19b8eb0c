#pragma once

#include "support/ScratchDirectory.h"

#include <filesystem>

// The test's process stands in this directory as long as it lives: bitmaps are looked for by bare name.
class CCurrentDirectory {
public:
    explicit CCurrentDirectory(const std::filesystem::path& path) { std::filesystem::current_path(path); }
    ~CCurrentDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
    }
    CCurrentDirectory(const CCurrentDirectory&) = delete;
    CCurrentDirectory& operator=(const CCurrentDirectory&) = delete;

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
};

// An empty one for one test.
class CPictureDirectory : public CScratchDirectory {
private:
    const CCurrentDirectory m_current{Path()};
};

// That of the program's own bitmaps.
class CDataDirectory : public CCurrentDirectory {
public:
    CDataDirectory() : CCurrentDirectory(std::filesystem::path(FRETVANE_SOURCE_DIR) / "data") {}
};
