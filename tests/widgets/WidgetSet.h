#pragma once

#include "widgets/CoarseIndicator.h"
#include "widgets/FineDial.h"
#include "widgets/LevelMeter.h"
#include "widgets/StringDiagram.h"

// What a frame may change.
struct DisplayReading {
    float fLevel = 0.0F;
    float fHz = 0.0F;
    int nSemitone = 6;
    int nCents = 0;
    COLORREF clrDialNeedle = 0xA0A0A0;
};
// What the user may change.
struct DisplaySettings {
    COLORREF clrNeedle = 0xA00000;
    COLORREF clrHigh = 0xFF0000;
    COLORREF clrLow = 0x008000;
    COLORREF clrText = 0xFF0000;
    Tuning tuning = Tuning::StandardE();
    float fA = DEFAULT_A_FREQUENCY;
};
struct DisplayState : DisplayReading, DisplaySettings {};

// The widgets of the main window, in its places, driven as the window drives them.
class CWidgetSet {
public:
    static constexpr RECT s_rcMeter = {210, 43, 240, 300};
    static constexpr RECT s_rcDial = {250, 43, 490, 300};
    static constexpr RECT s_rcCoarse = {10, 310, 490, 360};

    bool Create(CWnd* pWnd) {
        return m_meter.Create(pWnd, s_rcMeter) && m_coarse.Create(pWnd) && m_dial.Create(pWnd) &&
               m_diagram.Create(pWnd);
    }

    // Hands over everything; the next full draw shows it.
    void SetAll(const DisplayState& state) {
        SetSettings(state);
        SetReading(state);
        m_dial.SetColor(state.clrDialNeedle);
    }
    void SetSettings(const DisplaySettings& settings) {
        m_meter.SetColors(settings.clrHigh, settings.clrLow);
        m_dial.SetDigitColor(settings.clrText);
        m_coarse.SetColor(settings.clrNeedle);
        m_coarse.Rebuild();
        m_diagram.SetTuning(settings.tuning);
        m_coarse.SetTuning(settings.tuning);
        m_coarse.SetAFrequency(settings.fA);
    }
    // What a frame hands over before it draws.
    void SetReading(const DisplayReading& reading) {
        m_meter.SetLevel(reading.fLevel);
        m_coarse.SetFrequency(reading.fHz);
        m_dial.SetCents(reading.nCents);
        m_dial.SetNote(reading.nSemitone);
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
