#pragma once

#include "support/ScratchDirectory.h"

// A directory of its own for one test, in which the test's process stands until it ends: the program looks
// for all its files by bare name. It holds copies of the files that are installed beside the program.
class CWorkingDirectory : public CScratchDirectory {
public:
    CWorkingDirectory();
    ~CWorkingDirectory();

    void Remove(const CString& strName) const;
    // The messages of the error log, without their dates.
    std::vector<CString> LogMessages() const;

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
};
