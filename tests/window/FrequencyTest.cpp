#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/TunerWndTest.h"

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
    CString Caption() { return Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(); }
    // The dial's needle stands there, 110 pixels above its hub, within two pixels.
    bool IsNeedleAt(int nX) {
        constexpr COLORREF NEEDLE = 0xA00000;
        int x = 252;
        while (x < 487 && PixelAt(x, 43 + 160) != NEEDLE) {
            ++x;
        }
        return std::abs(x - nX) <= 2;
    }
    std::vector<std::uint32_t> CopyMarks() {
        const std::vector<std::uint32_t> picture = CopyPicture();
        return {picture.begin() + 500 * 310, picture.end()};
    }
};

TEST_F(FrequencyTest, ReachesSettingsButtonMarksAnalysisAndTones) {
    m_user.LookAway();
    WriteState(0, 0);
    Open();
    // A2 of 441 Hz stands upright.
    PlayString(110.25);
    ASSERT_TRUE(toolkit::WaitUntil([this] { return IsNeedleAt(370); }));
    const auto marks = CopyMarks();

    Ask("445", IDCANCEL);
    EXPECT_EQ(Caption(), "&A : 441.0 Hz");
    EXPECT_EQ(Access().Store().GetAFrequency(), 441.0F);

    Ask("443", IDOK);
    EXPECT_EQ(Caption(), "&A : 443.0 Hz");
    EXPECT_EQ(Access().Store().GetAFrequency(), 443.0F);
    EXPECT_NE(CopyMarks(), marks);
    // 7.8 cents too low now: 4.7 degrees.
    EXPECT_TRUE(toolkit::WaitUntil([this] { return IsNeedleAt(370 - 9); }));

    toolkit::Click(*Wnd().GetDlgItem(ID_PLAY), IN_BUTTON);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return m_midi->CountNotes() > 0; }));
    // A semitone down, and three times 0.03878374 of one up.
    EXPECT_EQ(m_midi->GetBend(), 4096 + 476);
    Close();
    EXPECT_EQ(StateField(0), "44300");
}

}  // namespace
