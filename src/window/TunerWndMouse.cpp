#include "window/HintTable.h"
#include "window/TunerWnd.h"

#include <algorithm>

namespace {

// Of the rows that a button is followed over; all the rest of the window is nothing.
constexpr int NOTHING = -1;
constexpr int AREA_STRINGS = HINT_STRINGS;
constexpr int AREA_LOGO = HINT_LOGO;

constexpr int NO_STRING = -1;

bool IsIn(HintRow nRow, POINT pt) {
    return PtInRect(HINT_TABLE[nRow].rc, pt);
}

// Areas may lie over each other: the first one counts.
int FindHint(POINT pt) {
    const auto found = std::find_if(HINT_TABLE.begin(), HINT_TABLE.end(),
                                    [pt](const HintPlace& place) { return PtInRect(place.rc, pt); });
    return found != HINT_TABLE.end() ? static_cast<int>(found - HINT_TABLE.begin()) : NOTHING;
}

}  // namespace

void CTunerWnd::OnMouseMove(UINT /*nFlags*/, POINT pt) {
    UpdateHint(pt);
    Default();
}

void CTunerWnd::UpdateHint(POINT pt) {
    const int nHint = FindHint(pt);
    if (nHint == m_nHint) {
        return;
    }
    m_nHint = nHint;
    // Beside all areas the last text stays.
    if (nHint != NOTHING) {
        m_stcHint.SetWindowText(HINT_TABLE[static_cast<std::size_t>(nHint)].szText);
    }
}

void CTunerWnd::OnLButtonDown(UINT /*nFlags*/, POINT pt) {
    Default();
    if (IsIn(HINT_LOGO, pt)) {
        m_nLeftArea = AREA_LOGO;
        return;
    }
    // A press beside the strings presses none.
    m_nPressedString = FindString(pt);
    m_nLeftArea = IsIn(HINT_STRINGS, pt) ? AREA_STRINGS : NOTHING;
}

void CTunerWnd::OnLButtonUp(UINT /*nFlags*/, POINT pt) {
    Default();
    if (IsIn(HINT_LOGO, pt) && m_nLeftArea == AREA_LOGO) {
        OpenWebPage();
        m_nLeftArea = NOTHING;
        return;
    }
    if (!IsIn(HINT_STRINGS, pt) || m_nLeftArea != AREA_STRINGS) {
        return;
    }
    if (const int nString = FindString(pt); nString != NO_STRING) {
        if (nString == m_nPressedString) {
            PlayString(static_cast<std::size_t>(nString));
        }
        m_nPressedString = NO_STRING;
    }
    m_nLeftArea = NOTHING;
}

void CTunerWnd::OnRButtonDown(UINT /*nFlags*/, POINT pt) {
    Default();
    m_nRightArea = IsIn(HINT_LOGO, pt) ? AREA_LOGO : NOTHING;
}

void CTunerWnd::OnRButtonUp(UINT /*nFlags*/, POINT pt) {
    Default();
    if (IsIn(HINT_LOGO, pt) && m_nRightArea == AREA_LOGO) {
        OpenWebPage();
    }
    m_nRightArea = NOTHING;
}
