#include "platform/windows/Button.h"
#include "platform/windows/ClientDc.h"
#include "platform/windows/DataExchange.h"
#include "platform/windows/Dialog.h"
#include "platform/windows/MessageBox.h"
#include "platform/windows/Slider.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <utility>

namespace {

constexpr int g_nEscape = 0x01000000;
constexpr int g_nReturn = 0x01000004;

constexpr std::array g_controls{
    DialogControl{
        DialogControlKind::Static, -1,
        "Move the slider bar to change the center frequency.  The standard A note has a frequency of 440 "
        "Hz.  Changing the A note frequency will shift all other notes accordingly.",
        7, 7, 167, 39},
    DialogControl{DialogControlKind::Static, 50, "过高时的颜色", 146, 60, 58, 8},
    DialogControl{DialogControlKind::Edit, 1001, "", 143, 72, 40, 14, WS_BORDER},
    DialogControl{DialogControlKind::Button, 1003, "恢复默认颜色设置", 17, 84, 95, 14},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 229, 7, 50, 14},
    DialogControl{DialogControlKind::Button, IDCANCEL, "取消", 229, 24, 50, 14},
};
constexpr DialogTemplate g_template{9, "标题", 286, 135, g_controls};

class CTestDialog : public CDialog {
public:
    explicit CTestDialog(CWnd* pParent = nullptr) : CDialog(g_template, pParent) {}
    std::function<void(CTestDialog&)> m_fnInit;
    std::function<void()> m_fnOK;

protected:
    bool OnInitDialog() override {
        CDialog::OnInitDialog();
        if (m_fnInit) {
            m_fnInit(*this);
        }
        return true;
    }
    void OnOK() override {
        if (m_fnOK) {
            m_fnOK();
            return;
        }
        CDialog::OnOK();
    }
};

// What the dialog returns when this is done in it.
int RunWith(CTestDialog& dialog, const std::function<void()>& fnAction) {
    toolkit::Later(fnAction);
    return dialog.DoModal();
}

TEST(Dialog, EachWayOutGivesItsResult) {
    CTestDialog dialog;
    const auto click = [&dialog](int nId) { toolkit::Click(*dialog.GetDlgItem(nId), {5, 5}); };
    const auto type = [&dialog](int nKey, const char* szText) {
        toolkit::Key(*dialog.GetDlgItem(1001), nKey, szText);
    };
    const std::pair<std::function<void()>, int> ways[] = {{[&] { click(IDOK); }, IDOK},
                                                          {[&] { click(IDCANCEL); }, IDCANCEL},
                                                          {[&] { type(g_nReturn, "\r"); }, IDOK},
                                                          {[&] { type(g_nEscape, "\x1b"); }, IDCANCEL},
                                                          {[&] { toolkit::CloseBox(dialog); }, IDCANCEL},
                                                          {[&] { dialog.EndDialog(77); }, 77}};
    for (const auto& [fnWay, nResult] : ways) {
        EXPECT_EQ(RunWith(dialog, fnWay), nResult);
        EXPECT_FALSE(dialog.IsWindow());
        EXPECT_EQ(dialog.GetDlgItem(1001), nullptr);
    }
    // It may refuse to close, or end before it shows.
    int nRefused = 0;
    dialog.m_fnOK = [&nRefused] { ++nRefused; };
    EXPECT_EQ(RunWith(dialog,
                      [&] {
                          click(IDOK);
                          EXPECT_TRUE(dialog.IsWindowVisible());
                          click(IDCANCEL);
                      }),
              IDCANCEL);
    EXPECT_EQ(nRefused, 1);
    dialog.m_fnInit = [](CTestDialog& self) { self.EndDialog(5); };
    EXPECT_EQ(dialog.DoModal(), 5);
}

