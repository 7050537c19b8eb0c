#pragma once

#include "support/ScratchDirectory.h"

#include <filesystem>

// A directory of its own for one test, in which the test's process stands until it ends: bitmaps are looked
// for by bare name.
class CPictureDirectory : public CScratchDirectory {
public:
    CPictureDirectory() { std::filesystem::current_path(Path()); }
    ~CPictureDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
    }
    CPictureDirectory(const CPictureDirectory&) = delete;
    CPictureDirectory& operator=(const CPictureDirectory&) = delete;
    CPictureDirectory(CPictureDirectory&&) = delete;
    CPictureDirectory& operator=(CPictureDirectory&&) = delete;

    void Remove(const CString& strName) const { std::filesystem::remove(Path(strName)); }

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
};

// Stands in the directory of the program's own bitmaps.
class CDataDirectory {
public:
    CDataDirectory() { std::filesystem::current_path(std::filesystem::path(FRETVANE_SOURCE_DIR) / "data"); }
    ~CDataDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
    }
    CDataDirectory(const CDataDirectory&) = delete;
    CDataDirectory& operator=(const CDataDirectory&) = delete;
    CDataDirectory(CDataDirectory&&) = delete;
    CDataDirectory& operator=(CDataDirectory&&) = delete;

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
};
