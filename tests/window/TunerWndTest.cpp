#include "window/TunerWndTest.h"

#include "platform/base/String.h"
#include "platform/drawing/Picture.h"
#include "platform/windows/support/Toolkit.h"
#include "stage/SyntheticString.h"

#include <mutex>
#include <sstream>

namespace {

// 128 samples at 11025 Hz.
constexpr CFakeWaveIn::Rhythm REAL_TIME{128, std::chrono::microseconds(11610)};

}  // namespace

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

CString CTunerWndTest::StateField(std::size_t nField) const {
    std::istringstream state(m_directory.Read("state.txt"));
    CString strField;
    std::getline(state, strField);
    for (std::size_t i = 0; i <= nField; ++i) {
        state >> strField;
    }
    return strField;
}

void CTunerWndTest::PlayString(double dFrequency) {
    SyntheticString string;
    string.dFrequency = dFrequency;
    constexpr int TEN_SECONDS = 110250;
    m_fake->Play([samples = string.MakeSamples(TEN_SECONDS)](
                     std::uint64_t n) { return samples[static_cast<std::size_t>(n) % samples.size()]; },
                 REAL_TIME);
}

void CTunerWndTest::PlaySilence() {
    m_fake->Play([](std::uint64_t) { return std::int16_t{0}; }, REAL_TIME);
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
