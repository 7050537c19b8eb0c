#include "widgets/CoarseIndicator.h"

#include "platform/windows/ClientDc.h"
#include "widgets/ComposedPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;

constexpr POINT ORIGIN = {10, 310};
constexpr int STRIP_WIDTH = 480;
constexpr int STRIP_HEIGHT = 50;
constexpr int FRAME = 2;

constexpr POINT BAR = {8, 22};
constexpr int TIC_Y = 19;

// The ticks' left edges: from the first one to the last.
constexpr int FIRST_MARK_X = 15;
constexpr double MARK_SPAN = 444.0;
constexpr int SINGLE_MARK_X = 236;

// The highlight is a little wider than a tick, which lies in its middle.
constexpr int HIGHLIGHT_WIDTH = 14;
constexpr int HIGHLIGHT_OFFSET = FIRST_MARK_X - 2;
constexpr int HIGHLIGHT_MIN_X = FRAME;
constexpr int HIGHLIGHT_MAX_X = STRIP_WIDTH - FRAME - HIGHLIGHT_WIDTH;

// How far the highlight's ground is from white, in single precision.
constexpr float TINT = -0.3F;

float Log2(float fHz) {
    return static_cast<float>(std::log(static_cast<double>(fHz)) / std::log(2.0));
}

int TintChannel(int nChannel) {
    return 255 - static_cast<int>((nChannel - 255) * static_cast<double>(TINT));
}

const char* GetSemitoneName(int nSemitone) {
    const bool bNamed = nSemitone >= 0 && nSemitone < SEMITONES;
    return bNamed ? SEMITONE_NAMES[static_cast<std::size_t>(nSemitone)] : "";
}

// From the lowest mark to a pitch. What is infinite or no number counts as no distance: a frequency of 0
// keeps the highlight on the lowest mark.
int PixelsAbove(float fLog, float fLogLow, float fScale) {
    constexpr double FAR_AWAY = 1.0e6;
    const double dPixels = static_cast<double>(fLog) * fScale - static_cast<double>(fLogLow) * fScale;
    return std::isfinite(dPixels) ? static_cast<int>(std::clamp(dPixels, -FAR_AWAY, FAR_AWAY)) : 0;
}

}  // namespace

bool CCoarseIndicator::Create(CWnd* pWnd) {
    const CClientDC dc(pWnd);
    if (!m_font.CreatePointFont(80, "MS Sans Serif", &dc)) {
        return false;
    }
    const auto CreatePicture = [&](CDC& dcPicture, CBitmap& bitmap) {
        if (!CreateComposedPicture(dc, STRIP_WIDTH, STRIP_HEIGHT, BLACK_BRUSH, dcPicture, bitmap)) {
            return false;
        }
        dcPicture.SelectObject(&m_font);
        return true;
    };
    if (!CreatePicture(m_dcShow, m_bmpShow) || !CreatePicture(m_dcBase, m_bmpBase) ||
        !CreatePicture(m_dcLit, m_bmpLit) || !m_tic.Load("gTic.bmp", pWnd) || !m_bar.Load("gBar.bmp", pWnd)) {
        return false;
    }
    m_nHeight = STRIP_HEIGHT;
    m_nWidth = STRIP_WIDTH;
    return true;
}

void CCoarseIndicator::SetColor(COLORREF clr) {
    m_clrBase = clr;
}

void CCoarseIndicator::SetTuning(const Tuning& tuning) {
    m_tuning = tuning;
    Rebuild();
}

void CCoarseIndicator::SetAFrequency(float fA) {
    m_fAFrequency = fA;
    Rebuild();
}

void CCoarseIndicator::SetFrequency(float fHz) {
    m_fLogFrequency.store(Log2(fHz), std::memory_order_relaxed);
}

void CCoarseIndicator::Rebuild() {
    CollectMarks();
    PlaceMarks();
    PaintScale(GetTint());
    m_dcShow.BitBlt(0, 0, m_nWidth, m_nHeight, &m_dcBase, 0, 0, SRCCOPY);
    m_bHighlightShown = false;
}

// The different notes of the tuning, in the order of the strings.
void CCoarseIndicator::CollectMarks() {
    m_nMarks = 0;
    for (const StringNote& note : m_tuning.m_strings) {
        const auto itEnd = m_marks.begin() + m_nMarks;
        if (std::find(m_marks.begin(), itEnd, note) == itEnd) {
            *itEnd = note;
            ++m_nMarks;
        }
    }
}

