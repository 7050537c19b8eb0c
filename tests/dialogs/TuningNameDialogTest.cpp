#include "dialogs/TuningNameDialog.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr int g_nReturn = 0x01000004;
constexpr int g_nEdit = 1000;

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
                      for (const int nId : {-1, g_nEdit, int{IDOK}, int{IDCANCEL}}) {
                          EXPECT_FALSE(toolkit::IsTextCut(Item(nId))) << nId;
                      }
                      EXPECT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &Item(g_nEdit); }));
                      toolkit::TypeText(Item(g_nEdit), "Open G");
                      toolkit::SavePicture(m_dialog, "tuning-name-dialog.png");
                  }),
              "Open G");
    // The name of the last time stands in the box, selected: typing replaces it.
    const auto type = [this] {
        EXPECT_EQ(Item(g_nEdit).GetWindowText(), "Open G");
        toolkit::TypeText(Item(g_nEdit), "D");
    };
    EXPECT_EQ(Run(IDCANCEL, type), "Open G");
    EXPECT_EQ(Run(IDOK, type), "D");
}

TEST_F(TuningNameDialog, TakesChineseFromAnInputMethodAndHasNoLimitOfLength) {
    const CString strLong(100000, 'x');
    toolkit::Later([&] {
        toolkit::Compose(Item(g_nEdit), "diao xian", "我的调弦");
        toolkit::Compose(Item(g_nEdit), "gui", "规则𝄞" + strLong);
        toolkit::Key(Item(g_nEdit), g_nReturn, "\r");
    });
    EXPECT_EQ(m_dialog.DoModal(), IDOK);
    EXPECT_EQ(m_dialog.m_strName, "我的调弦规则𝄞" + strLong);
}

}  // namespace
