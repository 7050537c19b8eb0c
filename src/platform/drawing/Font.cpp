#include "platform/drawing/Font.h"

#include <cstdint>

namespace {

constexpr int g_nDotsPerInch = 96;
constexpr int g_nTenthsPerInch = 720;

}  // namespace

bool CFont::CreatePointFont(int nTenthsOfPoint, const CString& strFace, const CDC* /*pDc*/) {
    const std::int64_t nDots = std::int64_t{nTenthsOfPoint} * g_nDotsPerInch;
    m_nPixelSize = static_cast<int>((nDots + g_nTenthsPerInch / 2) / g_nTenthsPerInch);
    m_families.clear();
    if (nTenthsOfPoint <= 0 || m_nPixelSize < 1) {
        m_nPixelSize = 0;
        return false;
    }
    if (!strFace.empty() && strFace != "MS Sans Serif") {
        m_families.push_back(strFace);
    }
    m_families.insert(m_families.end(), {"WenQuanYi Micro Hei", "Noto Sans CJK SC", "Source Han Sans SC",
                                         "WenQuanYi Zen Hei", "sans-serif"});
    return true;
}
