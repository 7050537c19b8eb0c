#include "platform/windows/support/Toolkit.h"
#include "window/NeedleFade.h"
#include "window/TunerWndTest.h"

#include <random>

namespace {

constexpr COLORREF NEEDLE = 0xA00000;
constexpr COLORREF TINT = 0xE3B3B3;

class LiveFrameTest : public CTunerWndTest {
protected:
    // Half way up the dial nothing but the needle stands on the white.
    COLORREF NeedleColor() {
        int x = 252;
        while (x < 487 && PixelAt(x, 43 + 160) == 0xFFFFFFU) {
            ++x;
        }
        return PixelAt(x, 43 + 160);
    }
    // The rows of the level meter that are not white.
    int LevelHeight() {
        int nRows = 0;
        for (int y = 45; y < 298; ++y) {
            nRows += PixelAt(225, y) != 0xFFFFFFU ? 1 : 0;
        }
        return nRows;
    }
    bool IsLitAt(int x) { return PixelAt(10 + x, 310 + 3) == TINT; }
};

// A2, the A being at 441 Hz, on a standard tuning: the highlight's 14 columns begin at 105.
TEST_F(LiveFrameTest, ShowsAStringThatSoundsAndFadesWithIt) {
    WriteState(0, 0);
    Open();
    EXPECT_EQ(NeedleColor(), CLR_FADED_NEEDLE);
    EXPECT_EQ(LevelHeight(), 0);
    PlayString(110.2);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return NeedleColor() == NEEDLE && IsLitAt(106); }));
    toolkit::SavePicture(Wnd(), "window-a2.png");
    EXPECT_FALSE(IsLitAt(103));
    EXPECT_TRUE(IsLitAt(117));
    EXPECT_FALSE(IsLitAt(120));
    // A peak of 12000 of 32768 is 1 + 10 ln(0.366) / 60 = 0.83 of 253 rows; partials seldom meet in full.
    EXPECT_GT(LevelHeight(), 170);
    EXPECT_LT(LevelHeight(), 215);

    // Fallen silent it fades, and comes back.
    PlaySilence();
    EXPECT_TRUE(toolkit::WaitUntil([this] {
        const COLORREF clr = NeedleColor();
        return clr != NEEDLE && clr != CLR_FADED_NEEDLE && GetBlue(clr) == 0xA0;
    }));
    EXPECT_TRUE(toolkit::WaitUntil([this] { return NeedleColor() == CLR_FADED_NEEDLE; }));
    EXPECT_TRUE(IsLitAt(106)) << "the last reading stays";
    PlayString(110.2);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return NeedleColor() == NEEDLE; }));
}

// Frames on the capture thread, everything else on this one, on the same pictures: in the end the window must
// hold what a fresh paint makes of the same state.
TEST_F(LiveFrameTest, LeavesWhatAFreshPaintShows) {
    WriteState(0, 0);
    Open();
    constexpr double A_MINOR_SWEEP = 4.0;
    m_fake->Play(
        [fPhase = 0.0](std::uint64_t n) mutable {
            // A tone that runs over several octaves and falls silent in between.
            const double fTime = static_cast<double>(n) / 11025.0;
            fPhase += 2.0 * M_PI * 110.0 * std::exp2(std::sin(fTime * A_MINOR_SWEEP)) / 11025.0;
            const double fTone =
                std::sin(fPhase) + 0.6 * std::sin(2.0 * fPhase) + 0.4 * std::sin(3.0 * fPhase);
            return static_cast<std::int16_t>(std::sin(fTime * 3.0) > 0.5 ? 0.0 : 9000.0 * fTone);
        },
        {128, std::chrono::microseconds(0)});
    std::mt19937 random(7);
    for (int nRound = 0; nRound < 6; ++nRound) {
        for (int i = 0; i < 60; ++i) {
            switch (random() % 5) {
                case 0:
                    Access().List().SetCurSel(static_cast<int>(random() % 40));
                    Wnd().SendMessage(WM_COMMAND, MakeCommandParam(10008, LBN_SELCHANGE));
                    break;
                case 1:
                    Access().SetAFrequency(430.0F + static_cast<float>(random() % 20));
                    break;
                case 2:
                    Access().SetColors(random() & 0xFFFFFF, random() & 0xFFFFFF);
                    break;
                case 3:
                    Access().SetString(random() % 6, static_cast<int>(random() % 12),
                                       static_cast<int>(random() % 3));
                    break;
                default:
                    Wnd().SendMessage(WM_PAINT);
                    break;
            }
            toolkit::RunFor(3);
        }
        Access().StopCapture();
        // A change of colour or A frequency is followed by a full draw; then frames go on top of it.
        Wnd().SendMessage(WM_PAINT);
        Access().StartCapture();
        toolkit::RunFor(300);
        Access().StopCapture();
        const auto byFrames = CopyPicture();
        Wnd().SendMessage(WM_PAINT);
        ASSERT_EQ(byFrames, CopyPicture()) << "round " << nRound;
    }
}

}  // namespace
