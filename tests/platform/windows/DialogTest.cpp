#include "platform/windows/DataExchange.h"
#include "platform/windows/Dialog.h"
#include "platform/windows/MessageBox.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <utility>

namespace {

constexpr int ESCAPE = 0x01000000;
constexpr int RETURN = 0x01000004;

constexpr std::array CONTROLS{
    DialogControl{DialogControlKind::Static, -1, "A text of several lines that has just about enough room.",
                  7, 7, 80, 24},
    DialogControl{DialogControlKind::Static, 50, "过高时的颜色", 146, 60, 58, 8},
    DialogControl{DialogControlKind::Edit, 1001, "", 143, 72, 40, 14, WS_BORDER},
    DialogControl{DialogControlKind::Button, 1003, "恢复默认颜色设置", 17, 84, 95, 14},
    DialogControl{DialogControlKind::DefaultButton, IDOK, "确定", 229, 7, 50, 14},
    DialogControl{DialogControlKind::Button, IDCANCEL, "取消", 229, 24, 50, 14},
};
constexpr DialogTemplate TEMPLATE{9, "标题", 286, 135, CONTROLS};

class CTestDialog : public CDialog {
public:
    explicit CTestDialog(CWnd* pParent = nullptr) : CDialog(TEMPLATE, pParent) {}
    std::function<void(CTestDialog&, CDataExchange&)> m_fnExchange;

protected:
    void DoDataExchange(CDataExchange* pDX) override {
        if (m_fnExchange) {
            m_fnExchange(*this, *pDX);
        }
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
                                                          {[&] { type(RETURN, "\r"); }, IDOK},
                                                          {[&] { type(ESCAPE, "\x1b"); }, IDCANCEL},
                                                          {[&] { toolkit::CloseBox(dialog); }, IDCANCEL},
                                                          {[&] { dialog.EndDialog(77); }, 77}};
    for (const auto& [fnWay, nResult] : ways) {
        EXPECT_EQ(RunWith(dialog, fnWay), nResult);
        EXPECT_FALSE(dialog.IsWindow());
        EXPECT_EQ(dialog.GetDlgItem(1001), nullptr);
    }
    // It stays open where its members do not take what its controls hold.
    int nExchanges = 0;
    dialog.m_fnExchange = [&nExchanges](CTestDialog&, CDataExchange& exchange) {
        if (++nExchanges > 1) {
            exchange.Fail();
        }
    };
    EXPECT_EQ(RunWith(dialog,
                      [&] {
                          click(IDOK);
                          EXPECT_TRUE(dialog.IsWindowVisible());
                          click(IDCANCEL);
                      }),
              IDCANCEL);
    EXPECT_EQ(nExchanges, 2);
    // Whose members do not fit its controls does not stand open, and one may end before it shows.
    EXPECT_EQ(dialog.DoModal(), -1);
    dialog.m_fnExchange = [](CTestDialog& self, CDataExchange&) { self.EndDialog(5); };
    EXPECT_EQ(dialog.DoModal(), 5);
}

TEST(Dialog, UnitsFollowTheFontAndNoTextIsCut) {
    CTestDialog dialog;
    RunWith(dialog, [&dialog] {
        const RECT rcDialog = dialog.GetClientRect();
        // 286 by 135 units of a font about 6 pixels wide and 13 high.
        EXPECT_NEAR(rcDialog.Width(), 286 * 6 / 4.0, 286 / 4.0);
        EXPECT_NEAR(rcDialog.Height(), 135 * 13 / 8.0, 135 * 2 / 8.0);
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

// However much the text has to be wrapped.
TEST(Dialog, ABoxStandsOverTheMiddleOfItsOwner) {
    Log log;
    CRecordingWnd owner(log);
    ASSERT_TRUE(owner.Open(200, 200));
    owner.CenterWindow();
    owner.ShowWindow(SW_SHOW);
    const RECT rcOwner = owner.GetWindowRect();
    constexpr int TITLE_BAR = 24;  // whatever the desktop gives it
    for (const int nWords : {1, 60}) {
        CString strText;
        for (int i = 0; i < nWords; ++i) {
            strText += "a word of many ";
        }
        toolkit::Later([&] {
            const RECT rc = toolkit::ModalFrame();
            EXPECT_NEAR(rc.left + rc.right, rcOwner.left + rcOwner.right, 8) << nWords;
            EXPECT_NEAR(rc.top + rc.bottom, rcOwner.top + rcOwner.bottom, TITLE_BAR) << nWords;
            toolkit::CloseModal();
        });
        MessageBox(&owner, strText, "caption", MB_OK);
    }
}

// The owner's window goes while a dialog or a box is open over it, or a box over a dialog, by a signal for
// instance: nothing may be left hanging.
TEST(Dialog, GoesWithItsOwner) {
    Log log;
    CRecordingWnd owner(log);
    CTestDialog dialog(&owner);
    const auto box = [&owner](CWnd& wnd) {
        toolkit::Later([&owner] { owner.DestroyWindow(); });
        EXPECT_EQ(MessageBox(&wnd, "text", "caption", MB_ICONEXCLAMATION), IDOK);
    };
    const std::function<void()> openings[] = {
        [&] { box(owner); },
        [&] { EXPECT_EQ(RunWith(dialog, [&owner] { owner.DestroyWindow(); }), IDCANCEL); },
        [&] { EXPECT_EQ(RunWith(dialog, [&] { box(dialog); }), IDCANCEL); }};
    for (const auto& fnOpen : openings) {
        ASSERT_TRUE(owner.Open(200, 200));
        owner.ShowWindow(SW_SHOW);
        fnOpen();
        EXPECT_FALSE(dialog.IsWindow());
        EXPECT_EQ(toolkit::ModalTitle(), "");
        EXPECT_EQ(log.back(), "gone");
    }
}

}  // namespace
