#pragma once

#include "platform/base/Types.h"
#include "tuning/TuningList.h"

#include <atomic>
#include <string_view>

// What the user can change and what survives a restart: colours, devices, the A frequency, the hop, the
// selected row, the user's own tunings. Kept in memory; on disk it is one text file, read once at start and
// written once at the end.
//
// Belongs to the message-loop thread, but for GetNeedleColor, which any thread may call.
class CTuningStore {
public:
    static constexpr COLORREF DEFAULT_NEEDLE_COLOR = 0xA00000;
    static constexpr COLORREF DEFAULT_HIGH_COLOR = 0xFF0000;
    static constexpr COLORREF DEFAULT_LOW_COLOR = 0x008000;
    static constexpr COLORREF DEFAULT_TEXT_COLOR = 0xFF0000;
    static constexpr float DEFAULT_HOP = 128.0F;

    // Reads the settings and the custom tunings, which take the place of those held. False if the file can't
    // be read, or if anything in it is out of range or no number: then there are no custom tunings, and the
    // settings before the first bad one have been taken, so that the caller has to set all of them
    // (SetDefaults). The tuning in force isn't touched. What a killed Save has left beside the file is
    // removed.
    bool Load(const CString& strPath);
    // Replaces the file in one step: whatever happens, the old one or the new one is there, whole. A file
    // that Load refused is kept beside it before (state.txt as state.rejected.txt). False if it couldn't be
    // written, or the refused one not kept; what was there is still there then, under its name.
    bool Save(const CString& strPath);

    // The same on the text alone.
    bool LoadText(std::string_view strText);
    CString SaveText();

    // All settings of the file as they are before anybody chose. The custom tunings stay.
    void SetDefaults();

    COLORREF GetNeedleColor() const { return m_clrNeedle.load(std::memory_order_relaxed); }
    void SetNeedleColor(COLORREF clr) { m_clrNeedle.store(clr, std::memory_order_relaxed); }
    // A level that is too high, and one that is too low: the ends of the level meter's gradient.
    COLORREF GetHighColor() const { return m_clrHigh; }
    void SetHighColor(COLORREF clr) { m_clrHigh = clr; }
    COLORREF GetLowColor() const { return m_clrLow; }
    void SetLowColor(COLORREF clr) { m_clrLow = clr; }
    // The letters and digits of the dial.
    COLORREF GetTextColor() const { return m_clrText; }
    void SetTextColor(COLORREF clr) { m_clrText = clr; }

    // The list box's row at the last exit. Nothing here compares it with a list.
    int GetListIndex() const { return m_nListIndex; }
    void SetListIndex(int nIndex) { m_nListIndex = nIndex; }
    // Hz, 430.0 to 450.0.
    float GetAFrequency() const { return m_fAFrequency; }
    void SetAFrequency(float fFrequency) { m_fAFrequency = fFrequency; }
    // 0 is the preferred device, n the platform's device n - 1, -1 nothing chosen.
    int GetMidiDevice() const { return m_nMidiDevice; }
    void SetMidiDevice(int nDevice) { m_nMidiDevice = nDevice; }
    int GetWaveDevice() const { return m_nWaveDevice; }
    void SetWaveDevice(int nDevice) { m_nWaveDevice = nDevice; }
    // The hop, in samples, with which capture starts.
    float GetHop() const { return m_fHop; }
    void SetHop(float fHop) { m_fHop = fHop; }

    // The tuning in force, changed in place by callers; not stored in the file.
    Tuning* GetCurrentTuning() { return &m_current; }
    CTuningList* GetCustomTunings() { return &m_customTunings; }

private:
    // The only member that two threads look at: a frame reads it while a dialog may be changing it. A single
    // value that orders nothing else, hence relaxed.
    std::atomic<COLORREF> m_clrNeedle = DEFAULT_NEEDLE_COLOR;
    COLORREF m_clrHigh = DEFAULT_HIGH_COLOR;
    COLORREF m_clrLow = DEFAULT_LOW_COLOR;
    COLORREF m_clrText = DEFAULT_TEXT_COLOR;
    Tuning m_current;
    CTuningList m_customTunings;
    int m_nListIndex = 0;
    float m_fAFrequency = DEFAULT_A_FREQUENCY;
    int m_nMidiDevice = -1;
    int m_nWaveDevice = -1;
    float m_fHop = DEFAULT_HOP;

    CString m_strRefusedPath;  // a file that Load found and refused; empty when there is none
};
