#include "end_to_end/DesktopTest.h"
#include "stage/Plucks.h"
#include "support/StandInViewer.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// Keys, pointer and window manager of a real desktop in front of the real program.

using namespace std::chrono_literals;

namespace {

class Input : public CDesktopTest {
protected:
    void SetUp() override {
        m_viewer.Install();
        m_stage.AddToEnvironment({{"PATH", m_viewer.Directory() + ":" + std::getenv("PATH")}});
        ASSERT_NO_FATAL_FAILURE(CDesktopTest::SetUp());
        ASSERT_TRUE(m_reader.Load(std::filesystem::path(FRETVANE_SOURCE_DIR) / "data"));
    }
    // A part of the window, in client coordinates, once it stands still.
    std::vector<std::uint32_t> Look(int left, int top, int right, int bottom) const {
        std::this_thread::sleep_for(200ms);
        std::vector<std::uint32_t> pixels;
        if (const auto screen = m_stage.Grab()) {
            for (int y = top; y < bottom; ++y) {
                for (int x = left; x < right; ++x) {
                    pixels.push_back(screen->At(m_tuner.x + x, m_tuner.y + y));
                }
            }
        }
        return pixels;
    }
    std::vector<std::uint32_t> Hint() const { return Look(10, 365, 240, 391); }
    std::vector<std::uint32_t> HintAt(int x, int y) const {
        EXPECT_TRUE(m_hand->MoveTo(m_tuner.x + x, m_tuner.y + y));
        return Hint();
    }
    std::vector<std::uint32_t> FrameRate() const { return Look(245, 15, 350, 40); }
    std::string Note() const {
        Picture window{m_tuner.nWidth, m_tuner.nHeight, Look(0, 0, m_tuner.nWidth, m_tuner.nHeight)};
        return window.pixels.empty() ? "" : m_reader.Read(window).strNote;
    }
    bool WaitForNote(const std::string& strNote) const {
        for (const auto deadline = std::chrono::steady_clock::now() + 8s;
             std::chrono::steady_clock::now() < deadline;) {
            if (Note() == strNote) {
                return true;
            }
        }
        return false;
    }

    CStandInViewer m_viewer;
    CDisplayReader m_reader;
};

TEST_F(Input, HintsFollowThePointerAndKeysReachTheirButtons) {
    const auto empty = HintAt(5, 305);
    const auto play = HintAt(60, 120);
    const auto list = HintAt(60, 200);
    EXPECT_NE(play, empty) << "over a button";
    EXPECT_NE(list, empty) << "over the list";
    EXPECT_NE(list, play);
    EXPECT_EQ(HintAt(5, 305), list) << "beside all areas the last one stays";
    EXPECT_EQ(HintAt(60, 120), play);

    // From the list one Tab leads to the options, though the list and that button both report it, and one
    // more to the help.
    ASSERT_TRUE(m_hand->Keys({"Tab", "Tab", "space"}));
    const auto told = m_viewer.Told();
    ASSERT_GT(told.size(), 1U);
    const std::string strPage = m_stage.GetDirectory() / "fvnhelp.htm";
    EXPECT_EQ(told[1], "[" + strPage + "]");

    const auto noRate = FrameRate();
    ASSERT_TRUE(m_hand->Keys({"f"}));
    std::this_thread::sleep_for(1200ms);
    EXPECT_NE(FrameRate(), noRate);
    ASSERT_TRUE(m_hand->Keys({"f"}));
    EXPECT_EQ(FrameRate(), noRate);

    ASSERT_TRUE(m_hand->Keys({"e"}));
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(5s), 0);
    EXPECT_NE(m_stage.ReadFile("state.txt"), "");
}

