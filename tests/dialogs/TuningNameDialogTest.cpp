#include "dialogs/TuningNameDialog.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr int g_nEscape = 0x01000000;
constexpr int g_nReturn = 0x01000004;
constexpr int g_nEdit = 1000;

class TuningNameDialog : public ::testing::Test {
protected:
    CWnd& Item(int nId) { return *m_dialog.GetDlgItem(nId); }
    // What DoModal returns when the user does this in the dialog.
    int Run(const std::function<void()>& fnUser) {
        toolkit::Later(fnUser);
        return m_dialog.DoModal();
    }

    CTuningNameDialog m_dialog;
};

TEST_F(TuningNameDialog, ReturnsWhatWasTyped) {
    EXPECT_EQ(Run([this] { toolkit::Click(Item(IDOK), {5, 5}); }), IDOK);
    EXPECT_EQ(m_dialog.m_strName, "") << "an empty name too";
    EXPECT_EQ(Run([this] {
                  EXPECT_EQ(toolkit::ModalTitle(), "新增调弦规则");
                  for (const int nId : {-1, g_nEdit, int{IDOK}, int{IDCANCEL}}) {
                      EXPECT_FALSE(toolkit::IsTextCut(Item(nId))) << nId;
                  }
                  // The box has the keyboard from the start; Enter is the default button.
                  EXPECT_TRUE(toolkit::WaitUntil([this] { return CWnd::GetFocus() == &Item(g_nEdit); }));
                  toolkit::TypeText(Item(g_nEdit), "Open G");
                  toolkit::SavePicture(m_dialog, "tuning-name-dialog.png");
                  toolkit::Key(Item(g_nEdit), g_nReturn, "\r");
              }),
              IDOK);
    EXPECT_EQ(m_dialog.m_strName, "Open G");
    // The name of the last time stands in the box, selected: typing replaces it.
    EXPECT_EQ(Run([this] {
                  EXPECT_EQ(Item(g_nEdit).GetWindowText(), "Open G");
                  toolkit::TypeText(Item(g_nEdit), "D");
                  toolkit::Click(Item(IDOK), {5, 5});
              }),
              IDOK);
    EXPECT_EQ(m_dialog.m_strName, "D");
}

TEST_F(TuningNameDialog, CancelKeepsTheNameHoweverItIsGiven) {
    m_dialog.m_strName = "before";
    const std::function<void()> WAYS[] = {[this] {
                                              toolkit::Click(Item(IDCANCEL), {5, 5});
                                          },
                                          [this] { toolkit::Key(Item(g_nEdit), g_nEscape, "\x1b"); },
                                          [this] { toolkit::CloseBox(m_dialog); }};
    for (const auto& fnCancel : WAYS) {
        EXPECT_EQ(Run([&] {
                      toolkit::TypeText(Item(g_nEdit), "typed");
                      fnCancel();
                  }),
                  IDCANCEL);
        EXPECT_EQ(m_dialog.m_strName, "before");
    }
}

TEST_F(TuningNameDialog, TakesChineseFromAnInputMethodAndHasNoLimitOfLength) {
    const CString strLong(100000, 'x');
    EXPECT_EQ(Run([&] {
                  toolkit::Compose(Item(g_nEdit), "diao xian", "我的调弦");
                  EXPECT_EQ(Item(g_nEdit).GetWindowText(), "我的调弦");
                  toolkit::Compose(Item(g_nEdit), "gui", "规则𝄞" + strLong);
                  toolkit::Key(Item(g_nEdit), g_nReturn, "\r");
              }),
              IDOK);
    EXPECT_EQ(m_dialog.m_strName, "我的调弦规则𝄞" + strLong);
}

}  // namespace
