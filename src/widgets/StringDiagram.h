#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"
#include "platform/drawing/Font.h"
#include "tuning/Tuning.h"
#include "widgets/BitmapLayer.h"

#include <array>

class CWnd;

// The six strings of the tuning side by side at (20, 34) of the main window, each with its note above it:
// "E2". Message-loop thread only; Draw wants the window's picture lock held.
class CStringDiagram {
public:
    // Makes the picture and loads the bitmaps from the current directory. False at the first that is missing.
    bool Create(CWnd* pWnd);
    // Draws nothing.
    void SetTuning(const Tuning& tuning);
    // Composes the whole picture and copies it. Not enabled, it is all grey.
    void Draw(CDC* pDst, bool bEnabled);

private:
    const CBitmapLayer& GetPicture(const StringNote& note, bool bEnabled) const;

    Tuning m_tuning;
    // The lowest octave's, the higher octaves', and the disabled form.
    std::array<CBitmapLayer, 3> m_strings;
    CFont m_font;
    CDC m_dc;
    CBitmap m_bitmap;
};
