#include "platform/shell/FindProgram.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace {

bool IsProgram(const CString& strFile) {
    struct stat status {};
    return ::stat(strFile.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(strFile.c_str(), X_OK) == 0;
}

}  // namespace

CString FindProgram(const CString& strName) {
    if (strName.find('/') != CString::npos) {
        return IsProgram(strName) ? strName : CString();
    }
    const char* const szPath = std::getenv("PATH");
    std::istringstream path(szPath != nullptr ? szPath : "/usr/bin:/bin");
    for (CString strDirectory; std::getline(path, strDirectory, ':');) {
        CString strFile = strDirectory;
        strFile.append("/").append(strName);
        if (IsProgram(strFile)) {
            return strFile;
        }
    }
    return {};
}
