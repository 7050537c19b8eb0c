#include "widgets/LevelMeter.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr COLORREF WHITE = 0xFFFFFF;
constexpr COLORREF HIGH = 0xFF0000;
constexpr COLORREF LOW = 0x008000;
constexpr RECT METER = {210, 43, 240, 300};

class LevelMeterTest : public testing::Test {
protected:
    LevelMeterTest() {
        EXPECT_TRUE(m_meter.Create(&m_wnd, METER));
        m_meter.SetColors(HIGH, LOW);
        m_meter.SetLevel(0.0F);
    }

    void DrawFull() {
        m_wnd.Draw([this](CDC* pDc) { m_meter.Draw(pDc, true); });
    }
    void DrawFrame(float fLevel) {
        m_meter.SetLevel(fLevel);
        m_wnd.Draw([this](CDC* pDc) { m_meter.Draw(pDc, false); });
    }
    // The rows in the middle of the meter that aren't white.
    int Bar() const {
        int nRows = 0;
        for (int y = METER.top + 2; y < METER.bottom - 2; ++y) {
            nRows += m_wnd.GetPixel(METER.left + 15, y) != WHITE ? 1 : 0;
        }
        return nRows;
    }

    CStageWnd m_wnd;
    CLevelMeter m_meter;
};

TEST_F(LevelMeterTest, TheColumnIsLinearInTheLevel) {
    struct Row {
        float fLevel;
        int nBar;
    };
    constexpr Row ROWS[] = {{-1.0F, 0},
                            {0.0F, 0},
                            {0.0039F, 0},
                            {0.004F, 1},
                            {0.25F, 63},
                            {0.5F, 126},
                            {0.75F, 189},
                            {0.996F, 251},
                            {0.99999994F, 252},
                            {1.0F, 253},
                            {2.0F, 253},
                            {std::numeric_limits<float>::infinity(), 253},
                            {-std::numeric_limits<float>::infinity(), 0},
                            {std::numeric_limits<float>::quiet_NaN(), 0}};
    DrawFull();
    for (const Row& row : ROWS) {
        DrawFrame(row.fLevel);
        EXPECT_EQ(Bar(), row.nBar) << row.fLevel;
    }
}

// Channels that move by no whole number a step are cut toward the lower end's: blue grows by 255 / 130 =
// 1.96153843, a single-precision number a little below the true one, so that step 26 has 50 and not 51; green
// falls by 128 / 130; red falls by 190 / 130 = 1.46153843, at step 65 by 94.9999982.
TEST_F(LevelMeterTest, TheGradientIsCutTowardItsLowerEnd) {
    struct Row {
        COLORREF clrHigh;
        COLORREF clrLow;
        int nStep;
        COLORREF clr;
    };
    constexpr Row ROWS[] = {{HIGH, LOW, 0, LOW},       {HIGH, LOW, 1, 0x018000},  {HIGH, LOW, 2, 0x037F00},
                            {HIGH, LOW, 26, 0x326700}, {HIGH, LOW, 65, 0x7F4000}, {HIGH, LOW, 126, 0xF70400},
                            {10, 200, 1, 199},         {10, 200, 65, 0x00006A}};
    m_meter.SetLevel(1.0F);
    for (const Row& row : ROWS) {
        m_meter.SetColors(row.clrHigh, row.clrLow);
        DrawFull();
        EXPECT_EQ(m_wnd.GetPixel(METER.left + 5, METER.top + 254 - 2 * row.nStep), row.clr) << row.nStep;
    }
}

// The ends are apart by multiples of 65, so that a channel moves by whole halves at each of the 130 steps.
struct Gradient {
    COLORREF clrHigh;
    COLORREF clrLow;
    int nRedHalves;
    int nGreenHalves;
    int nBlueHalves;

    COLORREF GetStep(int i) const {
        return MakeColor(GetRed(clrLow) + i * nRedHalves / 2, GetGreen(clrLow) + i * nGreenHalves / 2,
                         GetBlue(clrLow) + i * nBlueHalves / 2);
    }
};
constexpr Gradient RISING = {MakeColor(150, 75, 195), MakeColor(20, 10, 0), 2, 1, 3};
constexpr Gradient FALLING = {MakeColor(70, 190, 40), MakeColor(200, 255, 235), -2, -1, -3};
constexpr Gradient CROSSING = {MakeColor(200, 120, 17), MakeColor(5, 250, 17), 3, -2, 0};

