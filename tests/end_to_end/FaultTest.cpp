#include "end_to_end/Crowd.h"
#include "stage/Hand.h"
#include "stage/Plucks.h"
#include "stage/Stage.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>

// What the user sees when sound goes wrong, in the real program.

using namespace std::chrono_literals;

namespace {

class Faults : public testing::Test {
protected:
    void StartSound() {
        ASSERT_TRUE(m_sound.Start());
        m_pluck = PreparePluck({45, 0.0}, 12.0, m_waves.GetPath() / "a.wav");
        m_other = PreparePluck({52, 0.0}, 12.0, m_waves.GetPath() / "e.wav");
        ASSERT_GT(m_pluck.dFrequency * m_other.dFrequency, 0.0);
    }
    void StartAll() {
        ASSERT_NO_FATAL_FAILURE(StartSound());
        ASSERT_TRUE(m_stage.Start(&m_sound));
        ASSERT_TRUE(Hears(m_pluck)) << m_stage.ReadFile("program.log") << m_stage.ReadFile("errorlog.txt");
    }

    // Plays the note until the window shows it.
    bool Hears(const PreparedPluck& pluck, std::chrono::milliseconds timeout = 10s,
               const std::string& strSink = "mic_feed") {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (std::chrono::steady_clock::now() < deadline) {
            if (!m_sound.Play(pluck.waveFile, strSink)) {
                return false;
            }
            const bool bRead = m_stage.ReadsSoon(
                [&](const DisplayedReading& reading) { return reading.strNote == pluck.strNote; }, 2s);
            m_sound.StopPlaying();
            if (bRead) {
                return true;
            }
        }
        return false;
    }

    void MakeBusy(const std::string& strSource) {
        ASSERT_TRUE(m_others.Gather(m_sound.GetEnvironment().at("PULSE_SERVER"), strSource));
    }

    CSoundServer m_sound;
    CCrowd m_others;
    CStage m_stage;
    CTemporaryDirectory m_waves;
    PreparedPluck m_pluck;
    PreparedPluck m_other;
};

TEST_F(Faults, MicrophoneTakenAwayAndPutBackIsHeardAgain) {
    ASSERT_NO_FATAL_FAILURE(StartAll());
    ASSERT_TRUE(m_sound.Control({"unload-module", "module-remap-source"}));
    EXPECT_TRUE(m_stage.GetProgram().IsRunning());
    ASSERT_TRUE(m_sound.Control(
        {"load-module", "module-remap-source", "source_name=mic", "master=mic_feed.monitor"}));
    ASSERT_TRUE(m_sound.Control({"set-default-source", "mic"}));
    EXPECT_TRUE(Hears(m_other));
    EXPECT_EQ(m_stage.ReadFile("errorlog.txt").find("Unable"),
              m_stage.ReadFile("errorlog.txt").rfind("Unable"));
}

TEST_F(Faults, ThePreferredMicrophoneIsFollowedAndAnotherOnesEndDoesNotMatter) {
    ASSERT_NO_FATAL_FAILURE(StartAll());
    ASSERT_TRUE(m_sound.Control({"load-module", "module-null-sink", "sink_name=second_feed"}));
    const auto second = m_sound.Control(
        {"load-module", "module-remap-source", "source_name=second", "master=second_feed.monitor"});
    ASSERT_TRUE(second);
    const std::string strSecond = second->substr(0, second->find('\n'));
    ASSERT_TRUE(m_sound.Control({"set-default-source", "second"}));
    EXPECT_TRUE(Hears(m_other, 10s, "second_feed"));
    ASSERT_TRUE(m_sound.Control({"set-default-source", "mic"}));
    EXPECT_TRUE(Hears(m_pluck));
    ASSERT_TRUE(m_sound.Control({"unload-module", strSecond}));
    EXPECT_TRUE(Hears(m_other));
    EXPECT_EQ(m_stage.ReadFile("errorlog.txt").find("recording device"), std::string::npos);
}

TEST_F(Faults, AServerThatStallsForFiveSecondsIsHeardAgain) {
    ASSERT_NO_FATAL_FAILURE(StartAll());
    m_sound.SignalServer(SIGSTOP);
    std::this_thread::sleep_for(5s);
    EXPECT_TRUE(DisplayedReading::IsGrey(m_stage.Read())) << "what is not heard is not shown as live";
    m_sound.SignalServer(SIGCONT);
    EXPECT_TRUE(Hears(m_other));
}

TEST_F(Faults, AMutedMicrophoneTurnsTheNeedleGrey) {
    ASSERT_NO_FATAL_FAILURE(StartAll());
    ASSERT_TRUE(m_sound.PlayIntoMicrophone(m_pluck.waveFile));
    ASSERT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsLive, 5s));
    ASSERT_TRUE(m_sound.Control({"set-source-mute", "mic", "1"}));
    EXPECT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsGrey, 6s));
    ASSERT_TRUE(m_sound.Control({"set-source-mute", "mic", "0"}));
    EXPECT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsLive, 6s));
}

