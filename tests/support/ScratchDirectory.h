#pragma once

#include "platform/base/Types.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <vector>

// An empty directory for one test, removed with all its content at the end.
class CScratchDirectory {
public:
    CScratchDirectory() {
        CString strPattern = (std::filesystem::temp_directory_path() / "fretvane-XXXXXX").string();
        m_path = mkdtemp(strPattern.data());
    }
    ~CScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    CScratchDirectory(const CScratchDirectory&) = delete;
    CScratchDirectory& operator=(const CScratchDirectory&) = delete;
    CScratchDirectory(CScratchDirectory&&) = delete;
    CScratchDirectory& operator=(CScratchDirectory&&) = delete;

    CString Path(const CString& strName = {}) const { return (m_path / strName).string(); }
    // Gives the path.
    CString Write(const CString& strName, const CString& strText) const {
        std::ofstream(m_path / strName, std::ios::binary) << strText;
        return Path(strName);
    }
    // The whole file; empty where there is none.
    CString Read(const CString& strName) const {
        std::ostringstream content;
        content << std::ifstream(m_path / strName, std::ios::binary).rdbuf();
        return content.str();
    }
    std::vector<CString> Names() const {
        std::vector<CString> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};
