#include "platform/windows/Button.h"
#include "platform/windows/ClientDc.h"
#include "platform/windows/DataExchange.h"
#include "platform/windows/Dialog.h"
#include "platform/windows/Edit.h"
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

constexpr int g_nEdit = 20;
constexpr int g_nSlider = 21;
constexpr int g_nSwatch = 22;

constexpr std::array g_controls{
    DialogControl{DialogControlKind::Static, g_nSwatch, "1", 10, 10, 20, 20, WS_BORDER | SS_SUNKEN},
    DialogControl{DialogControlKind::Edit, g_nEdit, "", 40, 10, 40, 14},
    DialogControl{DialogControlKind::Slider, g_nSlider, "", 10, 40, 80, 19},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 40, 70, 50, 14},
};
constexpr DialogTemplate g_template{9, "page", 100, 90, g_controls};

// Writes down, in the log of its dialog, what its message map gets.
template <class Control>
class CLogging : public Control {
public:
    explicit CLogging(std::vector<std::string>& log) : m_log(log) {}

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapMessage<&CLogging::OnKeyDown>(WM_KEYDOWN),
                                            MapMessage<&CLogging::OnWheel>(WM_MOUSEWHEEL)};
        static const CMessageMap map{entries, &Control::GetMessageMap()};
        return map;
    }

private:
    void OnKeyDown(UINT nKey) {
        m_log.push_back(FormatText("key:%u", nKey));
        this->Default();
    }
    void OnWheel(WPARAM wParam, LPARAM /*lParam*/) {
        m_log.push_back(FormatText("wheel:%d", static_cast<std::int16_t>(wParam >> 16U)));
        this->Default();
    }

    std::vector<std::string>& m_log;
};

class CPage : public CDialog {
public:
    CPage() : CDialog(g_template) {}
    using CDialog::CreatePage;

    std::vector<std::string> m_log;
    CLogging<CEdit> m_edit{m_log};
    CLogging<CSliderCtrl> m_slider{m_log};
    CButton m_swatch;  // a button on a label: a label still
    int m_nBadId = 0;

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapNotification<&CPage::OnEditChange>(EN_CHANGE, g_nEdit),
                                            MapNotify<&CPage::OnReleased>(NM_RELEASEDCAPTURE, g_nSlider),
                                            MapMessage<&CPage::OnLButtonDown>(WM_LBUTTONDOWN),
                                            MapMessage<&CPage::OnPaint>(WM_PAINT)};
        static const CMessageMap map{entries, &CDialog::GetMessageMap()};
        return map;
    }
    void DoDataExchange(CDataExchange* pDX) override {
        DDX_Control(pDX, g_nSlider, m_slider);
        DDX_Control(pDX, g_nEdit, m_edit);
        DDX_Control(pDX, m_nBadId != 0 ? m_nBadId : g_nSwatch, m_swatch);
    }

private:
    void OnEditChange() { m_log.push_back("change:" + m_edit.GetWindowText()); }
    void OnReleased() { m_log.emplace_back("released"); }
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

TEST(DialogControls, MembersBecomeTheControlsOfTheTemplateEachTime) {
    CPage dialog;
    for (int nTime = 0; nTime < 2; ++nTime) {
        dialog.m_log.clear();
        toolkit::Later([&dialog] {
            EXPECT_EQ(dialog.GetDlgItem(g_nEdit), &dialog.m_edit);
            EXPECT_EQ(dialog.m_edit.GetParent(), &dialog);
            EXPECT_TRUE(toolkit::WaitUntil([&] { return CWnd::GetFocus() == &dialog.m_edit; }));
            EXPECT_TRUE(dialog.UpdateData(true)) << "bound already";
            dialog.m_log.clear();
            dialog.SetDlgItemText(g_nEdit, "440.0");
            dialog.SetDlgItemText(g_nEdit, "440.0");
            toolkit::TypeText(dialog.m_edit, "4");
            EXPECT_THAT(dialog.m_log, ElementsAre("change:440.0", "change:440.0", "key:52", testing::_));
            toolkit::Click(*dialog.GetDlgItem(IDOK), {5, 5});
        });
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_FALSE(dialog.m_edit.IsWindow());
    }
    dialog.m_nBadId = 99;
    EXPECT_EQ(dialog.DoModal(), -1);
}

TEST(DialogControls, ASliderStaysInItsRangeAndTellsOfItsRelease) {
    CPage dialog;
    toolkit::Later([&dialog] {
        CSliderCtrl& slider = dialog.m_slider;
        slider.SetRange(-20, 30);
        slider.SetPos(99);
        EXPECT_EQ(slider.GetPos(), 30);
        slider.SetPos(-99);
        EXPECT_EQ(slider.GetPos(), -20);
        dialog.m_log.clear();
        const POINT ptBeside{slider.GetClientRect().right * 3 / 4, slider.GetClientRect().bottom / 3};
        toolkit::Press(slider, ptBeside);
        EXPECT_EQ(slider.GetPos(), -10) << "a page, a fifth of the range";
        EXPECT_TRUE(dialog.m_log.empty());
        toolkit::Release(slider, ptBeside);
        toolkit::Wheel(slider, 1);
        EXPECT_THAT(dialog.m_log, ElementsAre("released", "wheel:120"));
        EXPECT_GT(slider.GetPos(), -10);
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
