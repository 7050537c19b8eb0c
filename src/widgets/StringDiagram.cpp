#include "widgets/StringDiagram.h"

#include "platform/drawing/SysColors.h"
#include "platform/windows/ClientDc.h"
#include "widgets/ComposedPicture.h"

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;

constexpr POINT ORIGIN = {20, 34};
constexpr int WIDTH = 170;
constexpr int HEIGHT = 68;
constexpr int FRAME = 2;

constexpr int FIRST_STRING_X = 20;
constexpr int STRING_PITCH = 25;

}  // namespace

bool CStringDiagram::Create(CWnd* pWnd) {
    const CClientDC dc(pWnd);
    if (!CreateComposedPicture(dc, WIDTH, HEIGHT, BLACK_BRUSH, m_dc, m_bitmap) ||
        !m_font.CreatePointFont(80, "MS Sans Serif", &dc)) {
        return false;
    }
    m_dc.SelectObject(&m_font);
    return m_strings[0].Load("string3.bmp", pWnd) && m_strings[1].Load("string2.bmp", pWnd) &&
           m_strings[2].Load("string1.bmp", pWnd);
}

void CStringDiagram::SetTuning(const Tuning& tuning) {
    m_tuning = tuning;
}

const CBitmapLayer& CStringDiagram::GetPicture(const StringNote& note, bool bEnabled) const {
    if (!bEnabled) {
        return m_strings[2];
    }
    return m_strings[note.octave == 0 ? 0 : 1];
}

void CStringDiagram::Draw(CDC* pDst, bool bEnabled) {
    m_dc.DrawEdge({0, 0, WIDTH, HEIGHT}, EDGE_SUNKEN, BF_RECT);
    m_dc.FillSolidRect({FRAME, FRAME, WIDTH - FRAME, HEIGHT - FRAME}, WHITE);
    m_dc.SetTextColor(bEnabled ? 0 : GetSysColor(COLOR_GRAYTEXT));
    // All stand on one row, if they have one height.
    const int y = HEIGHT - FRAME - m_strings[0].GetHeight();
    int x = FIRST_STRING_X;
    for (const StringNote& note : m_tuning.m_strings) {
        GetPicture(note, bEnabled).Draw(&m_dc, x, y);
        CString strNote;
        note.GetText(strNote);
        m_dc.DrawText(strNote, {x - 4, 3, x + 20, 18}, DT_VCENTER | DT_SINGLELINE);
        x += STRING_PITCH;
    }
    pDst->BitBlt(ORIGIN.x, ORIGIN.y, WIDTH, HEIGHT, &m_dc, 0, 0, SRCCOPY);
}
