#pragma once

#include "platform/base/Types.h"

class CBitmap;
class CFont;
class CPen;
class CPicture;
class CSurface;

// Raster codes: what becomes of the destination D and the source S, on the 24 colour bits of each pixel.
inline constexpr DWORD SRCCOPY = 0x00CC0020;    // S
inline constexpr DWORD SRCAND = 0x008800C6;     // D and S
inline constexpr DWORD SRCINVERT = 0x00660046;  // D xor S
inline constexpr DWORD DSNA = 0x00220326;       // D and not S
inline constexpr DWORD PATCOPY = 0x00F00021;    // the brush

inline constexpr int WHITE_BRUSH = 0;
inline constexpr int BLACK_BRUSH = 4;
inline constexpr int WHITE_PEN = 6;
inline constexpr int BLACK_PEN = 7;

inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;

inline constexpr UINT EDGE_SUNKEN = 0x0A;
inline constexpr UINT BF_RECT = 0x0F;

inline constexpr UINT DT_VCENTER = 0x04;
inline constexpr UINT DT_SINGLELINE = 0x20;

inline constexpr int RASTERCAPS = 38;
inline constexpr int RC_BITBLT = 0x0001;

struct TEXTMETRIC {
    int tmHeight = 0;   // ascent + descent, pixels
    int tmAscent = 0;   // above the base line
    int tmDescent = 0;  // below it
};

// A device context: what drawing goes through. A memory context draws on the bitmap selected into it; a
// context that the windows derive draws on a window's picture and marks there what it changed. Without
// either, and before CreateCompatibleDC, every operation does nothing. All coordinates are pixels, and
// whatever lies outside the surface, of the source too, is neither read nor written.
//
// Selected objects are not owned and must live until another takes their place; selecting returns the one
// before. A new context has a white brush, a black pen one pixel wide, black text on an opaque white ground,
// and no font.
//
// One thread at a time; a context on a picture wants the picture's lock held while it draws. Nothing but text
// allocates.
class CDC {
public:
    CDC() = default;
    virtual ~CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // A memory context. False if pDc is given and is itself of no use. pDc may be null: the screen.
    bool CreateCompatibleDC(const CDC* pDc);

    // From now on the context draws on the picture (null: on nothing), as a window's own contexts do.
    void AttachPicture(CPicture* pPicture);

    bool IsUsable() const { return m_bMemory || m_pPicture != nullptr; }

    // RASTERCAPS gives RC_BITBLT for a usable context; all else is 0.
    int GetDeviceCaps(int nIndex) const;

    // Null deselects. A bitmap belongs into a memory context only: elsewhere nothing is selected and null
    // returned.
    CBitmap* SelectObject(CBitmap* pBitmap);
    CPen* SelectObject(CPen* pPen);
    CFont* SelectObject(CFont* pFont);

    // One of the four stock brushes and pens above; false for any other index.
    bool SelectStockObject(int nIndex);

    int SetBkMode(int nMode);
    COLORREF SetTextColor(COLORREF clr);
    COLORREF SetBkColor(COLORREF clr);

    // Copies a rectangle through a raster code (SRCCOPY, SRCAND, SRCINVERT, DSNA; false for any other).
    // Source and destination may be the same surface and overlap. Between a colour and a monochrome surface:
    // to monochrome, a pixel of the source context's background colour is 1 and any other 0; from monochrome,
    // 1 takes the background colour of this context, 0 its text colour.
    bool BitBlt(int x, int y, int cx, int cy, const CDC* pSrc, int xSrc, int ySrc, DWORD dwRop);

    // Fills with the brush; PATCOPY is the one code. Nothing for a size below 1.
    bool PatBlt(int x, int y, int cx, int cy, DWORD dwRop);

    // Fill with one colour, which stays the background colour of the context. Nothing is painted for a size
    // below 1.
    void FillSolidRect(const RECT& rc, COLORREF clr);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF clr);

    // CLR_INVALID outside.
    COLORREF GetPixel(int x, int y) const;
    void SetPixel(int x, int y, COLORREF clr);

    // The sunken edge, two pixels thick, just inside the rectangle, in the colours of the desktop. False for
    // any other edge or set of sides.
    bool DrawEdge(const RECT& rc, UINT nEdge, UINT nFlags);

    void MoveTo(int x, int y) { m_ptCurrent = {x, y}; }

    // A line of the pen from the current position to this one, both ends included; this becomes the current
    // one.
    void LineTo(int x, int y);

    // One line of text, left aligned, clipped to the rectangle: at its top, or with DT_VCENTER |
    // DT_SINGLELINE in the middle of its height. The result is the height of the text, 0 if none was drawn:
    // without a font, on a monochrome bitmap, without an application object of the toolkit.
    int DrawText(const CString& strText, const RECT& rc, UINT nFormat);

    // False, and all 0, if there is no font or no application object.
    bool GetTextMetrics(TEXTMETRIC* pMetrics) const;

private:
    void Reset();
    CSurface* GetSurface() const;
    void Fill(const RECT& rc, COLORREF clr);
    void MarkDirty(const RECT& rc);

    bool m_bMemory = false;
    CPicture* m_pPicture = nullptr;
    CBitmap* m_pBitmap = nullptr;
    CPen* m_pPen = nullptr;
    CFont* m_pFont = nullptr;
    COLORREF m_clrBrush = 0xFFFFFF;
    COLORREF m_clrText = 0;
    COLORREF m_clrBack = 0xFFFFFF;
    int m_nBkMode = OPAQUE;
    POINT m_ptCurrent;
};
