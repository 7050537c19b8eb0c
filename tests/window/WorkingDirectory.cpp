#include "window/WorkingDirectory.h"

namespace fs = std::filesystem;

CWorkingDirectory::CWorkingDirectory() {
    fs::copy(fs::path(FRETVANE_SOURCE_DIR) / "data", Path(), fs::copy_options::recursive);
    fs::current_path(Path());
}

CWorkingDirectory::~CWorkingDirectory() {
    std::error_code ignored;
    fs::current_path(m_before, ignored);
}

void CWorkingDirectory::Remove(const CString& strName) const {
    fs::remove(Path(strName));
}

std::vector<CString> CWorkingDirectory::LogMessages() const {
    const CString strEndOfDate = "M: ";
    std::vector<CString> messages;
    std::istringstream log(Read("errorlog.txt"));
    for (CString strLine; std::getline(log, strLine);) {
        const auto nDate = strLine.find(strEndOfDate);
        messages.push_back(nDate == CString::npos ? strLine : strLine.substr(nDate + strEndOfDate.size()));
    }
    return messages;
}