// Every row of the hints has a text of its own.
TEST_F(Input, EachPartOfTheWindowHasItsHint) {
    constexpr std::array<std::pair<int, int>, 13> PARTS{{{45, 70},
                                                         {60, 120},
                                                         {149, 120},
                                                         {132, 154},
                                                         {168, 154},
                                                         {60, 200},
                                                         {225, 170},
                                                         {370, 200},
                                                         {250, 350},
                                                         {287, 379},
                                                         {370, 379},
                                                         {452, 379},
                                                         {430, 24}}};
    std::set<std::vector<std::uint32_t>> hints{HintAt(5, 305)};
    for (const auto& [x, y] : PARTS) {
        EXPECT_TRUE(hints.insert(HintAt(x, y)).second) << x << ", " << y;
    }
}

TEST_F(Input, EachKeyDoesWhatItsButtonDoes) {
    // The lists of sound come from the program itself; nothing has sounded yet.
    const auto plays = [this] {
        return m_sound.Control({"list", "sink-inputs"}).value_or("").find("Fretvane") != std::string::npos;
    };
    for (const auto& [strKey, strTitle] : {std::pair<std::string, std::string>{"a", A_DIALOG},
                                           {"A", A_DIALOG},
                                           {"o", OPTIONS},
                                           {"O", OPTIONS}}) {
        SCOPED_TRACE(strKey);
        ASSERT_TRUE(m_hand->Type(strKey));
        EXPECT_TRUE(m_hand->FindWindow(strTitle));
        ASSERT_TRUE(m_hand->Keys({"Escape"}));
        EXPECT_TRUE(m_hand->WaitUntilGone(strTitle));
    }
    EXPECT_FALSE(plays());
    ASSERT_TRUE(m_hand->Keys({"p"}));
    for (int i = 0; i < 50 && !plays(); ++i) {
        std::this_thread::sleep_for(100ms);
    }
    EXPECT_TRUE(plays());
    EXPECT_TRUE(m_viewer.Told().empty());
    ASSERT_TRUE(m_hand->Keys({"h"}));
    EXPECT_GT(m_viewer.Told().size(), 1U);
}

// A frame marks the button that has the keyboard: it goes round and comes back, past the disabled Delete.
TEST_F(Input, TabGoesRoundTheWindow) {
    ASSERT_TRUE(m_hand->Activate(TUNER));
    constexpr std::array<std::array<int, 4>, 6> BUTTONS{{{250, 367, 325, 391},
                                                         {333, 367, 408, 391},
                                                         {415, 367, 490, 391},
                                                         {20, 108, 102, 132},
                                                         {108, 108, 190, 132},
                                                         {114, 144, 150, 164}}};
    const auto look = [this](const std::array<int, 4>& rc) { return Look(rc[0], rc[1], rc[2], rc[3]); };
    for (int nRound = 0; nRound < 2; ++nRound) {
        // It begins in the list, and comes back to it.
        for (const auto& button : BUTTONS) {
            const auto before = look(button);
            ASSERT_TRUE(m_hand->Keys({"Tab"}));
            EXPECT_NE(look(button), before) << button[0] << ", " << button[1];
        }
        ASSERT_TRUE(m_hand->Keys({"Tab"}));
    }
}

// What sounds while the window is minimised is not there when it comes back; what sounds then is.
TEST_F(Input, HearsNothingWhileMinimised) {
    const CTemporaryDirectory waves;
    const PreparedPluck pluck = PreparePluck({57, 0.0}, 1.0, waves.GetPath() / "a.wav");
    ASSERT_EQ(pluck.strNote, "A");
    ASSERT_TRUE(m_hand->Minimize(TUNER));
    // Longer than the forty buffers that the device goes on filling: 3.7 seconds.
    std::this_thread::sleep_for(5s);
    ASSERT_TRUE(m_sound.PlayIntoMicrophone(pluck.waveFile));
    std::this_thread::sleep_for(2s);
    ASSERT_TRUE(m_hand->Activate(TUNER));
    std::this_thread::sleep_for(500ms);
    EXPECT_NE(Note(), "A");
    ASSERT_TRUE(m_sound.PlayIntoMicrophone(pluck.waveFile));
    EXPECT_TRUE(WaitForNote("A"));
}

}  // namespace
