#include "dialogs/TuningNameDialog.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr int RETURN = 0x01000004;
constexpr int EDIT = 1000;

class TuningNameDialog : public ::testing::Test {
protected:
    CWnd& Item(int nId) { return *m_dialog.GetDlgItem(nId); }
    // The user does this and ends with this button; what the dialog holds then.
    CString Run(int nButton, const std::function<void()>& fnUser) {
        toolkit::Later([&] {
            fnUser();
            toolkit::Click(Item(nButton), {5, 5});
        });
        EXPECT_EQ(m_dialog.DoModal(), nButton);
        return m_dialog.m_strName;
    }

    CTuningNameDialog m_dialog;
};

TEST_F(TuningNameDialog, ReturnsWhatWasTyped) {
    EXPECT_EQ(Run(IDOK, [] {}), "") << "an empty name too";
    EXPECT_EQ(Run(IDOK,
                  [this] {
                      EXPECT_EQ(toolkit::ModalTitle(), "新增调弦规则");
                      for (const int nId : {-1, EDIT, int{IDOK}, int{IDCANCEL}}) {
                          EXPECT_FALSE(toolkit::IsTextCut(Item(nId))) << nId;
                      }
                      EXPECT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &Item(EDIT); }));
                      toolkit::TypeText(Item(EDIT), "Open G");
                      toolkit::SavePicture(m_dialog, "tuning-name-dialog.png");
                  }),
              "Open G");
    // The name of the last time stands in the box, selected: typing replaces it.
    const auto type = [this] {
        EXPECT_EQ(Item(EDIT).GetWindowText(), "Open G");
        toolkit::TypeText(Item(EDIT), "D");
    };
    EXPECT_EQ(Run(IDCANCEL, type), "Open G");
    EXPECT_EQ(Run(IDOK, type), "D");
}

TEST_F(TuningNameDialog, KeepsTheNameOnOneLine) {
    const auto paste = [this] { toolkit::Compose(Item(EDIT), "", "Open\r\nG\u2028low\n"); };
    EXPECT_EQ(Run(IDOK, paste), "Open G low ");
}

TEST_F(TuningNameDialog, TakesChineseFromAnInputMethodAndHasNoLimitOfLength) {
    const CString strLong(100000, 'x');
    toolkit::Later([&] {
        toolkit::Compose(Item(EDIT), "diao xian", "我的调弦");
        toolkit::Compose(Item(EDIT), "gui", "规则𝄞" + strLong);
        toolkit::Key(Item(EDIT), RETURN, "\r");
    });
    EXPECT_EQ(m_dialog.DoModal(), IDOK);
    EXPECT_EQ(m_dialog.m_strName, "我的调弦规则𝄞" + strLong);
}

}  // namespace