TEST_F(Faults, ServerThatDiesAndReturnsIsFoundAgain) {
    ASSERT_NO_FATAL_FAILURE(StartAll());
    const CChildProcess::Environment before = m_sound.GetEnvironment();
    m_sound.Stop();
    EXPECT_TRUE(m_stage.GetProgram().IsRunning());
    ASSERT_TRUE(m_sound.Start());
    ASSERT_EQ(m_sound.GetEnvironment(), before);
    EXPECT_TRUE(Hears(m_other, 20s));
}

TEST_F(Faults, ABusyMicrophoneIsToldOfAndCanBeChosenOnceItIsFree) {
    ASSERT_NO_FATAL_FAILURE(StartSound());
    ASSERT_NO_FATAL_FAILURE(MakeBusy("mic"));
    ASSERT_TRUE(m_stage.StartOnDesktop(&m_sound));
    const CHand hand(m_stage.GetScreen().GetDisplay());
    ASSERT_TRUE(hand.FindWindow("^Error: Unable to use recording device$", 20s));
    ASSERT_TRUE(hand.Keys({"Return"}));
    const auto tuner = hand.FindWindow("^Fretvane ");
    ASSERT_TRUE(tuner);
    m_stage.LookAt(tuner->x, tuner->y);
    EXPECT_TRUE(DisplayedReading::IsOfTheStart(m_stage.Read()));
    const std::string strLog = m_stage.ReadFile("errorlog.txt");
    const std::string strLine = ": Unable any open any recording device\n";
    EXPECT_NE(strLog.find(strLine), std::string::npos) << strLog;
    EXPECT_EQ(strLog.find(strLine), strLog.rfind(strLine));
    // The options' second page: by its name in place of the preferred one.
    m_others.Disperse();
    ASSERT_TRUE(hand.Click(tuner->x + 287, tuner->y + 379));
    ASSERT_TRUE(hand.FindWindow("^.高音 .$"));
    ASSERT_TRUE(hand.Keys({"Right", "Tab", "Down", "Return"}));
    EXPECT_TRUE(Hears(m_pluck));
    EXPECT_EQ(m_stage.ReadFile("program.log"), "");
}

TEST_F(Faults, AChosenMicrophoneThatIsBusyGivesWayToThePreferredOneUntilTheNextStart) {
    ASSERT_NO_FATAL_FAILURE(StartSound());
    ASSERT_TRUE(m_sound.Control({"load-module", "module-null-sink", "sink_name=second_feed"}));
    ASSERT_TRUE(m_sound.Control(
        {"load-module", "module-remap-source", "source_name=second", "master=second_feed.monitor"}));
    std::ofstream(m_stage.GetDirectory() / "state.txt")
        << "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
           "44000\t10485760\t16711680\t32768\t16711680\t0\t2\t0\t128\t0\n";
    ASSERT_NO_FATAL_FAILURE(MakeBusy("second"));
    ASSERT_TRUE(m_stage.Start(&m_sound));
    EXPECT_TRUE(Hears(m_pluck));
    m_others.Disperse();
    m_stage.GetProgram().Signal(SIGTERM);
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(4s), 0);
    ASSERT_TRUE(m_stage.StartProgram(&m_sound));
    EXPECT_TRUE(Hears(m_other, 10s, "second_feed"));
    EXPECT_EQ(m_stage.ReadFile("errorlog.txt"), "");
}

TEST_F(Faults, WithoutAServerTheUserIsToldOnceAndTheWindowWorksOn) {
    ASSERT_TRUE(m_stage.Start(nullptr));
    // The message stands alone on the black screen, before the window; Return answers it.
    ASSERT_TRUE(m_stage.WaitForPicture(
        [](const Picture& picture) { return picture.At(250, 198) != 0 && picture.At(5, 5) == 0; }, 10s));
    EXPECT_TRUE(m_stage.GetProgram().IsRunning());
    ASSERT_TRUE(m_stage.PressKey("Return"));
    EXPECT_TRUE(m_stage.ReadsSoon(DisplayedReading::IsOfTheStart, 10s));
    const std::string strLog = m_stage.ReadFile("errorlog.txt");
    const std::string strLine = ": Unable to find any recording device\n";
    EXPECT_NE(strLog.find(strLine), std::string::npos) << strLog;
    EXPECT_EQ(strLog.find(strLine), strLog.rfind(strLine));
    m_stage.GetProgram().Signal(SIGTERM);
    EXPECT_EQ(m_stage.GetProgram().WaitForEnd(4s), 0);
    EXPECT_EQ(m_stage.ReadFile("program.log"), "");
}

}  // namespace
