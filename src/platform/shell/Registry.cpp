#include "platform/shell/Registry.h"

#include "platform/shell/FindProgram.h"

namespace {

constexpr const char* HTML_VIEWER_KEY = R"(htmlfile\shell\open\command)";
constexpr const char* HTML_VIEWER = "xdg-open";

}  // namespace

std::optional<CString> RegQueryClassValue(const CString& strKey) {
    if (strKey != HTML_VIEWER_KEY || FindProgram(HTML_VIEWER).empty()) {
        return std::nullopt;
    }
    return HTML_VIEWER;
}