TEST(Dialog, UnitsFollowTheFontAndNoTextIsCut) {
    CTestDialog dialog;
    RunWith(dialog, [&dialog] {
        const RECT rcDialog = dialog.GetClientRect();
        // 286 by 135 units of a font about 6 pixels wide and 13 high.
        EXPECT_NEAR(rcDialog.Width(), 286 * 6 / 4, 286 / 4);
        EXPECT_NEAR(rcDialog.Height(), 135 * 13 / 8, 135 * 2 / 8);
        for (const int nId : {-1, 50, 1001, 1003, IDOK, IDCANCEL}) {
            const CWnd& control = *dialog.GetDlgItem(nId);
            EXPECT_FALSE(toolkit::IsTextCut(control)) << nId;
            POINT pt{};
            control.ClientToScreen(pt);
            dialog.ScreenToClient(pt);
            EXPECT_GE(pt.x, 0);
            EXPECT_LE(pt.x + control.GetClientRect().Width(), rcDialog.Width());
        }
        const RECT rcOK = dialog.GetDlgItem(IDOK)->GetClientRect();
        EXPECT_NEAR(rcOK.Width() * 286.0 / 50.0, rcDialog.Width(), 6.0);
        toolkit::SavePicture(dialog, "dialog-units.png");
        dialog.EndDialog(IDOK);
    });
}

// The owner's window goes while a dialog or a box is open over it, or a box over a dialog, by a signal for
// instance: nothing may be left hanging.
TEST(Dialog, GoesWithItsOwner) {
    Log log;
    CRecordingWnd owner(log);
    const auto box = [](CWnd* pOwner) { return MessageBox(pOwner, "text", "caption", MB_ICONEXCLAMATION); };
    for (const bool bDialog : {false, true}) {
        for (const bool bBox : {false, true}) {
            ASSERT_TRUE(owner.Open(200, 200));
            owner.ShowWindow(SW_SHOW);
            CTestDialog dialog(&owner);
            const auto destroy = [&owner] { owner.DestroyWindow(); };
            if (!bDialog) {
                toolkit::Later(destroy);
                EXPECT_EQ(box(&owner), IDOK);
            } else {
                EXPECT_EQ(RunWith(dialog,
                                  [&] {
                                      EXPECT_EQ(toolkit::ModalTitle(), "标题");
                                      toolkit::Later(destroy);
                                      EXPECT_TRUE(!bBox || box(&dialog) == IDOK);
                                  }),
                          IDCANCEL);
            }
            EXPECT_FALSE(dialog.IsWindow());
            EXPECT_EQ(toolkit::ModalTitle(), "");
            EXPECT_EQ(log.back(), "gone");
        }
    }
}

TEST(MessageBoxes, ShowTheirText) {
    toolkit::Later([] {
        EXPECT_EQ(toolkit::ModalTitle(), "Invalid Number");
        EXPECT_EQ(toolkit::ModalText(), "Please enter <a number> & more");
        toolkit::CloseModal();
    });
    EXPECT_EQ(MessageBox(nullptr, "Please enter <a number> & more", "Invalid Number", MB_ICONEXCLAMATION),
              IDOK);
}

// --- Controls bound to members ----------------------------------------------------------------------------

constexpr int g_nSlider = 21;
constexpr int g_nSwatch = 22;

constexpr std::array g_pageControls{
    DialogControl{DialogControlKind::Static, g_nSwatch, "1", 10, 10, 20, 20, WS_BORDER | SS_SUNKEN},
    DialogControl{DialogControlKind::Slider, g_nSlider, "", 10, 40, 80, 19},
};
constexpr DialogTemplate g_pageTemplate{9, "page", 100, 90, g_pageControls};

class CPage : public CDialog {
public:
    CPage() : CDialog(g_pageTemplate) {}
    using CDialog::CreatePage;

