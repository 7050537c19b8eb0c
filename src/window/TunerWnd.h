#pragma once

#include "analysis/NoteTracker.h"
#include "analysis/PitchEngine.h"
#include "platform/drawing/Font.h"
#include "platform/windows/Button.h"
#include "platform/windows/Static.h"
#include "platform/windows/Wnd.h"
#include "tones/TonePlayer.h"
#include "tuning/TuningList.h"
#include "tuning/TuningStore.h"
#include "widgets/CoarseIndicator.h"
#include "widgets/FineDial.h"
#include "widgets/LevelMeter.h"
#include "widgets/OpacityBitmap.h"
#include "widgets/StringDiagram.h"
#include "window/ErrorLog.h"
#include "window/ForwardingButton.h"
#include "window/ForwardingListBox.h"
#include "window/NeedleFade.h"
#include "window/SpokenReading.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

struct CaptureAttempt;
struct ControlPlace;

// The main window. It owns all the rest: controls, widgets, settings, analysis.
//
// Two threads are at home here. The message loop runs the handlers; the capture thread runs OnFrame for each
// block of samples, which draws the live widgets straight into the window. They meet only in the window's
// picture lock, held for one widget's draw at a time, and in single values: m_bClosing, once set, lets no
// frame draw any more.
class CTunerWnd final : public CWnd {
public:
    // Creates the window too, and starts the capture. If that fails there is no window (IsWindow), the error
    // log says why, and nothing runs.
    CTunerWnd();
    ~CTunerWnd() override;

    // The engine's block callback: runs OnFrame of the window that pParam is.
    static void FrameCallback(void* pParam);
    // One frame of the display, from the engine's latest block. On the thread that analyses; it allocates
    // nothing but the frames-per-second text, and waits for nothing but the picture lock.
    void OnFrame();

    // Switches the frames-per-second text on or off.
    void ToggleFrameRate();

protected:
    const CMessageMap& GetMessageMap() const override;
    void PostNcDestroy() override;

private:
    friend class CTunerWndAccess;  // the tests' and benchmarks' way in

    // Coming up
    int OnCreate();
    void LoadSettings();
    bool CreateFonts();
    bool CreateButtonsAndTexts();
    bool CreateList();
    void FillList();
    bool CreateLogo();
    bool CreateStringGroup();
    bool CreateIndicators();
    void SelectStoredRow();
    void SetFirstReading();
    bool CreateControl(CForwardingButton& button, const ControlPlace& place, const CString& strCaption);
    bool CreateControl(CStatic& text, const ControlPlace& place);
    bool Succeed(bool bDone, const char* szFailure) const;

    // Capture
    void StartCapture();
    bool TryCapture(const CaptureAttempt& attempt, int nDevice);
    void OnMove();

    // The frame
    void ShowReading();
    bool DrawReading();
    bool DrawLiveWidgets(CDC& dc);
    void DrawDial(CDC& dc);
    COLORREF GetFadedNeedleColor() const;
    void CountFrame();

    // Painting
    void OnPaint();
    void OnTimer();
    void DrawTuning();

    // Tunings
    bool LoadPresets(const CString& strPath);
    void OnSelChange();
    void OnAddTuning();
    void OnDeleteTuning();
    // Finds the row, or makes one, for the tuning in force after a string of it was set by hand.
    void SyncListToCurrent();
    void ShowTuning();

    // The frequency of the note A
    void OnAFrequency();
    void FormatAButton();

    // Options
    void OnOptions();
    void ChooseWaveDevice(int nRow, const CString& strKey);
    // Shows the store's colours.
    LRESULT OnColorsChanged();

    // Tones
    void OnPlay();
    void PlayString(std::size_t nString);

    // The popup of notes for a string
    void OnContextMenu(CWnd* pWnd, POINT ptScreen);
    void OnNoteCommand(int nId);

    // Keys
    void OnChar(UINT nChar);
    // Whether this is the other end of a press that has acted already.
    bool HasActed(UINT nKey);
    void MoveFocus();

    // Help
    void OnHelp();
    static void OpenWebPage();

    // Mouse
    void OnMouseMove(UINT nFlags, POINT pt);
    void OnLButtonDown(UINT nFlags, POINT pt);
    void OnLButtonUp(UINT nFlags, POINT pt);
    void OnRButtonDown(UINT nFlags, POINT pt);
    void OnRButtonUp(UINT nFlags, POINT pt);
    // Shows the text of the hint table's row that holds the point, when the mouse has come into it.
    void UpdateHint(POINT pt);

    // Going down
    void OnClose();
    void OnExit();
    void OnDestroy();
    void BeginClosing();

    CForwardingButton m_btnPlay;
    CForwardingButton m_btnA;
    CForwardingButton m_btnAdd;
    CForwardingButton m_btnDel;
    CForwardingButton m_btnOptions;
    CForwardingButton m_btnHelp;
    CForwardingButton m_btnExit;
    CStatic m_stcHint;
    CForwardingListBox m_lbTunings;
    CStatic m_stcPresets;
    COpacityBitmap m_logo;
    CStringDiagram m_stringDiagram;
    CButton m_grpStrings;
    CLevelMeter m_levelMeter;
    CCoarseIndicator m_coarse;
    CFineDial m_fineDial;
    CStatic m_stcFps;
    CFont m_fontMain;
    CFont m_fontPreset;
    CTuningStore m_store;
    CTuningList m_presets;
    CPitchEngine m_engine;
    CNoteTracker m_tracker;
    CTonePlayer m_tonePlayer;
    CErrorLog m_errorLog;
    CSpokenReading m_spokenReading;
    CString m_strAButton;
    CString m_strWaveKey;  // of the chosen recording device, whose row may change while it is in use
    int m_nHint = -1;      // the row of the hint table under the mouse, -1 for none
    int m_nPresetCount = 0;
    // The rows of the hint table where the mouse buttons went down, -1 for none of interest.
    int m_nLeftArea = -1;
    int m_nRightArea = -1;
    int m_nPressedString = -1;  // the string where the left button did
    int m_nMenuString = -1;     // the string that the popup of notes belongs to
    int m_nTabCount = 0;        // how often Tab came up on the options button
    UINT m_nActedKey = 0;       // the key that acted last when it went down, 0 for none
    DWORD m_dwActed = 0;        // and when, of timeGetTime
    std::atomic<bool> m_bClosing = false;
    COLORREF m_clrFace = CLR_INVALID;  // the face colour that the logo was last blended for

    // The capture thread's own, but for the switch. They hold before the capture starts.
    std::atomic<bool> m_bShowFps = false;
    DWORD m_dwFpsStart = 0;      // of timeGetTime
    std::int64_t m_nFrames = 0;  // since then
    // Milliseconds of timeGetTime; the start is a time long past, so that the needle stands grey at first.
    float m_fFadeStart = 500.0F;
    float m_fFadeHold = 100.0F;
    float m_fFadeLength = 1500.0F;
    COLORREF m_clrFade = CLR_FADED_NEEDLE;
    bool m_bPrevHolding = true;

    // The needle's colour as a frame has drawn it last. Under the picture lock.
    COLORREF m_clrFadeDrawn = CLR_FADED_NEEDLE;
};
