#include "platform/shell/CurrentDirectory.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

CString GetCurrentDirectory() {
    std::error_code failed;
    const CString strDirectory = std::filesystem::current_path(failed).string();
    // The first byte of each UTF-8 character is not of the form 10xxxxxx.
    const auto nCharacters = std::count_if(strDirectory.begin(), strDirectory.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    });
    return static_cast<std::size_t>(nCharacters) <= CURRENT_DIRECTORY_ROOM ? strDirectory : CString();
}
