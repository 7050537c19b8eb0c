#pragma once

#include "platform/base/Types.h"
#include "platform/drawing/Bitmap.h"
#include "platform/drawing/Dc.h"
#include "platform/windows/Button.h"

// A square that shows a colour: a picture in memory, copied to a control of a dialog. Black until it is
// filled. On the message-loop thread.
class CColorSwatch : public CButton {
public:
    ~CColorSwatch() override = default;

    // Finds the control with this id among the children of pParent and builds the picture of its client
    // area's size. Where there is no such control, the swatch stays empty and shows nothing.
    void Init(CWnd* pParent, int nId);

    // Fills a rectangle of the picture; the control doesn't show it yet.
    void FillRect(int x, int y, int cx, int cy, COLORREF clr);

    // Copies the picture to the control.
    void Show();

    // For the parent's paint handler: paints the whole control from the picture.
    void Repaint();

    int GetWidth() const { return m_rcClient.Width(); }
    int GetHeight() const { return m_rcClient.Height(); }

private:
    void CopyTo(CDC& dc) const;

    CDC m_dc;
    CBitmap m_bitmap;
    RECT m_rcClient;
    CWnd* m_pControl = nullptr;
};
