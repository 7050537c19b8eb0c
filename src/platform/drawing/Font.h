#pragma once

#include "platform/base/Types.h"

#include <vector>

class CDC;

// A font: the families to look for, in order, and the size of the em square in pixels of a screen of 96 to
// the inch, which every screen counts as. Glyphs that the first family lacks come from the next, and at the
// end from whatever the system offers.
class CFont {
public:
    CFont() = default;
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    // "MS Sans Serif" stands for the family with the Chinese glyphs; any other face is looked for by its name
    // first. False if the size comes out below one pixel.
    bool CreatePointFont(int nTenthsOfPoint, const CString& strFace, const CDC* pDc = nullptr);

    const std::vector<CString>& GetFamilies() const { return m_families; }
    int GetPixelSize() const { return m_nPixelSize; }

private:
    std::vector<CString> m_families;
    int m_nPixelSize = 0;
};
