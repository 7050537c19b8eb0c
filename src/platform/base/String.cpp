#include "platform/base/String.h"

#include <clocale>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace {

// Sets the thread's locale to "C" for as long as it lives.
class CPlainLocale {
public:
    CPlainLocale() : m_previous(uselocale(Plain())) {}
    ~CPlainLocale() { uselocale(m_previous); }
    CPlainLocale(const CPlainLocale&) = delete;
    CPlainLocale& operator=(const CPlainLocale&) = delete;

private:
    static locale_t Plain() {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }
    locale_t m_previous;
};

}  // namespace

// NOLINTNEXTLINE(cert-dcl50-cpp): so that the compiler holds the values of a call against its pattern
CString FormatText(const char* szPattern, ...) {
    const CPlainLocale plain;
    va_list args;
    va_start(args, szPattern);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is, one line above
    const int nLength = std::vsnprintf(nullptr, 0, szPattern, args);
    va_end(args);
    CString strResult;
    if (nLength > 0) {
        std::vector<char> buffer(static_cast<std::size_t>(nLength) + 1);
        va_start(args, szPattern);
        if (std::vsnprintf(buffer.data(), buffer.size(), szPattern, args) == nLength) {
            strResult.assign(buffer.data(), static_cast<std::size_t>(nLength));
        }
        va_end(args);
    }
    return strResult;
}
