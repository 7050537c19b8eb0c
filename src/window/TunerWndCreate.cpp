#include "platform/drawing/Dc.h"
#include "platform/drawing/SysColors.h"
#include "platform/multimedia/TimeGetTime.h"
#include "platform/windows/ClientDc.h"
#include "window/CaptureLadder.h"
#include "window/ControlTable.h"
#include "window/FontSize.h"
#include "window/HintTable.h"
#include "window/TunerWnd.h"

#include <mutex>

namespace {

constexpr int CREATE_FAILED = -1;
constexpr const char* FONT_FACE = "MS Sans Serif";
constexpr int EIGHT_POINTS = 80;
constexpr UINT PAINT_TIMER = 1;
constexpr UINT PAINT_PERIOD = 500;
// What the dial shows before anything was heard.
constexpr int FIRST_SEMITONE = 6;

}  // namespace

int CTunerWnd::OnCreate() {
    if (Default() == CREATE_FAILED) {
        return CREATE_FAILED;
    }
    m_errorLog.SetFile("errorlog.txt");
    LoadSettings();
    if (!CreateFonts() || !CreateButtonsAndTexts() || !CreateList()) {
        return CREATE_FAILED;
    }
    FillList();
    if (!CreateLogo() || !CreateStringGroup() || !CreateIndicators()) {
        return CREATE_FAILED;
    }
    SelectStoredRow();
    m_tonePlayer.SetAFrequency(m_store.GetAFrequency());
    SetFirstReading();
    m_dwFpsStart = timeGetTime();
    m_nFrames = 0;
    m_bPrevHolding = true;
    m_bClosing = false;
    // From here on frames come, on the capture thread: all that they need is in place.
    StartCapture();
    SetTimer(PAINT_TIMER, PAINT_PERIOD);
    return 0;
}

void CTunerWnd::LoadSettings() {
    if (!m_store.Load("state.txt")) {
        m_store.SetDefaults();
        m_errorLog.Log("Unable to open state.txt, using defaults.");
    }
    // Where no capture comes about, this is the hop that is stored again.
    m_engine.SetHop(CutHop(m_store.GetHop()));
}

bool CTunerWnd::CreateFonts() {
    CFont fontEightPoints;
    CClientDC dc(this);
    TEXTMETRIC metrics;
    bool bMeasured = fontEightPoints.CreatePointFont(EIGHT_POINTS, FONT_FACE, &dc);
    if (bMeasured) {
        CFont* pOldFont = dc.SelectObject(&fontEightPoints);
        bMeasured = dc.GetTextMetrics(&metrics) && metrics.tmHeight > 0;
        dc.SelectObject(pOldFont);
    }
    const int nMainSize = bMeasured ? MainFontSize(metrics.tmHeight) : 0;
    return Succeed(bMeasured && m_fontMain.CreatePointFont(nMainSize, FONT_FACE, &dc),
                   "Unable to create 80 point MS San Serif for main font") &&
           Succeed(m_fontPreset.CreatePointFont(PresetFontSize(nMainSize), FONT_FACE, &dc),
                   "Unable to create 120 point MS San Serif for preset font");
}

bool CTunerWnd::CreateButtonsAndTexts() {
    FormatAButton();
    const bool bCreated = CreateControl(m_btnPlay, CONTROL_PLAY, CONTROL_PLAY.szCaption) &&
                          CreateControl(m_btnA, CONTROL_A, m_strAButton) &&
                          CreateControl(m_btnAdd, CONTROL_ADD, CONTROL_ADD.szCaption) &&
                          CreateControl(m_btnDel, CONTROL_DELETE, CONTROL_DELETE.szCaption) &&
                          CreateControl(m_btnOptions, CONTROL_OPTIONS, CONTROL_OPTIONS.szCaption) &&
                          CreateControl(m_btnHelp, CONTROL_HELP, CONTROL_HELP.szCaption) &&
                          CreateControl(m_btnExit, CONTROL_EXIT, CONTROL_EXIT.szCaption) &&
                          CreateControl(m_stcHint, CONTROL_HINT) && CreateControl(m_stcFps, CONTROL_FPS);
    if (!bCreated) {
        return false;
    }
    m_bShowFps = false;
    for (CWnd* pControl :
         {static_cast<CWnd*>(&m_btnPlay), static_cast<CWnd*>(&m_btnA), static_cast<CWnd*>(&m_btnAdd),
          static_cast<CWnd*>(&m_btnDel), static_cast<CWnd*>(&m_btnOptions), static_cast<CWnd*>(&m_btnHelp),
          static_cast<CWnd*>(&m_btnExit), static_cast<CWnd*>(&m_stcHint), static_cast<CWnd*>(&m_stcFps)}) {
        pControl->SetFont(m_fontMain, false);
    }
    return true;
}

