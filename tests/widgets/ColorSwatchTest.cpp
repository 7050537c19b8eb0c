#include "platform/drawing/Picture.h"
#include "platform/windows/Messages.h"
#include "platform/windows/Static.h"
#include "platform/windows/WindowsSession.h"
#include "widgets/ColorSwatch.h"

#include <gtest/gtest.h>

#include <mutex>

namespace {

constexpr int ID = 1006;

// A control whose client area can be drawn into.
class CDrawnStatic : public CStatic {
public:
    using CWnd::SetClientSize;
};

class ColorSwatch : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_parent.CreateEx(WS_CAPTION, "Colours", {0, 0, 200, 150}, nullptr, 0));
        ASSERT_TRUE(m_control.Create("1", WS_CHILD | WS_VISIBLE, {20, 30, 45, 51}, &m_parent, ID));
        m_control.SetClientSize(25, 21);
    }

    // What the control shows.
    COLORREF At(int x, int y) const {
        const std::lock_guard lock(m_control.GetPictureLock());
        return ColorFromPixel(m_control.GetPicture().GetSurface().GetRow(y)[x]);
    }

    CWindowsSession m_session;
    CWnd m_parent;
    CDrawnStatic m_control;
    CColorSwatch m_swatch;
};

TEST_F(ColorSwatch, ShowsWhatItWasFilledWithWhenAsked) {
    const COLORREF clrFace = At(12, 10);
    m_swatch.Init(&m_parent, ID);
    EXPECT_EQ(m_swatch.GetWidth(), 25);
    EXPECT_EQ(m_swatch.GetHeight(), 21);
    EXPECT_EQ(At(12, 10), clrFace) << "the control shows nothing yet";
    m_swatch.Show();
    EXPECT_EQ(At(24, 20), 0U);
    m_swatch.FillRect(5, 5, 10, 10, 0xA00000);
    EXPECT_EQ(At(12, 10), 0U) << "filling is not showing";
    m_swatch.Repaint();
    EXPECT_EQ(At(4, 5), 0U);
    EXPECT_EQ(At(5, 5), 0xA00000U);
    EXPECT_EQ(At(14, 14), 0xA00000U);
    EXPECT_EQ(At(24, 20), 0U);
}

TEST_F(ColorSwatch, WithoutItsControlIsHarmless) {
    for (int i = 0; i < 2; ++i) {
        m_swatch.FillRect(0, 0, 5, 5, 0xFF);
        m_swatch.Show();
        m_swatch.Repaint();
        m_swatch.Init(&m_parent, ID + 1);
    }
    EXPECT_EQ(m_swatch.GetWidth(), 0);
}

}  // namespace
