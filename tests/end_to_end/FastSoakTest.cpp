#include "dialogs/OptionsSheet.h"
#include "platform/base/String.h"
#include "platform/drawing/Picture.h"
#include "platform/windows/support/Toolkit.h"
#include "stage/SyntheticString.h"
#include "widgets/WidgetSet.h"
#include "widgets/WidgetStage.h"
#include "window/Strongest.h"
#include "window/TunerWndTest.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

// Music as fast as it is consumed, through the real recorder, capture loop, engine and window: at steps from
// one sample to more than a buffer, in pieces of any size, while the user changes everything that a frame
// draws. FRETVANE_SOAK_SECONDS tells for how much music; a minute unless told otherwise.

namespace {

using namespace std::chrono_literals;

constexpr int RATE = 11025;
constexpr int BUFFER = 1024;
constexpr int STRETCH = 10 * RATE;
constexpr double LONGEST_HOP = 2500.0;
// What an allocator may keep back for later without anything leaking.
constexpr long SLACK_KB = 1024;
#ifdef __SANITIZE_ADDRESS__
// The sanitizer keeps what is freed; leaks it finds by itself.
constexpr bool MEMORY_IS_GIVEN_BACK = false;
#else
constexpr bool MEMORY_IS_GIVEN_BACK = true;
#endif

struct Usage {
    long nResidentKb = 0;
    long nDescriptors = 0;
    long nThreads = 0;
};

long CountFiles(const char* szDirectory) {
    return std::distance(std::filesystem::directory_iterator(szDirectory), {});
}

Usage Measure() {
    Usage usage{0, CountFiles("/proc/self/fd"), CountFiles("/proc/self/task")};
    std::ifstream status("/proc/self/status");
    for (std::string strKey; status >> strKey && strKey != "VmRSS:";) {
    }
    status >> usage.nResidentKb;
    return usage;
}

// A block of 1024 begins at each multiple of the hop, and is due when the buffer is complete in which the
// sample behind it would lie.
long CountDue(long nSamples, int nHop) {
    const long nBuffers = nSamples / BUFFER;
    return nBuffers < 2 ? 0 : ((nBuffers - 1) * BUFFER + nHop - 1) / nHop;
}

class FastSoak : public CTunerWndTest {
protected:
    void SetUp() override {
        WriteState(0, 0);
        Open();
        PrepareMusic();
    }
    int Random(int nBelow) { return static_cast<int>(m_user() % static_cast<unsigned>(nBelow)); }

    // Plucks from below the lowest string to above the highest one, soft and loud, clean and in noise.
    void PrepareMusic() {
        for (int i = 0; i < 48; ++i) {
            SyntheticString string;
            string.dFrequency = 70.0 * std::exp2(Random(1000) / 300.0);
            string.dDecay = 0.1 + Random(100) / 80.0;
            string.dPeak = i % 6 == 0 ? 60000.0 : 500.0 * (1 + Random(40));
            string.dNoise = i % 3 == 0 ? 300.0 : 0.0;
            string.dStiffness = i % 2 == 0 ? 0.00005 : 0.0;
            string.nSeed = static_cast<std::uint32_t>(i + 1);
            m_plucks.push_back(string.MakeSamples(RATE / 2 + Random(2 * RATE)));
        }
        m_plucks.emplace_back(3 * RATE);  // a rest
    }
    // On the capture thread. The second tracker makes the same readings of the same blocks as the window's.
    static void OnBlock(void* pArg) { static_cast<FastSoak*>(pArg)->Frame(); }
    void Frame() {
        const CPitchEngine& engine = Access().Engine();
        const auto candidates = engine.GetCandidates();
        m_reading =
            m_tracker.Update(candidates[FindStrongest(candidates)], static_cast<float>(engine.GetHop()),
                             engine.GetSampleRate(), engine.GetLevel());
        CTunerWnd::FrameCallback(m_pWnd.get());
        const long nFrame = ++m_nFrames;
        if (nFrame == m_nTarget) {
            m_reached.release();
        }
        if (nFrame == m_nStandStill) {
            m_standing.release();
            m_goOn.acquire();
        }
    }

    void StartStretch(int nHop);
    void Feed(int nHop, unsigned nSeed);
    void Act();
    void RunStretch();
    void ExpectTheRightPicture();
    // The needle's colour, where nothing else stands on the white.
    COLORREF NeedleColor() {
        int x = CWidgetSet::s_rcDial.left + 2;
        while (x < CWidgetSet::s_rcDial.right - 3 && PixelAt(x, 203) == 0xFFFFFFU) {
            ++x;
        }
        return PixelAt(x, 203);
    }

