#include "platform/windows/support/Toolkit.h"
#include "window/NeedleFade.h"
#include "window/TunerWndTest.h"

#include <cstddef>
#include <cstdlib>

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF NEEDLE = 0xA00000;
constexpr int DIAL_Y = 43 + 160;

class LiveFrameTest : public CTunerWndTest {
protected:
    // Half way up the dial, 110 pixels above its hub, nothing but the needle stands on the white.
    int NeedleX() {
        int x = 252;
        while (x < 487 && PixelAt(x, DIAL_Y) == WHITE) {
            ++x;
        }
        return x;
    }
    COLORREF NeedleColor() { return PixelAt(NeedleX(), DIAL_Y); }
    // The middle of the needle in full colour comes to that place and stays there.
    bool IsNeedleAt(int nX) {
        const auto isThere = [this, nX] {
            return NeedleColor() == NEEDLE && std::abs(NeedleX() + 2 - nX) <= 1;
        };
        if (!toolkit::WaitUntil(isThere)) {
            return false;
        }
        toolkit::RunFor(300);
        return isThere();
    }
    bool IsLitAt(int x) { return PixelAt(10 + x, 310 + 3) == 0xE3B3B3U; }
    std::vector<std::uint32_t> CopyMarks() {
        const std::vector<std::uint32_t> picture = CopyPicture();
        return {picture.begin() + std::ptrdiff_t{500} * 310, picture.end()};
    }
    int BendOfPlay() {
        m_midi->TakeNotes();
        Click(ID_PLAY);
        EXPECT_TRUE(toolkit::WaitUntil([this] { return m_midi->CountNotes() > 0; }));
        return m_midi->GetBend();
    }
    // Types the number into the dialog of the A frequency and ends with this button.
    void Ask(const CString& strNumber, int nButton) {
        toolkit::Later([=] {
            EXPECT_EQ(toolkit::ModalTitle(), "标准 'A' 频率设置");
            toolkit::TypeIntoModal(1001, strNumber);
            toolkit::ClickInModal(nButton);
        });
        Click(ID_A_FREQUENCY);
    }
};

TEST_F(LiveFrameTest, FadesWithTheStringThatSounds) {
    WriteState(0, 0);
    Open();
    EXPECT_EQ(NeedleColor(), CLR_FADED_NEEDLE);
    for (int nRound = 0; nRound < 2; ++nRound) {
        PlayString(110.2);
        EXPECT_TRUE(toolkit::WaitUntil([this] { return NeedleColor() == NEEDLE; }));
        // A peak of 9657 of 32768 is 1 + 10 ln(0.295) / 60 = 0.80 of the 253 rows above 298.
        EXPECT_TRUE(toolkit::WaitUntil([this] { return PixelAt(225, 298 - 190) != WHITE; }));
        EXPECT_EQ(PixelAt(225, 298 - 215), WHITE);
        PlayString(0.0);
        EXPECT_TRUE(toolkit::WaitUntil([this] {
            const COLORREF clr = NeedleColor();
            return clr != NEEDLE && clr != CLR_FADED_NEEDLE && GetBlue(clr) == 0xA0;
        }));
        EXPECT_TRUE(toolkit::WaitUntil([this] { return NeedleColor() == CLR_FADED_NEEDLE; }));
    }
}

TEST_F(LiveFrameTest, TakesAnotherAFrequencyToSettingsButtonMarksAnalysisAndTones) {
    m_user.LeaveDialogs();
    WriteState(0, 0);
    Open();
    // A2 of 441 Hz stands upright.
    PlayString(110.25);
    ASSERT_TRUE(IsNeedleAt(370));
    // A semitone down, and 0.03878374 of one up.
    EXPECT_EQ(BendOfPlay(), 4096 + 158);
    const auto marks = CopyMarks();
    Ask("445", IDCANCEL);
    EXPECT_EQ(ACaption(), "&A : 441.0 Hz");
    Ask("450", IDOK);
    EXPECT_EQ(ACaption(), "&A : 450.0 Hz");
    EXPECT_NE(CopyMarks(), marks);
    // 35 cents too low now: 21 degrees, and 6.5 pixels of the strip, where the A has its 14 from 105 on.
    EXPECT_TRUE(IsNeedleAt(370 - 42));
    EXPECT_EQ(BendOfPlay(), 4096 + 1588);
    Close();
    EXPECT_THAT(SavedSettings(), testing::StartsWith("45000\t"));
    Open();
    EXPECT_TRUE(toolkit::WaitUntil([this] { return IsLitAt(100) && !IsLitAt(114); }));
}

}  // namespace
