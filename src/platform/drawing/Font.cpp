#include "platform/drawing/Font.h"

#include <cstdint>

namespace {

constexpr int DOTS_PER_INCH = 96;
constexpr int TENTHS_PER_INCH = 720;

}  // namespace

bool CFont::CreatePointFont(int nTenthsOfPoint, const CString& strFace, const CDC* /*pDc*/) {
    const std::int64_t nDots = std::int64_t{nTenthsOfPoint} * DOTS_PER_INCH;
    m_nPixelSize = static_cast<int>((nDots + TENTHS_PER_INCH / 2) / TENTHS_PER_INCH);
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