    std::mt19937 m_random{3};
    std::mt19937 m_user{4};
    std::vector<std::vector<std::int16_t>> m_plucks;
    CNoteTracker m_tracker;
    NoteReading m_reading;
    float m_fA = DEFAULT_A_FREQUENCY;
    std::atomic<long> m_nFrames = 0;       // of this stretch
    std::atomic<long> m_nTarget = 0;       // at this one more sound may come
    std::atomic<long> m_nStandStill = -1;  // behind this one the capture stands still
    std::counting_semaphore<> m_reached{0};
    std::counting_semaphore<> m_standing{0};
    std::counting_semaphore<> m_goOn{0};
    std::atomic<bool> m_bFed = false;
    long m_nDue = 0;
    long m_nShown = 0;
    long m_nCompared = 0;
    long m_nActions = 0;
};

void FastSoak::StartStretch(int nHop) {
    CPitchEngine& engine = Access().Engine();
    engine.Stop();
    m_nFrames = 0;
    engine.SetAdaptHop(false);
    engine.SetHop(nHop);
    const int nStarts = m_fake->GetCalls().nStart;
    ASSERT_TRUE(engine.Start(&OnBlock, this, 0, RATE, BUFFER, BUFFER, 50.0F));
    engine.SetReference(m_fA);
    engine.SetTimeGate(false);
    ASSERT_TRUE(toolkit::WaitUntil([&] { return m_fake->GetCalls().nStart == nStarts + 1; }));
}

// On a thread of its own: never while a block is due, so that none is late.
void FastSoak::Feed(int nHop, unsigned nSeed) {
    std::mt19937 random(nSeed);
    std::size_t nPluck = random() % m_plucks.size();
    std::size_t nInPluck = 0;
    std::vector<std::int16_t> piece;
    for (long nFed = 0; nFed < STRETCH;) {
        piece.resize(std::min<std::size_t>(static_cast<std::size_t>(STRETCH - nFed), 1 + random() % BUFFER));
        for (std::int16_t& nValue : piece) {
            if (nInPluck == m_plucks[nPluck].size()) {
                nPluck = random() % m_plucks.size();
                nInPluck = 0;
            }
            nValue = m_plucks[nPluck][nInPluck++];
        }
        const long nBefore = CountDue(nFed, nHop);
        nFed += static_cast<long>(piece.size());
        m_nTarget = CountDue(nFed, nHop);
        m_fake->Feed(piece);
        if (m_nTarget > nBefore && !m_reached.try_acquire_for(60s)) {
            ADD_FAILURE() << "at a hop of " << nHop << " only " << m_nFrames << " of " << m_nTarget
                          << " frames came";
            break;
        }
    }
    m_bFed = true;
}

// Something that a user may do while sound comes.
void FastSoak::Act() {
    ++m_nActions;
    CTuningStore& store = Access().Store();
    switch (Random(7)) {
        case 0:
            Access().List().SetCurSel(Random(Access().List().GetCount()));
            Wnd().SendMessage(WM_COMMAND, MakeCommandParam(10008, LBN_SELCHANGE));
            break;
        case 1:
            m_fA = static_cast<float>(4300 + Random(201)) / 10.0F;
            Access().SetAFrequency(m_fA);
            Wnd().SendMessage(WM_PAINT);
            break;
        case 2:  // no colour is white, for the needle has to be found
            store.SetNeedleColor(m_user() & 0xFEFEFE);
            store.SetHighColor(m_user() & 0xFEFEFE);
            store.SetLowColor(m_user() & 0xFEFEFE);
            store.SetTextColor(m_user() & 0xFEFEFE);
            Wnd().SendMessage(COptionsSheet::COLORS_CHANGED);
            break;
        case 3:
            Access().SetString(m_user() % 6, Random(12), Random(3));
            Wnd().SendMessage(WM_PAINT);
            break;
        case 4:
            toolkit::MoveOver(Wnd(), {Random(500), Random(396)});
            break;
        case 5:
            Access().Engine().GetCapture().SetPaused(Random(6) == 0);
            toolkit::RunFor(Random(20));
            Access().Engine().GetCapture().SetPaused(false);
            break;
        default:
            Wnd().SendMessage(WM_PAINT);
            break;
    }
}

// While no frame runs: the picture, and then the screen, against fresh widgets that draw the same reading in
// full; the rest of the window against a full paint of its own.
void FastSoak::ExpectTheRightPicture() {
    ++m_nCompared;
    const CTuningStore& store = Access().Store();
    DisplayState state;
    state.fLevel = m_tracker.GetLevel();
    state.fHz = m_reading.frequency;
    state.nSemitone = m_reading.semitone;
    state.nCents = static_cast<int>(m_reading.cents);
    state.clrDialNeedle = NeedleColor();
    state.clrNeedle = store.GetNeedleColor();
    state.clrHigh = store.GetHighColor();
    state.clrLow = store.GetLowColor();
    state.clrText = store.GetTextColor();
    state.tuning = Access().Current();
    state.fA = m_fA;
    CStageWnd fresh;
    CWidgetSet widgets;
    ASSERT_TRUE(widgets.Create(&fresh));
    widgets.SetAll(state);
    fresh.Draw([&](CDC* pDc) { widgets.DrawFull(pDc); });
    const auto isRight = [&](const std::function<COLORREF(int, int)>& fnShown) {
        for (const RECT& rc : {CWidgetSet::s_rcMeter, CWidgetSet::s_rcCoarse, CWidgetSet::s_rcDial}) {
            for (int y = rc.top; y < rc.bottom; ++y) {
                for (int x = rc.left; x < rc.right; ++x) {
                    if (fnShown(x, y) != fresh.GetPixel(x, y)) {
                        return false;
                    }
                }
            }
        }
        return true;
    };
    const auto byFrames = CopyPicture();
    EXPECT_TRUE(isRight([&](int x, int y) {
        return ColorFromPixel(byFrames[static_cast<std::size_t>(y * CStageWnd::s_rcClient.right + x)]);
    })) << "the picture, at frame "
        << m_nFrames;
    Wnd().SendMessage(WM_PAINT);
    EXPECT_EQ(byFrames, CopyPicture()) << "at frame " << m_nFrames;
    EXPECT_TRUE(toolkit::WaitUntil([&] {
        const toolkit::Screenshot screen = toolkit::GrabScreen(Wnd());
        return isRight([&](int x, int y) { return ColorFromPixel(screen.At(x, y) & 0xFFFFFFU); });
    })) << "the screen, at frame "
        << m_nFrames;
}

void FastSoak::RunStretch() {
    const auto nHop =
        static_cast<int>(std::exp2(std::uniform_real_distribution<>(0.0, std::log2(LONGEST_HOP))(m_random)));
    const long nDue = CountDue(STRETCH, nHop);
    const std::int64_t nShownBefore = Access().FrameCount();
    ASSERT_NO_FATAL_FAILURE(StartStretch(nHop));
    m_nStandStill = std::uniform_int_distribution<long>(1, nDue)(m_random);
    m_bFed = false;
    std::jthread feeder([this, nHop, nSeed = static_cast<unsigned>(m_random())] { Feed(nHop, nSeed); });
    for (bool bCompared = false; !m_bFed || !bCompared;) {
        if (m_standing.try_acquire()) {
            ExpectTheRightPicture();
            bCompared = true;
            m_goOn.release();
        } else {
            ASSERT_FALSE(HasFailure());
            Act();
            toolkit::RunFor(Random(4));
        }
    }
    feeder.join();
    Access().Engine().Stop();
    const std::int64_t nShown = Access().FrameCount() - nShownBefore;
    EXPECT_EQ(m_nFrames, nDue) << "at a hop of " << nHop;
    EXPECT_EQ(nShown, nDue) << "at a hop of " << nHop;
    m_nShown += nShown;
    m_nDue += nDue;
}

TEST_F(FastSoak, LeavesNoPixelWrongAndLosesNoBlockAndGrowsNowhere) {
    const char* const szSeconds = std::getenv("FRETVANE_SOAK_SECONDS");
    const long nStretches =
        std::max((szSeconds != nullptr ? std::strtol(szSeconds, nullptr, 10) : 60) * RATE / STRETCH, 4L);
    const auto start = std::chrono::steady_clock::now();
    // The first ones fill caches.
    const long nSettled = std::max(nStretches / 4, 3L);
    Usage most;
    Usage now;
    std::cout
        << "music, min  blocks due  frames shown  pictures compared  actions  resident KB  descriptors  "
           "threads\n";
    for (long i = 1; i <= nStretches; ++i) {
        RunStretch();
        ASSERT_FALSE(HasFailure()) << "stretch " << i;
        now = Measure();
        if (i <= nSettled) {
            most = {std::max(most.nResidentKb, now.nResidentKb),
                    std::max(most.nDescriptors, now.nDescriptors), std::max(most.nThreads, now.nThreads)};
        }
        if (i * 6 / nStretches > (i - 1) * 6 / nStretches) {
            std::cout << FormatText("%10.1f  %10ld  %12ld  %17ld  %7ld  %11ld  %11ld  %7ld\n",
                                    static_cast<double>(i * STRETCH) / RATE / 60.0, m_nDue, m_nShown,
                                    m_nCompared, m_nActions, now.nResidentKb, now.nDescriptors, now.nThreads)
                      << std::flush;
        }
    }
    std::cout << FormatText(
        "%ld samples in %.0f s; settled: at most %ld KB, %ld descriptors, %ld threads; at the end "
        "%ld KB, %ld, %ld\n",
        nStretches * STRETCH, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
        most.nResidentKb, most.nDescriptors, most.nThreads, now.nResidentKb, now.nDescriptors, now.nThreads);
    EXPECT_TRUE(!MEMORY_IS_GIVEN_BACK || now.nResidentKb <= most.nResidentKb + SLACK_KB);
    EXPECT_LE(now.nDescriptors, most.nDescriptors);
    EXPECT_LE(now.nThreads, most.nThreads);
    Close();
}

}  // namespace
