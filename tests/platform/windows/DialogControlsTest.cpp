#include "platform/windows/Button.h"
#include "platform/windows/ClientDc.h"
#include "platform/windows/DataExchange.h"
#include "platform/windows/Dialog.h"
#include "platform/windows/Slider.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <mutex>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

constexpr int g_nSlider = 21;
constexpr int g_nSwatch = 22;

constexpr std::array g_controls{
    DialogControl{DialogControlKind::Static, g_nSwatch, "1", 10, 10, 20, 20, WS_BORDER | SS_SUNKEN},
    DialogControl{DialogControlKind::Slider, g_nSlider, "", 10, 40, 80, 19},
};
constexpr DialogTemplate g_template{9, "page", 100, 90, g_controls};

class CPage : public CDialog {
public:
    CPage() : CDialog(g_template) {}
    using CDialog::CreatePage;

    std::vector<std::string> m_log;
    CSliderCtrl m_slider;
    CButton m_swatch;  // a button on a label: a label still
    int m_nBadId = 0;

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapMessage<&CPage::OnLButtonDown>(WM_LBUTTONDOWN),
                                            MapMessage<&CPage::OnPaint>(WM_PAINT)};
        static const CMessageMap map{entries, &CDialog::GetMessageMap()};
        return map;
    }
    void DoDataExchange(CDataExchange* pDX) override {
        DDX_Control(pDX, g_nSlider, m_slider);
        DDX_Control(pDX, m_nBadId != 0 ? m_nBadId : g_nSwatch, m_swatch);
    }

private:
    void OnLButtonDown(UINT /*nFlags*/, POINT pt) {
        RECT rc = m_swatch.GetWindowRect();
        ClientToScreen(pt);
        m_log.emplace_back(PtInRect(rc, pt) ? "down on swatch" : "down");
    }
    void OnPaint() {
        Default();
        m_log.emplace_back("paint");
    }
};

TEST(DialogControls, AMemberThatFindsNoControlEndsTheDialog) {
    CPage dialog;
    dialog.m_nBadId = 99;
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_FALSE(dialog.m_slider.IsWindow()) << "what was bound goes with the window";
}

TEST(DialogControls, ASliderStaysInItsRangeAndMovesByPages) {
    CPage dialog;
    toolkit::Later([&dialog] {
        CSliderCtrl& slider = dialog.m_slider;
        EXPECT_EQ(dialog.GetDlgItem(g_nSlider), &slider);
        slider.SetRange(-20, 30);
        slider.SetPos(99);
        EXPECT_EQ(slider.GetPos(), 30);
        slider.SetPos(-99);
        EXPECT_EQ(slider.GetPos(), -20);
        const RECT rc = slider.GetClientRect();
        toolkit::Click(slider, {rc.right * 3 / 4, rc.bottom / 3});
        EXPECT_EQ(slider.GetPos(), -10);
        dialog.EndDialog(IDOK);
    });
    EXPECT_EQ(dialog.DoModal(), IDOK);
}

TEST(DialogControls, APageLivesInItsSheetAndItsLabelsShowWhatIsDrawnOnThem) {
    std::vector<std::string> log;
    CRecordingWnd sheet(log);
    ASSERT_TRUE(sheet.Open(300, 250));
    CPage page;
    EXPECT_FALSE(page.CreatePage(nullptr));
    ASSERT_TRUE(page.CreatePage(&sheet));
    const RECT rcClient = page.m_swatch.GetClientRect();
    const RECT rcWindow = page.m_swatch.GetWindowRect();
    EXPECT_EQ(rcWindow.Width(), rcClient.Width() + 4) << "a sunken frame with a border is two pixels wide";
    constexpr COLORREF clrNeedle = 0xA00000;
    {
        CClientDC dc(&page.m_swatch);
        const std::scoped_lock lock(page.m_swatch.GetPictureLock());
        dc.FillSolidRect(rcClient, clrNeedle);
    }
    page.ShowWindow(SW_SHOW);
    sheet.ShowWindow(SW_SHOW);
    POINT ptOrigin;
    page.m_swatch.ClientToScreen(ptOrigin);
    sheet.ScreenToClient(ptOrigin);
    const auto shown = [&](int x, int y) {
        const toolkit::Screenshot shot = toolkit::GrabScreen(sheet);
        return shot.pixels.empty() ? 0 : shot.At(ptOrigin.x + x, ptOrigin.y + y);
    };
    EXPECT_TRUE(toolkit::WaitUntil([&] { return shown(0, 0) == 0xFF0000A0U; }));
    EXPECT_EQ(shown(rcClient.right - 1, rcClient.bottom - 1), 0xFF0000A0U);
    EXPECT_NE(shown(-1, -1), 0xFF0000A0U);
    EXPECT_NE(shown(rcClient.right, rcClient.bottom), 0xFF0000A0U);
    EXPECT_EQ(page.m_log.back(), "paint");
    {
        CClientDC dc(&page.m_swatch);
        dc.FillSolidRect(rcClient, 0x0000FF);
    }
    EXPECT_TRUE(toolkit::WaitUntil([&] { return shown(1, 1) == 0xFFFF0000U; }));

    page.m_log.clear();
    toolkit::RunFor(50);
    EXPECT_TRUE(page.m_log.empty()) << "no paint brings on the next";
    page.InvalidateRect(nullptr, false);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return !page.m_log.empty(); }));
    toolkit::ClickInto(sheet, ptOrigin);
    toolkit::ClickInto(sheet, {ptOrigin.x - 5, ptOrigin.y});
    EXPECT_THAT(page.m_log, ElementsAre("paint", "down on swatch", "down"));
    sheet.DestroyWindow();
    EXPECT_FALSE(page.IsWindow());
    EXPECT_FALSE(page.m_swatch.IsWindow());
}

}  // namespace