    Log m_log;
    CSliderCtrl m_slider;
    CButton m_swatch;  // a button on a label: a label still
    int m_nSwatchId = g_nSwatch;

protected:
    const CMessageMap& GetMessageMap() const override {
        static constexpr std::array entries{MapMessage<&CPage::OnLButtonDown>(WM_LBUTTONDOWN),
                                            MapMessage<&CPage::OnPaint>(WM_PAINT)};
        static const CMessageMap map{entries, &CDialog::GetMessageMap()};
        return map;
    }
    void DoDataExchange(CDataExchange* pDX) override {
        DDX_Control(pDX, g_nSlider, m_slider);
        DDX_Control(pDX, m_nSwatchId, m_swatch);
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

TEST(DialogControls, AreBoundToMembersOrTheDialogEnds) {
    CPage dialog;
    toolkit::Later([&dialog] {
        CSliderCtrl& slider = dialog.m_slider;
        EXPECT_EQ(dialog.GetDlgItem(g_nSlider), &slider);
        // It stays in its range and moves by pages, a fifth of it.
        slider.SetRange(-20, 30);
        for (const int nPos : {99, -99}) {
            slider.SetPos(nPos);
            EXPECT_EQ(slider.GetPos(), nPos > 0 ? 30 : -20);
        }
        const RECT rc = slider.GetClientRect();
        toolkit::Click(slider, {rc.right * 3 / 4, rc.bottom / 3});
        EXPECT_EQ(slider.GetPos(), -10);
        dialog.EndDialog(IDOK);
    });
    EXPECT_EQ(dialog.DoModal(), IDOK);
    dialog.m_nSwatchId = 99;
    EXPECT_EQ(dialog.DoModal(), -1);
    EXPECT_FALSE(dialog.m_slider.IsWindow()) << "what was bound goes with the window";
}

TEST(DialogControls, APageLivesInItsSheetAndItsLabelsShowWhatIsDrawnOnThem) {
    Log log;
    CRecordingWnd sheet(log);
    ASSERT_TRUE(sheet.Open(300, 250));
    CPage page;
    EXPECT_FALSE(page.CreatePage(nullptr));
    ASSERT_TRUE(page.CreatePage(&sheet));
    const RECT rcClient = page.m_swatch.GetClientRect();
    EXPECT_EQ(page.m_swatch.GetWindowRect().Width(), rcClient.Width() + 4)
        << "a sunken frame with a border is two pixels wide";
    page.ShowWindow(SW_SHOW);
    sheet.ShowWindow(SW_SHOW);
    POINT ptOrigin;
    page.m_swatch.ClientToScreen(ptOrigin);
    sheet.ScreenToClient(ptOrigin);
    const auto shown = [&](int x, int y) {
        const toolkit::Screenshot shot = toolkit::GrabScreen(sheet);
        return shot.pixels.empty() ? 0 : shot.At(ptOrigin.x + x, ptOrigin.y + y);
    };
    for (const auto& [clr, nShown] : {std::pair{0xA00000U, 0xFF0000A0U}, {0x0000FFU, 0xFFFF0000U}}) {
        CClientDC dc(&page.m_swatch);
        dc.FillSolidRect(rcClient, clr);
        EXPECT_TRUE(toolkit::WaitUntil([&shown, nShown = nShown] { return shown(0, 0) == nShown; }));
        EXPECT_EQ(shown(rcClient.right - 1, rcClient.bottom - 1), nShown);
        EXPECT_NE(shown(-1, -1), nShown);
        EXPECT_NE(shown(rcClient.right, rcClient.bottom), nShown);
    }
    EXPECT_EQ(page.m_log.back(), "paint");
    page.m_log.clear();
    toolkit::RunFor(50);
    EXPECT_TRUE(page.m_log.empty()) << "no paint brings on the next";
    page.InvalidateRect(nullptr, false);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return !page.m_log.empty(); }));
    toolkit::ClickInto(sheet, ptOrigin);
    toolkit::ClickInto(sheet, {ptOrigin.x - 5, ptOrigin.y});
    EXPECT_EQ(page.m_log, (Log{"paint", "down on swatch", "down"}));
    sheet.DestroyWindow();
    EXPECT_FALSE(page.IsWindow());
    EXPECT_FALSE(page.m_swatch.IsWindow());
}

}  // namespace