bool CTunerWnd::CreateList() {
    if (!Succeed(m_lbTunings.Create(CONTROL_TUNINGS.dwStyle, CONTROL_TUNINGS.rc, this, CONTROL_TUNINGS.nId),
                 CONTROL_TUNINGS.szFailure)) {
        return false;
    }
    m_lbTunings.SetFont(m_fontMain, false);
    m_lbTunings.SetAccessibleName(CONTROL_TUNINGS.szSpoken);
    if (!CreateControl(m_stcPresets, CONTROL_PRESETS)) {
        return false;
    }
    m_stcPresets.SetFont(m_fontPreset, false);
    return true;
}

bool CTunerWnd::CreateLogo() {
    if (!Succeed(m_logo.Load("FVLogo.bmp", "FVLogoOp.bmp", this), "Cannot find file FVSmall.bmp")) {
        return false;
    }
    m_logo.Blend(GetSysColor(COLOR_BTNFACE));
    m_clrFace = CLR_INVALID;
    return true;
}

bool CTunerWnd::CreateStringGroup() {
    if (!Succeed(m_stringDiagram.Create(this), "Unable to create string diagram") ||
        !Succeed(m_grpStrings.Create(CONTROL_STRINGS.szCaption, CONTROL_STRINGS.dwStyle, CONTROL_STRINGS.rc,
                                     this, CONTROL_STRINGS.nId),
                 CONTROL_STRINGS.szFailure)) {
        return false;
    }
    m_grpStrings.SetFont(m_fontMain, false);
    return true;
}

bool CTunerWnd::CreateIndicators() {
    // The window shows nothing yet and no frame runs, so that nobody else draws.
    const std::scoped_lock lock(GetPictureLock());
    if (!Succeed(m_levelMeter.Create(this, HINT_TABLE[HINT_LEVEL].rc),
                 "Unable to create fine tuning indicator")) {
        return false;
    }
    m_levelMeter.SetColors(m_store.GetHighColor(), m_store.GetLowColor());
    m_levelMeter.SetLevel(0.0F);
    if (!Succeed(m_coarse.Create(this), "Unable to create the global tuning indicator")) {
        return false;
    }
    m_coarse.SetColor(m_store.GetNeedleColor());
    // A dial without its pictures draws what it has.
    m_fineDial.Create(this);
    return true;
}

void CTunerWnd::SelectStoredRow() {
    if (m_store.GetListIndex() > m_lbTunings.GetCount() - 1) {
        m_store.SetListIndex(0);
    }
    m_lbTunings.SetCurSel(m_store.GetListIndex());
    OnSelChange();
}

void CTunerWnd::SetFirstReading() {
    const std::scoped_lock lock(GetPictureLock());
    m_coarse.SetTuning(*m_store.GetCurrentTuning());
    m_coarse.SetAFrequency(m_store.GetAFrequency());
    m_coarse.SetFrequency(0.0F);
    m_fineDial.SetColor(CLR_FADED_NEEDLE);
    m_fineDial.SetDigitColor(m_store.GetTextColor());
    m_fineDial.SetNote(FIRST_SEMITONE);
    m_fineDial.SetCents(0);
}

bool CTunerWnd::CreateControl(CForwardingButton& button, const ControlPlace& place,
                              const CString& strCaption) {
    if (!Succeed(button.Create(strCaption, place.dwStyle, place.rc, this, place.nId), place.szFailure)) {
        return false;
    }
    if (place.szSpoken != nullptr) {
        button.SetAccessibleName(place.szSpoken);
    }
    return true;
}

bool CTunerWnd::CreateControl(CStatic& text, const ControlPlace& place) {
    return Succeed(text.Create(place.szCaption, place.dwStyle, place.rc, this, place.nId), place.szFailure);
}

bool CTunerWnd::Succeed(bool bDone, const char* szFailure) const {
    if (!bDone) {
        m_errorLog.Log(szFailure);
    }
    return bDone;
}
