#include "window/TunerWndTest.h"

#include "platform/base/String.h"
#include "platform/drawing/Picture.h"
#include "platform/windows/support/Toolkit.h"

#include <cmath>
#include <mutex>
#include <numbers>

CTunerWndTest::CTunerWndTest() : m_pPreviousMidi(SetMidiOutBackend(m_midi)) {}

CTunerWndTest::~CTunerWndTest() {
    m_pWnd.reset();
    SetMidiOutBackend(m_pPreviousMidi);
}

void CTunerWndTest::Open() {
    m_pWnd = std::make_unique<CTunerWnd>();
    if (m_pWnd->IsWindow()) {
        m_pWnd->ShowWindow(SW_SHOW);
        m_pWnd->UpdateWindow();
        toolkit::RunPending();
    }
}

void CTunerWndTest::OpenWith(const std::vector<CString>& custom, int nListIndex) {
    m_directory.Write("preset.txt",
                      "Standard\t3\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n"
                      "Drop D\t4\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2");
    WriteState(nListIndex, 0, "128", custom);
    Open();
}

void CTunerWndTest::Close() {
    toolkit::CloseBox(*m_pWnd);
    toolkit::RunPending();
    m_pWnd.reset();
}

void CTunerWndTest::WriteState(int nListIndex, int nWaveDevice, const CString& strHop,
                               const std::vector<CString>& tunings) const {
    CString strText = FormatText(
        "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
        "44100\t10485760\t16711680\t32768\t16711680\t0\t%d\t%d\t%s\t%d\n",
        nWaveDevice, nListIndex, strHop.c_str(), static_cast<int>(tunings.size()));
    for (const CString& strTuning : tunings) {
        strText += strTuning + "\n";
    }
    m_directory.Write("state.txt", strText);
}

CString CTunerWndTest::SavedSettings() const {
    const CString strState = m_directory.Read("state.txt");
    const std::size_t nBegin = strState.find('\n') + 1;
    return strState.substr(nBegin, strState.find('\n', nBegin) - nBegin);
}

void CTunerWndTest::PlayString(double dFrequency) {
    constexpr double HALF_RATE = 11025.0 / 2.0;
    constexpr std::chrono::microseconds REAL_TIME(11610);
    m_fake->Play(
        [dPhase = std::numbers::pi * dFrequency / HALF_RATE](std::uint64_t n) {
            const double dNow = dPhase * static_cast<double>(n);
            return static_cast<std::int16_t>(6000.0 * std::sin(dNow) + 4000.0 * std::sin(2.0 * dNow) +
                                             2000.0 * std::sin(3.0 * dNow));
        },
        {128, REAL_TIME});
}

void CTunerWndTest::Click(int nId) {
    toolkit::Click(*Wnd().GetDlgItem(nId), {5, 5});
}

std::vector<CString> CTunerWndTest::Openings() const {
    std::vector<CString> result;
    for (const auto& opening : m_fake->GetOpenings()) {
        result.push_back(std::to_string(static_cast<int>(opening.uDeviceId)) + " " +
                         std::to_string(opening.nSampleRate) + (opening.result != 0 ? "!" : ""));
    }
    return result;
}

COLORREF CTunerWndTest::PixelAt(int x, int y) {
    const std::scoped_lock lock(m_pWnd->GetPictureLock());
    return ColorFromPixel(m_pWnd->GetPicture().GetSurface().GetRow(y)[x]);
}

std::vector<std::uint32_t> CTunerWndTest::CopyPicture() {
    const std::scoped_lock lock(m_pWnd->GetPictureLock());
    const CSurface& surface = m_pWnd->GetPicture().GetSurface();
    const auto nPixels =
        static_cast<std::ptrdiff_t>(surface.GetWidth()) * static_cast<std::ptrdiff_t>(surface.GetHeight());
    return {surface.GetRow(0), surface.GetRow(0) + nPixels};
}
