#include "stage/Hand.h"
#include "stage/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

// The tuner listens to what it plays itself: its microphone is the output of the sound server.

using namespace std::chrono_literals;

namespace {

// Where a click plays a string.
constexpr int FIRST_STRING_X = 45;
constexpr int STRINGS_APART = 25;
constexpr int STRINGS_Y = 70;

class OwnTone : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_sound.Start());
        ASSERT_TRUE(m_sound.Control({"set-default-source", "ref_out.monitor"}));
        ASSERT_TRUE(m_stage.Start(&m_sound));
        ASSERT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsOfTheStart, 10s))
            << m_stage.ReadFile("program.log");
        std::this_thread::sleep_for(500ms);
    }
    // Until it is heard.
    void PlayRun() {
        ASSERT_TRUE(m_stage.PressKey("p"));
        ASSERT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsLive, 3s));
    }

    CSoundServer m_sound;
    CStage m_stage;
};

TEST_F(OwnTone, EachStringIsReadAsTheNoteThatWasClickedAndInTune) {
    const CHand hand(m_stage.GetScreen().GetDisplay());
    const std::array<const char*, 6> notes{"E", "A", "D", "G", "B", "E"};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(hand.Click(FIRST_STRING_X + STRINGS_APART * static_cast<int>(i), STRINGS_Y));
        EXPECT_TRUE(m_stage.ReadsSoon(
            [&](const DisplayedReading& reading) {
                return reading.strNote == notes.at(i) && DisplayedReading::IsLive(reading);
            },
            3s));
        std::vector<int> errors;
        for (const auto end = std::chrono::steady_clock::now() + 700ms;
             std::chrono::steady_clock::now() < end;) {
            const DisplayedReading reading = m_stage.Read();
            errors.push_back(reading.strNote == notes.at(i) ? std::abs(reading.nCents.value_or(100)) : 100);
            std::this_thread::sleep_for(20ms);
        }
        // The pluck itself has no pitch yet; what follows has.
        std::sort(errors.begin(), errors.end());
        EXPECT_LE(errors[errors.size() / 2], 1);
        EXPECT_LE(errors[errors.size() * 4 / 5], 3);
        std::this_thread::sleep_for(500ms);  // until all is still
    }
}

TEST_F(OwnTone, TheProgramEndsAtOnceDuringATone) {
    PlayRun();
    m_stage.GetProgram().Signal(SIGTERM);
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(4s), 0);
    EXPECT_EQ(m_sound.Control({"list", "short", "sink-inputs"}), "");
    EXPECT_EQ(m_stage.ReadFile("program.log"), "");
}

// Recording and playing both wait for a server that doesn't answer.
TEST_F(OwnTone, TheProgramEndsAtOnceDuringAToneThatTheServerKeepsBack) {
    PlayRun();
    m_sound.SignalServer(SIGSTOP);
    m_stage.GetProgram().Signal(SIGTERM);
    const auto exitCode = m_stage.GetProgram().WaitForEnd(4s);
    m_sound.SignalServer(SIGCONT);
    EXPECT_EQ(exitCode, 0);
    EXPECT_EQ(m_stage.ReadFile("state.txt").substr(0, 40), "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n");
}

}  // namespace
