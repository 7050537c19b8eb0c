#include "widgets/LevelMeter.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF HIGH = 0xFF0000;
constexpr COLORREF LOW = 0x008000;
constexpr RECT METER = {210, 43, 240, 300};

class LevelMeterTest : public testing::Test {
protected:
    LevelMeterTest() { EXPECT_TRUE(m_meter.Create(&m_wnd, METER)); }

    void Draw(bool bFull) {
        m_wnd.Draw([&](CDC* pDc) { m_meter.Draw(pDc, bFull); });
    }
    // From one end to the other a channel moves by a multiple of all steps' number or of its half; each step
    // stands in two rows.
    testing::AssertionResult ShowsColumn(const RECT& rc, int nBar) const {
        return FramedPixelsAre(m_wnd, rc, [&](int, int y) {
            const int nHalf = rc.Height() / 2;
            const int i = nHalf - y / 2 - 1;
            return y < rc.Height() - 2 - nBar
                       ? WHITE
                       : MakeColor(5 + 195 * i / (nHalf + 2), 250 - 130 * i / (nHalf + 2), 17);
        });
    }

    static constexpr COLORREF s_clrTop = MakeColor(200, 120, 17);
    static constexpr COLORREF s_clrBottom = MakeColor(5, 250, 17);
    CStageWnd m_wnd;
    CLevelMeter m_meter;
};

TEST_F(LevelMeterTest, TheColumnIsLinearInTheLevel) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    constexpr float NOTHING = std::numeric_limits<float>::quiet_NaN();
    m_meter.SetColors(s_clrTop, s_clrBottom);
    Draw(true);
    using Row = std::pair<float, int>;
    for (const auto& [fLevel, nBar] :
         {Row{-1.0F, 0}, Row{0.0F, 0}, Row{0.0039F, 0}, Row{0.004F, 1}, Row{0.25F, 63}, Row{0.996F, 251},
          Row{0.99999994F, 252}, Row{1.0F, 253}, Row{2.0F, 253}, Row{INFINITE, 253}, Row{-INFINITE, 0},
          Row{0.5F, 126}, Row{NOTHING, 0}}) {
        m_meter.SetLevel(fLevel);
        Draw(false);
        EXPECT_TRUE(ShowsColumn(METER, nBar)) << "a frame at " << fLevel;
        Draw(true);
        EXPECT_TRUE(ShowsColumn(METER, nBar)) << fLevel;
    }
}

// An odd and an even height end on the same rows from the bottom.
TEST_F(LevelMeterTest, TakesAnyRectangle) {
    for (const RECT& rc : {RECT{7, 9, 20, 135}, {7, 9, 20, 136}}) {
        CLevelMeter meter;
        ASSERT_TRUE(meter.Create(&m_wnd, rc));
        meter.SetColors(s_clrTop, s_clrBottom);
        meter.SetLevel(0.5F);
        m_wnd.Draw([&](CDC* pDc) { meter.Draw(pDc, true); });
        EXPECT_TRUE(ShowsColumn(rc, 61)) << rc.Height();
    }
}

// Channels that move by no whole number a step are cut toward the lower end's: blue grows by 255 / 130 =
// 1.96153843, a single-precision number a little below the true one, so that step 26 has 50 and not 51; green
// falls by 128 / 130; red falls by 190 / 130 = 1.46153843, at step 65 by 94.9999982.
TEST_F(LevelMeterTest, TheGradientIsCutTowardItsLowerEnd) {
    using Row = std::tuple<COLORREF, COLORREF, int, COLORREF>;
    m_meter.SetLevel(1.0F);
    for (const auto& [clrHigh, clrLow, nStep, clr] :
         {Row{HIGH, LOW, 26, 0x326700}, Row{HIGH, LOW, 126, 0xF70400}, Row{10, 200, 65, 0x00006A}}) {
        m_meter.SetColors(clrHigh, clrLow);
        Draw(true);
        EXPECT_EQ(m_wnd.GetPixel(METER.left + 5, METER.top + 254 - 2 * nStep), clr) << nStep;
    }
}

TEST_F(LevelMeterTest, AFrameSendsTheRowsBetween) {
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_meter.Draw(pDc, true); }, {METER}));
    const std::vector<std::pair<float, std::vector<RECT>>> STEPS{
        {0.5F, {{212, 172, 238, 298}}}, {0.5F, {}},
        {1.0F, {{212, 45, 238, 172}}},  {0.996F, {{212, 45, 238, 47}}},
        {0.0F, {{212, 47, 238, 298}}},  {0.0F, {}}};
    for (const auto& [fLevel, rects] : STEPS) {
        m_meter.SetLevel(fLevel);
        EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_meter.Draw(pDc, false); }, rects)) << fLevel;
    }
}

}  // namespace
