#include "platform/drawing/Picture.h"
#include "platform/drawing/SysColors.h"
#include "platform/windows/ClientDc.h"
#include "platform/windows/Static.h"
#include "platform/windows/support/RecordingWnd.h"
#include "platform/windows/support/Toolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int CX = 120;
constexpr int CY = 80;

// What the picture holds, in the form of a screenshot.
toolkit::Screenshot PixelsOf(const CWnd& wnd) {
    const std::lock_guard lock(wnd.GetPictureLock());
    const CSurface& surface = wnd.GetPicture().GetSurface();
    toolkit::Screenshot shot{surface.GetWidth(), surface.GetHeight(), {}};
    for (int y = 0; y < shot.nHeight; ++y) {
        shot.pixels.insert(shot.pixels.end(), surface.GetRow(y), surface.GetRow(y) + shot.nWidth);
    }
    return shot;
}

void Fill(CWnd& wnd, const RECT& rc, COLORREF clr) {
    CClientDC dc(&wnd);
    const std::lock_guard lock(wnd.GetPictureLock());
    dc.FillSolidRect(rc, clr);
}

bool ShowsPicture(const CWnd& wnd) {
    return toolkit::GrabScreen(wnd) == PixelsOf(wnd);
}

class Picture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_wnd.Open(CX, CY));
        m_wnd.ShowWindow(SW_SHOW);
        m_wnd.UpdateWindow();
        toolkit::RunPending();
    }

    Log m_log;
    CRecordingWnd m_wnd{m_log};
};

TEST_F(Picture, BeginsInTheFaceColourAndShowsExactlyWhatIsDrawn) {
    const Pixel face = PixelFromColor(GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(toolkit::GrabScreen(m_wnd).pixels, std::vector<Pixel>(std::size_t{CX} * CY, face));

    std::mt19937 random(7);
    const auto number = [&random](unsigned nBelow) { return static_cast<int>(random() % nBelow); };
    for (int nRound = 0; nRound < 20; ++nRound) {
        // More rectangles than the list of marks holds, some of them partly outside.
        for (int i = 0; i < 40; ++i) {
            const int x = number(CX + 20) - 10;
            const int y = number(CY + 20) - 10;
            Fill(m_wnd, {x, y, x + 1 + number(9), y + 1 + number(9)},
                 static_cast<COLORREF>(number(0x1000000)));
        }
        EXPECT_TRUE(toolkit::WaitUntil([this] { return ShowsPicture(m_wnd); })) << nRound;
    }
    // Not between refreshes, but UpdateWindow brings it at once.
    Fill(m_wnd, {0, 0, CX, CY}, 0x0000FF);
    EXPECT_FALSE(ShowsPicture(m_wnd));
    m_wnd.UpdateWindow();
    toolkit::RunPending();
    EXPECT_TRUE(ShowsPicture(m_wnd));
    EXPECT_EQ(toolkit::GrabScreen(m_wnd).At(3, 4), 0xFFFF0000U);
}

TEST_F(Picture, PaintComesOncePerInvalidationAndNotForWhatTheScreenLost) {
    m_log.clear();
    // Hidden and shown again: the screen is made anew without the owner. Nor while nobody can see it.
    m_wnd.ShowWindow(SW_HIDE);
    m_wnd.ShowWindow(SW_SHOW);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return ShowsPicture(m_wnd); }));
    toolkit::RunFor(50);
    m_wnd.ShowWindow(SW_MINIMIZE);
    m_wnd.InvalidateRect(nullptr, false);
    toolkit::RunFor(50);
    EXPECT_THAT(m_log, ::testing::IsEmpty());
    m_wnd.ShowWindow(SW_RESTORE);
    m_wnd.InvalidateRect(nullptr, false);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return !m_log.empty(); }));
    toolkit::RunFor(50);
    EXPECT_THAT(m_log, ::testing::ElementsAre("paint"));
    // With erasing, the rectangle goes back to the face colour.
    Fill(m_wnd, {0, 0, CX, CY}, 0);
    const RECT rc{10, 10, 20, 20};
    m_wnd.InvalidateRect(&rc, true);
    m_wnd.UpdateWindow();
    EXPECT_EQ(PixelsOf(m_wnd).At(10, 10), PixelFromColor(GetSysColor(COLOR_BTNFACE)));
    EXPECT_EQ(PixelsOf(m_wnd).At(9, 9), PIXEL_BLACK);
}

