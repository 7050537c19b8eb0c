#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/TunerWndTest.h"

#include <cstddef>
#include <cstdlib>

namespace {

constexpr int EDIT = 1001;
constexpr POINT IN_BUTTON{5, 5};

class FrequencyTest : public CTunerWndTest {
protected:
    // Opens the dialog by its button, types the number and ends with this button.
    void Ask(const CString& strNumber, int nButton) {
        toolkit::Later([=, this] {
            EXPECT_EQ(toolkit::ModalTitle(), "标准 'A' 频率设置");
            toolkit::TypeIntoModal(EDIT, strNumber);
            toolkit::ClickInModal(nButton);
        });
        toolkit::Click(*Wnd().GetDlgItem(ID_A_FREQUENCY), IN_BUTTON);
    }
    void PlayAll() {
        m_midi->TakeNotes();
        toolkit::Click(*Wnd().GetDlgItem(ID_PLAY), IN_BUTTON);
        EXPECT_TRUE(toolkit::WaitUntil([this] { return m_midi->CountNotes() > 0; }));
    }
    CString Caption() { return Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(); }
    // The middle of the dial's needle comes to that place, 110 pixels above its hub, and stays there.
    bool IsNeedleAt(int nX) {
        constexpr COLORREF NEEDLE = 0xA00000;
        const auto isThere = [this, nX] {
            int x = 252;
            while (x < 487 && PixelAt(x, 43 + 160) != NEEDLE) {
                ++x;
            }
            return std::abs(x + 2 - nX) <= 1;
        };
        if (!toolkit::WaitUntil(isThere)) {
            return false;
        }
        toolkit::RunFor(300);
        return isThere();
    }
    std::vector<std::uint32_t> CopyMarks() {
        const std::vector<std::uint32_t> picture = CopyPicture();
        return {picture.begin() + std::ptrdiff_t{500} * 310, picture.end()};
    }
};

TEST_F(FrequencyTest, ReachesSettingsButtonMarksAnalysisAndTones) {
    m_user.LookAway();
    WriteState(0, 0);
    Open();
    // A2 of 441 Hz stands upright.
    PlayString(110.25);
    ASSERT_TRUE(IsNeedleAt(370));
    PlayAll();
    // A semitone down, and 0.03878374 of one up.
    EXPECT_EQ(m_midi->GetBend(), 4096 + 158);
    const auto marks = CopyMarks();

    Ask("445", IDCANCEL);
    EXPECT_EQ(Caption(), "&A : 441.0 Hz");
    EXPECT_EQ(Access().Store().GetAFrequency(), 441.0F);

    Ask("443", IDOK);
    EXPECT_EQ(Caption(), "&A : 443.0 Hz");
    EXPECT_EQ(Access().Store().GetAFrequency(), 443.0F);
    EXPECT_NE(CopyMarks(), marks);
    // 7.8 cents too low now: 4.7 degrees.
    EXPECT_TRUE(IsNeedleAt(370 - 9));

    PlayAll();
    EXPECT_EQ(m_midi->GetBend(), 4096 + 476);
    Close();
    EXPECT_EQ(StateField(0), "44300");
}

}  // namespace
