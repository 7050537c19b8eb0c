#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Surface.h"

class CDC;

struct SIZE {
    int cx = 0;
    int cy = 0;
};

// A bitmap to select into a memory device context. It must live as long as it is selected and drawn through;
// a device context whose bitmap is gone may still be destroyed.
class CBitmap {
public:
    CBitmap() = default;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    // A colour bitmap of the screen's form, black at first. False if pDc is no usable context or the size is
    // not a possible one.
    bool CreateCompatibleBitmap(const CDC* pDc, int cx, int cy);

    // A monochrome bitmap of zeros. One plane of one bit without initial bits is the only form there is.
    bool CreateBitmap(int cx, int cy, UINT nPlanes, UINT nBitCount, const void* pBits);

    // Reads a BMP file of any colour depth; transparency in it is ignored. False if the file is missing or is
    // no whole bitmap, and then the bitmap is empty. Needs no application object.
    bool LoadFile(const CString& strFile);

    SIZE GetSize() const { return {m_surface.GetWidth(), m_surface.GetHeight()}; }
    void DeleteObject() { m_surface.Destroy(); }

    CSurface& GetSurface() { return m_surface; }
    const CSurface& GetSurface() const { return m_surface; }

private:
    CSurface m_surface;
};
