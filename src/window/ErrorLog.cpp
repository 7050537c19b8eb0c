#include "window/ErrorLog.h"

#include <ctime>
#include <fstream>
#include <iomanip>
#include <locale>
#include <utility>

CErrorLog::CErrorLog(CString strFile) : m_strFile(std::move(strFile)) {}

void CErrorLog::SetFile(CString strFile) {
    m_strFile = std::move(strFile);
}

void CErrorLog::Log(const CString& strMessage) const {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) == nullptr) {
        return;
    }
    std::ofstream file(m_strFile, std::ios::app);
    // The days and months keep their English names in every country: the log is one text for all readers.
    file.imbue(std::locale::classic());
    file << std::put_time(&local, "%A, %B, %d, %Y %I:%M %p") << ": " << strMessage << std::endl;
}
