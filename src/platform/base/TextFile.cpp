#include "platform/base/TextFile.h"

#include "platform/base/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::size_t MAX_TEXT_BYTES = 64UL * 1024 * 1024;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool ReadAll(int nDescriptor, CString& strText) {
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t nRead = ::read(nDescriptor, buffer.data(), buffer.size());
        if (nRead == 0) {
            return true;
        }
        if (nRead > 0) {
            strText.append(buffer.data(), static_cast<std::size_t>(nRead));
        } else if (errno != EINTR) {
            return false;
        }
        if (strText.size() > MAX_TEXT_BYTES) {
            return false;
        }
    }
}

void ToPlainText(CString& strText) {
    std::size_t nWritten = 0;
    std::size_t nRead = strText.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0;
    for (; nRead < strText.size(); ++nRead) {
        const bool bLineEnd =
            strText[nRead] == '\r' && nRead + 1 < strText.size() && strText[nRead + 1] == '\n';
        if (!bLineEnd) {
            strText[nWritten++] = strText[nRead];
        }
    }
    strText.resize(nWritten);
}

}  // namespace

TextFileResult ReadTextFile(const CString& strPath, CString& strText) {
    strText.clear();
    const CFileDescriptor file(::open(strPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.IsOpen()) {
        return errno == ENOENT || errno == ENOTDIR ? TextFileResult::Missing : TextFileResult::Unreadable;
    }
    struct stat status = {};
    if (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) || !ReadAll(file.Get(), strText)) {
        strText.clear();
        return TextFileResult::Unreadable;
    }
    ToPlainText(strText);
    return TextFileResult::Read;
}
