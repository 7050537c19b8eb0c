#pragma once

#include "widgets/CoarseIndicator.h"
#include "widgets/FineDial.h"
#include "widgets/LevelMeter.h"
#include "widgets/StringDiagram.h"

// All that the four widgets are given.
struct DisplayState {
    float fLevel = 0.0F;
    float fHz = 0.0F;
    int nSemitone = 6;
    int nCents = 0;
    COLORREF clrDialNeedle = 0xA0A0A0;
    COLORREF clrNeedle = 0xA00000;
    COLORREF clrHigh = 0xFF0000;
    COLORREF clrLow = 0x008000;
    COLORREF clrText = 0xFF0000;
    Tuning tuning = Tuning::StandardE();
    float fA = DEFAULT_A_FREQUENCY;
};

// The widgets of the main window, in its places, driven as the window drives them.
class CWidgetSet {
public:
    static constexpr RECT s_rcMeter = {210, 43, 240, 300};
    static constexpr RECT s_rcDial = {250, 43, 490, 300};
    static constexpr RECT s_rcCoarse = {10, 310, 490, 360};
    static constexpr RECT s_rcDiagram = {20, 34, 190, 102};

    bool Create(CWnd* pWnd) {
        return m_meter.Create(pWnd, s_rcMeter) && m_coarse.Create(pWnd) && m_dial.Create(pWnd) &&
               m_diagram.Create(pWnd);
    }

    // Hands over everything; the next full draw shows it.
    void SetAll(const DisplayState& state) {
        SetColors(state);
        SetTuning(state);
        SetReading(state);
        m_dial.SetColor(state.clrDialNeedle);
    }
    void SetColors(const DisplayState& state) {
        m_meter.SetColors(state.clrHigh, state.clrLow);
        m_dial.SetDigitColor(state.clrText);
        m_coarse.SetColor(state.clrNeedle);
        m_coarse.Rebuild();
    }
    void SetTuning(const DisplayState& state) {
        m_diagram.SetTuning(state.tuning);
        m_coarse.SetTuning(state.tuning);
        m_coarse.SetAFrequency(state.fA);
    }
    // What a frame hands over before it draws.
    void SetReading(const DisplayState& state) {
        m_meter.SetLevel(state.fLevel);
        m_coarse.SetFrequency(state.fHz);
        m_dial.SetCents(state.nCents);
        m_dial.SetNote(state.nSemitone);
    }
    void DrawFull(CDC* pDc) {
        m_diagram.Draw(pDc, true);
        m_meter.Draw(pDc, true);
        m_coarse.Draw(pDc, true);
        m_dial.Draw(pDc, true, false);
    }

    CLevelMeter m_meter;
    CCoarseIndicator m_coarse;
    CFineDial m_dial;
    CStringDiagram m_diagram;
};
