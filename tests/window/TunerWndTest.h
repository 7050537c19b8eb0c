#pragma once

#include "platform/multimedia/support/FakeWaveIn.h"
#include "window/ControlTable.h"
#include "window/RecordingMidi.h"
#include "window/TunerWndAccess.h"
#include "window/User.h"
#include "window/WorkingDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

// The real main window in the test's own process: in a directory of its own, in front of devices that do what
// the test says and of a user who answers.
class CTunerWndTest : public ::testing::Test {
protected:
    CTunerWndTest();
    ~CTunerWndTest() override;

    // Creates and shows the window, and lets the first paint come.
    void Open();
    // With two presets, "Standard" and "Drop D", which differ in the lowest string, and custom tunings.
    void OpenWith(const std::vector<CString>& custom = {}, int nListIndex = 0);
    // The close box; then the object goes.
    void Close();
    CTunerWnd& Wnd() { return *m_pWnd; }
    CTunerWndAccess Access() { return CTunerWndAccess(*m_pWnd); }

    // Settings with these choices, and the lines of custom tunings behind them.
    void WriteState(int nListIndex, int nWaveDevice, const CString& strHop = "128",
                    const std::vector<CString>& tunings = {}) const;
    // The line of numbers in the settings file.
    CString SavedSettings() const;

    // A string that does not decay into the device, as fast as it plays; at 0 Hz silence.
    void PlayString(double dFrequency);

    void Click(int nId);
    CString ACaption() { return Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(); }
    // Of the tuning in force.
    const StringNote& Note(std::size_t nString) { return Access().Current().m_strings.at(nString); }
    // The devices that were opened, as "device rate", the preferred one being -1, and a ! where it was
    // refused.
    std::vector<CString> Openings() const;

    // The window's own picture.
    COLORREF PixelAt(int x, int y);
    std::vector<std::uint32_t> CopyPicture();

    CWorkingDirectory m_directory;
    CFakeWaveInScope m_fake;
    const std::shared_ptr<CRecordingMidi> m_midi = std::make_shared<CRecordingMidi>();
    CUser m_user;
    std::unique_ptr<CTunerWnd> m_pWnd;

private:
    const std::shared_ptr<IMidiOutBackend> m_pPreviousMidi;
};
