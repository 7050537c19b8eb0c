// Frames draw only what changed. Whatever came before, and whatever another thread draws and changes
// meanwhile, what stands in the end must be what a full draw shows.

#include "support/GraphicsSession.h"
#include "widgets/PictureDirectory.h"
#include "widgets/TestArtwork.h"
#include "widgets/WidgetSet.h"
#include "widgets/WidgetStage.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

using namespace std::chrono_literals;

class CRandom {
public:
    explicit CRandom(unsigned nSeed) : m_random(nSeed) {}

    int Number(int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(m_random); }
    COLORREF Color() { return static_cast<COLORREF>(Number(0, 0xFFFFFF)); }

    // The next reading, with room to spare: cents end near 51. True if the needle has another colour.
    bool Change(DisplayReading& reading) {
        reading.fLevel = static_cast<float>(Number(-10, 110)) / 100.0F;
        if (Number(0, 3) > 0) {
            reading.fHz = Number(0, 9) == 0 ? 0.0F : static_cast<float>(Number(30, 800));
            reading.nCents = Number(-55, 55);
            reading.nSemitone = Number(0, SEMITONES - 1);
        }
        const bool bColor = Number(0, 3) == 0;
        if (bColor) {
            reading.clrDialNeedle = Color();
        }
        return bColor;
    }
    void Change(DisplaySettings& settings) {
        settings.clrNeedle = Color();
        settings.clrHigh = Color();
        settings.clrLow = Color();
        settings.clrText = Color();
        settings.fA = static_cast<float>(Number(4300, 4500)) / 10.0F;
        for (StringNote& note : settings.tuning.m_strings) {
            note.Set(Number(0, SEMITONES - 1), Number(0, 2));
        }
    }

private:
    std::mt19937 m_random;
};

// Draws in frames, and keeps a second set that always draws in full beside it.
class CLiveDisplay {
public:
    CLiveDisplay() {
        EXPECT_TRUE(m_live.Create(&m_wndLive));
        EXPECT_TRUE(m_full.Create(&m_wndFull));
        ApplySettings();
        Frame(true);
        Paint();
    }

    void ApplySettings() {
        m_full.SetSettings(m_settings);
        m_wndLive.Draw([this](CDC*) { m_live.SetSettings(m_settings); });
    }
    void Paint() {
        m_wndLive.Draw([this](CDC* pDc) { m_live.DrawFull(pDc); });
    }
    void Frame(bool bColorChanged) {
        m_live.SetReading(m_reading);
        m_wndLive.Draw([this](CDC* pDc) { m_live.m_meter.Draw(pDc, false); });
        m_wndLive.Draw([this](CDC* pDc) { m_live.m_coarse.Draw(pDc, false); });
        if (bColorChanged) {
            m_live.m_dial.SetColor(m_reading.clrDialNeedle);
        }
        m_wndLive.Draw([&](CDC* pDc) { m_live.m_dial.Draw(pDc, false, bColorChanged); });
    }
    testing::AssertionResult IsWhole() {
        m_full.SetReading(m_reading);
        m_full.m_dial.SetColor(m_reading.clrDialNeedle);
        m_wndFull.Draw([this](CDC* pDc) { m_full.DrawFull(pDc); });
        return ShowTheSame(m_wndLive, m_wndFull);
    }

    // Frames are drawn from the one, settings changed from the other.
    DisplayReading m_reading;
    DisplaySettings m_settings;
    CWidgetSet m_live;

private:
    CStageWnd m_wndLive;
    CStageWnd m_wndFull;
    CWidgetSet m_full;
};

void ExpectEveryFrameToBeWhole() {
    const CGraphicsSession session;
    CLiveDisplay display;
    // From any reading to one of each sign and number of digits, to digits of each width; and back.
    for (const int nTo : {-51, -34, -10, -9, 0, 9, 12, 50}) {
        for (int nFrom = -55; nFrom <= 55; ++nFrom) {
            for (const int nCents : {nFrom, nTo}) {
                display.m_reading.nCents = nCents;
                display.m_reading.nSemitone = std::abs(nCents) % SEMITONES;
                display.Frame(false);
                ASSERT_TRUE(display.IsWhole()) << nFrom << " and " << nTo << " cents";
            }
        }
    }
    CRandom random(20);
    for (int i = 0; i < 800; ++i) {
        if (random.Number(0, 20) == 0) {
            random.Change(display.m_settings);
            display.ApplySettings();
            display.Paint();
        }
        if (random.Number(0, 9) == 0) {
            display.Paint();
        }
        display.Frame(random.Change(display.m_reading));
        ASSERT_TRUE(display.IsWhole()) << "frame " << i;
    }
}

TEST(Frames, AreWholeWithTestArtwork) {
    const CPictureDirectory directory;
    Write(TestArtwork::Glyphs::WithMargins);
    ExpectEveryFrameToBeWhole();
}

TEST(Frames, AreWholeWithTheProgramsArtwork) {
    const CDataDirectory directory;
    ExpectEveryFrameToBeWhole();
}

TEST(Frames, OnAThreadOfTheirOwnLeaveEveryPixelRight) {
    const CDataDirectory directory;
    const CGraphicsSession session;
    CLiveDisplay display;
    CRandom random(7);
    for (unsigned nRound = 0; nRound < 8; ++nRound) {
        std::jthread frames([&](const std::stop_token& stop) {
            CRandom readings(nRound);
            while (!stop.stop_requested()) {
                display.Frame(readings.Change(display.m_reading));
            }
            // The colour may have been set by the other thread since.
            display.Frame(true);
        });
        const auto end = std::chrono::steady_clock::now() + 400ms;
        while (std::chrono::steady_clock::now() < end) {
            if (random.Number(0, 2) > 0) {
                random.Change(display.m_settings);
                display.m_live.m_dial.SetColor(display.m_settings.clrNeedle);
                display.ApplySettings();
            }
            display.Paint();
            std::this_thread::yield();
        }
        frames.request_stop();
        frames.join();
        ASSERT_TRUE(display.IsWhole()) << "round " << nRound;
    }
}

}  // namespace