void CCoarseIndicator::PlaceMarks() {
    const auto nMarks = static_cast<std::size_t>(m_nMarks);
    std::array<float, 6> afLog = {};
    for (std::size_t i = 0; i < nMarks; ++i) {
        afLog[i] = Log2(m_marks[i].GetFrequency(m_fAFrequency));
    }
    const auto [pLow, pHigh] = std::minmax_element(afLog.begin(), afLog.begin() + m_nMarks);
    m_fLogLow = *pLow;
    if (m_nMarks == 1) {
        m_fScale = 1.0F;
        m_anMarkX[0] = SINGLE_MARK_X;
        return;
    }
    m_fScale = static_cast<float>(MARK_SPAN / (static_cast<double>(*pHigh) - *pLow));
    for (std::size_t i = 0; i < nMarks; ++i) {
        m_anMarkX[i] = PixelsAbove(afLog[i], m_fLogLow, m_fScale) + FIRST_MARK_X;
    }
}

COLORREF CCoarseIndicator::GetTint() const {
    return MakeColor(TintChannel(GetRed(m_clrBase)), TintChannel(GetGreen(m_clrBase)),
                     TintChannel(GetBlue(m_clrBase)));
}

// The same scale twice: on white with the frame, and on the tint.
void CCoarseIndicator::PaintScale(COLORREF clrTint) {
    const RECT rcInside = {FRAME, FRAME, m_nWidth - FRAME, m_nHeight - FRAME};
    m_dcBase.DrawEdge({0, 0, m_nWidth, m_nHeight}, EDGE_SUNKEN, BF_RECT);
    m_dcBase.FillSolidRect(rcInside, WHITE);
    m_dcLit.FillSolidRect(rcInside, clrTint);
    for (CDC* const pDc : {&m_dcBase, &m_dcLit}) {
        m_bar.Draw(pDc, BAR.x, BAR.y);
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(m_nMarks); ++i) {
        const int x = m_anMarkX[i];
        for (CDC* const pDc : {&m_dcBase, &m_dcLit}) {
            m_tic.Draw(pDc, x, TIC_Y);
        }
        // The tick's outer columns, above and below the bar, are ground.
        for (const int xOuter : {x, x + 7}) {
            m_dcLit.FillSolidRect(xOuter, 19, 2, 3, clrTint);
            m_dcLit.FillSolidRect(xOuter, 27, 2, 16, clrTint);
        }
        for (CDC* const pDc : {&m_dcBase, &m_dcLit}) {
            pDc->DrawText(GetSemitoneName(m_marks[i].semitone), {x + 1, 4, x + 20, 18}, 0);
        }
    }
}

int CCoarseIndicator::GetHighlightX() const {
    const int nPixels = PixelsAbove(m_fLogFrequency.load(std::memory_order_relaxed), m_fLogLow, m_fScale);
    return std::clamp(nPixels + HIGHLIGHT_OFFSET, HIGHLIGHT_MIN_X, HIGHLIGHT_MAX_X);
}

void CCoarseIndicator::Draw(CDC* pDst, bool bFull) {
    const int x = GetHighlightX();
    const int nInside = m_nHeight - 2 * FRAME;
    if (bFull) {
        m_dcShow.BitBlt(0, 0, m_nWidth, m_nHeight, &m_dcBase, 0, 0, SRCCOPY);
        m_dcShow.BitBlt(x, FRAME, HIGHLIGHT_WIDTH, nInside, &m_dcLit, x, FRAME, SRCCOPY);
        pDst->BitBlt(ORIGIN.x, ORIGIN.y, m_nWidth, m_nHeight, &m_dcShow, 0, 0, SRCCOPY);
    } else if (x != m_nLastX || !m_bHighlightShown) {
        m_dcShow.BitBlt(m_nLastX, FRAME, HIGHLIGHT_WIDTH, nInside, &m_dcBase, m_nLastX, FRAME, SRCCOPY);
        m_dcShow.BitBlt(x, FRAME, HIGHLIGHT_WIDTH, nInside, &m_dcLit, x, FRAME, SRCCOPY);
        const int nLeft = std::min(x, m_nLastX);
        const int nWidth = std::abs(x - m_nLastX) + HIGHLIGHT_WIDTH;
        pDst->BitBlt(ORIGIN.x + nLeft, ORIGIN.y + FRAME, nWidth, nInside, &m_dcShow, nLeft, FRAME, SRCCOPY);
    }
    m_nLastX = x;
    m_bHighlightShown = true;
}
