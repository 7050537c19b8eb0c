#include "dialogs/FrequencyDialog.h"
#include "platform/windows/support/Toolkit.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace {

constexpr int RIGHT = 0x01000014;
constexpr int TAB = 0x01000001;
constexpr int RETURN = 0x01000004;
constexpr int EDIT = 1001;
constexpr int SLIDER = 1002;
constexpr int RESET = 1003;
constexpr POINT PT_IN_BUTTON{5, 5};
constexpr POINT PT_ON_LABEL{20, 20};

class FrequencyDialog : public ::testing::Test {
protected:
    CWnd& Item(int nId) { return *m_dialog.GetDlgItem(nId); }
    int Pos() { return static_cast<int>(Item(SLIDER).SendMessage(TBM_GETPOS)); }
    CString Text() { return Item(EDIT).GetWindowText(); }
    void Click(int nId) { toolkit::Click(Item(nId), PT_IN_BUTTON); }
    // Over the typed text in one go, as pasting does.
    void Enter(const CString& strText) {
        Item(EDIT).SetWindowText("");
        toolkit::Compose(Item(EDIT), "", strText);
    }
    void Expect(const CString& strText, int nPos, float fFrequency) {
        EXPECT_EQ(Text(), strText);
        EXPECT_EQ(Pos(), nPos);
        EXPECT_EQ(m_dialog.m_fFrequency, fFrequency);
    }
    // What DoModal returns when the user does this in a dialog opened with this frequency.
    int Run(float fFrequency, const std::function<void()>& fnUser) {
        m_dialog.m_fFrequency = fFrequency;
        toolkit::Later([this, &fnUser] {
            fnUser();
            m_dialog.EndDialog(IDCANCEL);
        });
        return m_dialog.DoModal();
    }

    CFrequencyDialog m_dialog;
};

TEST_F(FrequencyDialog, OpensWithTheTenthsThatItShows) {
    EXPECT_EQ(Run(445.67F,
                  [this] {
                      EXPECT_EQ(toolkit::ModalTitle(), "标准 'A' 频率设置");
                      Expect("445.7", 4457, 445.7F);
                      toolkit::SavePicture(m_dialog, "frequency-dialog.png");
                      for (const int nId : {EDIT, SLIDER, RESET, int{IDOK}, int{IDCANCEL}}) {
                          EXPECT_TRUE(toolkit::WaitUntil([&] { return CWnd::GetFocus() == &Item(nId); }))
                              << nId;
                          toolkit::Key(Item(nId), TAB, "\t");
                      }
                      Click(IDOK);
                  }),
              IDOK);
    EXPECT_EQ(m_dialog.m_fFrequency, 445.7F);
}

TEST_F(FrequencyDialog, FollowsTheTextWhileItIsInRange) {
    struct Row {
        const char* szText;
        int nPos;
        float fFrequency;
    };
    constexpr Row ROWS[] = {{"44", 4350, 435.0F},        {"430", 4300, 430.0F},      {"429.9", 4300, 430.0F},
                            {"450", 4500, 450.0F},       {"450.1", 4500, 450.0F},    {"abc", 4500, 450.0F},
                            {"nan", 4500, 450.0F},       {"441.25", 4412, 441.25F},  {"441.3", 4412, 441.3F},
                            {" +442.5Hz", 4425, 442.5F}, {"4.41e2", 4410, 441.0F},   {"443,9", 4430, 443.0F},
                            {"00000444", 4440, 444.0F},  {"000000445", 4440, 444.0F}};
    Run(435.0F, [&] {
        for (const Row& row : ROWS) {
            Enter(row.szText);
            Expect(row.szText, row.nPos, row.fFrequency);
        }
    });
}

TEST_F(FrequencyDialog, ClosesWithANumberInRangeOnly) {
    const auto fnCloseBox = [] {
        EXPECT_EQ(toolkit::ModalTitle(), "Invalid Number");
        EXPECT_EQ(toolkit::ModalText(), "Please enter a number from 430 to 450 Hz, or press cancel");
        toolkit::CloseModal();
    };
    struct Case {
        const char* szText;
        int nResult;
    };
    for (const Case& c :
         {Case{"429.9", IDCANCEL}, {"430", IDOK}, {"450", IDOK}, {"450.1", IDCANCEL}, {"", IDCANCEL}}) {
        EXPECT_EQ(Run(440.0F,
                      [&] {
                          Enter(c.szText);
                          if (c.nResult == IDCANCEL) {
                              toolkit::Later(fnCloseBox);
                          }
                          toolkit::Key(Item(EDIT), RETURN, "\r");
                      }),
                  c.nResult)
            << c.szText;
    }
}

// Of the mouse and the wheel the dialog hears before the slider follows, of a key afterwards. The text is
// written when the button comes up, and read back: the float of 441.3 lies below it.
TEST_F(FrequencyDialog, WritesTheTextWhenTheSliderIsReleased) {
    Run(440.0F, [this] {
        CWnd& slider = Item(SLIDER);
        const RECT rc = slider.GetClientRect();
        POINT pt{rc.Width() / 2, rc.Height() / 3};
        toolkit::Press(slider, pt);
        while (Pos() < 4413 && pt.x < rc.right) {
            ++pt.x;
            toolkit::Move(slider, pt);
        }
        EXPECT_LT(m_dialog.m_fFrequency, 441.25F);
        toolkit::Release(slider, pt);
        Expect("441.3", 4412, 441.3F);
        toolkit::MoveOver(m_dialog, PT_ON_LABEL);
        Expect("441.3", 4412, 441.2F);
        Click(RESET);
        Expect("440.0", 4400, 440.0F);
        // Once the mouse has moved, the tenth of the slider counts, and not the text.
        Enter("441.25");
        EXPECT_EQ(m_dialog.m_fFrequency, 441.25F);
        toolkit::MoveOver(m_dialog, PT_ON_LABEL);
        Click(IDOK);
    });
    EXPECT_EQ(m_dialog.m_fFrequency, 441.2F);
    Run(440.0F, [this] {
        CWnd& slider = Item(SLIDER);
        for (int i = 0; i < 13; ++i) {
            toolkit::KeyDown(slider, RIGHT);
        }
        // The nearest float to 4413 times the float of a tenth, and not that of 441.3.
        Expect("440.0", 4413, 441.300018F);
        toolkit::KeyUp(slider, RIGHT);
        toolkit::Wheel(slider, 1);
        const int nTurned = Pos();
        EXPECT_GT(nTurned, 4413);
        EXPECT_EQ(m_dialog.m_fFrequency, 441.300018F);
        toolkit::Wheel(slider, -1);
        EXPECT_EQ(m_dialog.m_fFrequency, static_cast<float>(nTurned * static_cast<double>(0.1F)));
        // The same text once more counts as a change.
        Click(RESET);
        Expect("440.0", 4400, 440.0F);
    });
}

}  // namespace