// A thread draws as fast as it can, and keeps drawing, while the window is shown, resized, closed and gone.
TEST(PictureThreads, DrawingAtFullSpeedSurvivesTheClosingOfTheWindow) {
    for (int nRound = 0; nRound < 10; ++nRound) {
        Log log;
        CRecordingWnd wnd(log);
        CStatic text;
        ASSERT_TRUE(wnd.Open(CX, CY));
        ASSERT_TRUE(text.Create("", WS_VISIBLE, {0, 0, 50, 20}, &wnd));
        std::atomic<bool> bStop = false;
        std::atomic<int> nDrawn = 0;
        std::jthread painter([&] {
            for (int i = 0; !bStop; ++i) {
                Fill(wnd, {i % CX, i % CY, i % CX + 30, i % CY + 30}, static_cast<COLORREF>(i));
                if (i % 64 == 0) {
                    text.SetWindowText(std::to_string(i));
                }
                ++nDrawn;
            }
        });
        wnd.ShowWindow(SW_SHOW);
        EXPECT_TRUE(toolkit::WaitUntil([&nDrawn] { return nDrawn > 2000; }));
        wnd.SetWindowPos(0, 0, 2 * CX, 2 * CY, SWP_NOMOVE);
        toolkit::RunFor(10);
        toolkit::CloseBox(wnd);
        EXPECT_FALSE(wnd.IsWindow());
        const int nBefore = nDrawn;
        EXPECT_TRUE(toolkit::WaitUntil([&] { return nDrawn > nBefore + 2000; }));
        bStop = true;
        painter.join();
        toolkit::RunPending();
    }
}

TEST_F(Picture, ATextFromAnotherThreadComesWithTheNextRefreshAndNeverWaits) {
    CStatic text;
    ASSERT_TRUE(text.Create("before", WS_VISIBLE, {0, 0, 100, 20}, &m_wnd));
    toolkit::RunPending();
    const auto before = toolkit::GrabScreen(m_wnd);
    // The message loop doesn't run here: a call that it had to serve would never come back.
    std::jthread([&text] { text.SetWindowText("after"); }).join();
    EXPECT_EQ(text.GetWindowText(), "after");
    EXPECT_EQ(toolkit::TextOf(text), "before") << "the toolkit's own is touched by its own thread alone";
    EXPECT_EQ(toolkit::GrabScreen(m_wnd), before);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return toolkit::GrabScreen(m_wnd) != before; }));
    // The newest text wins, whichever thread it came from.
    std::jthread([&text] { text.SetWindowText("older"); }).join();
    text.SetWindowText("newest");
    toolkit::RunFor(50);
    EXPECT_EQ(text.GetWindowText(), "newest");
    EXPECT_EQ(toolkit::TextOf(text), "newest");
}

TEST_F(Picture, ANewFaceColourOfTheDesktopErasesAndAsksForAPaint) {
    const COLORREF clrBefore = GetSysColor(COLOR_BTNFACE);
    m_log.clear();
    toolkit::SetFaceColor(0x90A0B0);
    EXPECT_TRUE(toolkit::WaitUntil([this] { return !m_log.empty(); }));
    EXPECT_THAT(m_log, ::testing::ElementsAre("paint"));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), 0x90A0B0U);
    EXPECT_EQ(PixelsOf(m_wnd).At(50, 50), PixelFromColor(0x90A0B0));
    toolkit::SetFaceColor(clrBefore);
    EXPECT_TRUE(toolkit::WaitUntil([clrBefore] { return GetSysColor(COLOR_BTNFACE) == clrBefore; }));
}

}  // namespace