struct Picture {
    const Gradient& gradient;
    float fLevel;
    int nFirstRow;  // of the column: 255 less the whole part of 253 times the level
};
constexpr Picture PICTURES[] = {
    {RISING, 0.004F, 254}, {RISING, 0.33F, 172},  {FALLING, 0.25F, 192},
    {FALLING, 0.996F, 4},  {CROSSING, 0.5F, 129}, {CROSSING, 1.0F, 2},
};

// Step i stands in rows 254 - 2 i and 255 - 2 i, whether a full draw shows the level or a frame reaches it
// from below or from above.
TEST_F(LevelMeterTest, WholePictureOfEachState) {
    for (const Picture& picture : PICTURES) {
        SCOPED_TRACE(picture.fLevel);
        const auto expect = [&] {
            EXPECT_TRUE(PixelsAre(m_wnd, METER, [&](int x, int y) -> COLORREF {
                if (const COLORREF clrEdge = SunkenEdgeAt(METER, x, y); clrEdge != CLR_INVALID) {
                    return clrEdge;
                }
                const int nRow = y - METER.top;
                return nRow < picture.nFirstRow ? WHITE : picture.gradient.GetStep((255 - nRow) / 2);
            }));
        };
        m_meter.SetColors(picture.gradient.clrHigh, picture.gradient.clrLow);
        m_meter.SetLevel(picture.fLevel);
        DrawFull();
        expect();
        for (const float fFrom : {0.0F, 1.0F}) {
            DrawFrame(fFrom);
            DrawFrame(picture.fLevel);
            expect();
        }
    }
}

TEST_F(LevelMeterTest, AFrameSendsTheRowsBetween) {
    EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_meter.Draw(pDc, true); }, {METER}));
    const std::vector<std::pair<float, std::vector<RECT>>> STEPS{{0.5F, {{212, 172, 238, 298}}},
                                                                 {0.5F, {}},
                                                                 {1.0F, {{212, 45, 238, 172}}},
                                                                 {0.996F, {{212, 45, 238, 47}}},
                                                                 {0.992F, {{212, 47, 238, 48}}},
                                                                 {0.0F, {{212, 48, 238, 298}}},
                                                                 {0.0F, {}}};
    for (const auto& [fLevel, rects] : STEPS) {
        m_meter.SetLevel(fLevel);
        EXPECT_TRUE(TouchesExactly([this](CDC* pDc) { m_meter.Draw(pDc, false); }, rects)) << fLevel;
    }
}

TEST_F(LevelMeterTest, NewColorsComeWithTheFullDraw) {
    m_meter.SetLevel(0.5F);
    DrawFull();
    m_meter.SetColors(0x0000FF, 0x0000FF);
    DrawFrame(0.5F);
    EXPECT_EQ(m_wnd.GetPixel(225, METER.top + 254), LOW);
}

// Any rectangle will do; an odd and an even height end on the same rows from the bottom.
TEST(LevelMeterSize, OtherRectangles) {
    for (const int nHeight : {40, 41}) {
        CStageWnd wnd;
        CLevelMeter meter;
        ASSERT_TRUE(meter.Create(&wnd, {7, 9, 20, 9 + nHeight}));
        meter.SetColors(HIGH, LOW);
        meter.SetLevel(0.5F);
        wnd.Draw([&](CDC* pDc) { meter.Draw(pDc, true); });
        // Half of it is 18 rows; step 1 of 22 stands in rows 36 and 37.
        for (const auto& [y, clr] :
             {std::pair{36, COLORREF{0x0B7B00}}, {37, COLORREF{0x0B7B00}}, {nHeight - 21, WHITE}}) {
            EXPECT_EQ(wnd.GetPixel(10, 9 + y), clr) << y;
        }
        EXPECT_NE(wnd.GetPixel(10, 9 + nHeight - 20), WHITE);
    }
}

}  // namespace
