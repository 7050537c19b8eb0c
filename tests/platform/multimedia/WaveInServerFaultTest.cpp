#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/support/PrivateSoundServer.h"
#include "platform/multimedia/support/TestRecording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <thread>

// What can happen to a microphone and to a server. A device that was open once stays open for the program: it
// is silent while it is away, and heard again when it is back.

using namespace std::chrono_literals;

namespace {

constexpr UINT RATE = 11025;

class WaveInFault : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.Start(GetParam())); }
    void HearFirst(UINT uDeviceId) {
        ASSERT_EQ(waveInGetNumDevs(), 1U);
        ASSERT_TRUE(m_server.PlaySine(110.0));
        ASSERT_EQ(m_recording.Open(uDeviceId, RATE), MMSYSERR_NOERROR);
        ASSERT_TRUE(m_recording.Hears(110.0));
    }
    template <class Operation>
    static std::chrono::milliseconds Measure(Operation operation) {
        const auto begin = std::chrono::steady_clock::now();
        operation();
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    }
    static auto CountThreads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    static std::size_t LongestSilence(const std::vector<double>& samples, std::size_t nBegin) {
        std::size_t nLongest = 0;
        std::size_t nRun = 0;
        for (std::size_t i = nBegin; i < samples.size(); ++i) {
            nRun = std::abs(samples[i]) <= 2 ? nRun + 1 : 0;
            nLongest = std::max(nLongest, nRun);
        }
        return nLongest;
    }

    CPrivateSoundServer m_server;
    CTestRecording m_recording;
};

TEST_P(WaveInFault, ChosenMicrophoneIsSilentWhileAwayAndHeardAgainWhenBack) {
    HearFirst(0);
    ASSERT_TRUE(m_server.RemoveMicrophones());
    // The sine goes on at the monitor, which is now the only source: nobody may hear that instead.
    EXPECT_TRUE(m_recording.HearsSilence());
    std::this_thread::sleep_for(700ms);
    EXPECT_TRUE(m_recording.HearsSilence());
    ASSERT_TRUE(m_server.AddMicrophone("mic", "Test Microphone"));
    EXPECT_TRUE(m_recording.Hears(110.0));
}

TEST_P(WaveInFault, PreferredMicrophoneIsHeardAgainWhenBack) {
    ASSERT_TRUE(m_server.AddFeed("second_feed"));
    HearFirst(WAVE_MAPPER);
    ASSERT_TRUE(m_server.RemoveMicrophones());
    std::this_thread::sleep_for(700ms);
    // Back with other sound, so that what was heard meanwhile cannot be taken for it.
    ASSERT_TRUE(m_server.PlaySine(196.0, "second_feed"));
    ASSERT_TRUE(m_server.AddMicrophone("mic", "Test Microphone", "second_feed"));
    EXPECT_TRUE(m_recording.Hears(196.0));
}

TEST_P(WaveInFault, AnotherDeviceThatGoesDoesNotMatter) {
    HearFirst(WAVE_MAPPER);
    const std::size_t nHeard = m_recording.GetSamples().size();
    const auto begin = std::chrono::steady_clock::now();
    std::string strModule;
    ASSERT_TRUE(m_server.AddMicrophone("another", "Another", "mic_feed", &strModule));
    std::this_thread::sleep_for(300ms);
    ASSERT_TRUE(m_server.Control({"unload-module", strModule}));
    EXPECT_TRUE(m_recording.Hears(110.0));
    // Nothing is missing: a stream that is lost and taken up again has a gap of half a second.
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    const auto nNew = static_cast<double>(m_recording.GetSamples().size() - nHeard);
    EXPECT_GT(nNew, (elapsed.count() - 0.3) * RATE);
    EXPECT_LT(LongestSilence(m_recording.GetSamples(), nHeard), RATE / 4);
}

TEST_P(WaveInFault, ServerThatDiesAndReturnsIsFoundAgain) {
    HearFirst(0);
    m_server.Kill();
    EXPECT_TRUE(m_recording.HearsSilence());
    m_server.Stop();
    std::this_thread::sleep_for(700ms);
    ASSERT_TRUE(m_server.Start(GetParam()));
    ASSERT_TRUE(m_server.PlaySine(196.0));
    EXPECT_TRUE(m_recording.Hears(196.0));
}

TEST_P(WaveInFault, ServerThatFreezesIsClosedAtOnceAndHeardAgainWhenItGoesOn) {
    HearFirst(WAVE_MAPPER);
    CTestRecording other;
    ASSERT_EQ(other.Open(0, RATE), MMSYSERR_NOERROR);
    m_server.Freeze();
    EXPECT_TRUE(m_recording.HearsSilence());
    EXPECT_LT(Measure([&] { other.Close(); }), 500ms);
    m_server.Thaw();
    EXPECT_TRUE(m_recording.Hears(110.0));
    m_server.Freeze();
    EXPECT_LT(Measure([&] { m_recording.Close(); }), 500ms);
    m_server.Thaw();
}

TEST_P(WaveInFault, AFrozenServerHoldsUpOpeningForABoundedTime) {
    ASSERT_EQ(waveInGetNumDevs(), 1U);
    m_server.Freeze();
    EXPECT_LT(Measure([&] { EXPECT_NE(m_recording.Open(0, RATE), MMSYSERR_NOERROR); }), 3000ms);
    EXPECT_LT(Measure([&] { EXPECT_EQ(waveInGetNumDevs(), 0U); }), 3000ms);
    m_server.Thaw();
    EXPECT_EQ(waveInGetNumDevs(), 1U);
    EXPECT_EQ(m_recording.Open(0, RATE), MMSYSERR_NOERROR);
}

TEST_P(WaveInFault, ASuspendedSourceGivesSilenceAndClosesAtOnce) {
    HearFirst(0);
    ASSERT_TRUE(m_server.Control({"suspend-source", "mic", "1"}));
    // PipeWire takes the command, and may let the sound run on. Either way the recording goes on.
    EXPECT_TRUE(GetParam() == "pipewire" || m_recording.HearsSilence());
    EXPECT_GE(m_recording.Listen(1.0).size(), RATE);
    EXPECT_LT(Measure([&] { m_recording.Close(); }), 500ms);
}

TEST_P(WaveInFault, ADeviceThatIsGoneAtOpeningIsRefused) {
    ASSERT_TRUE(m_server.AddMicrophone("another", "Another"));
    ASSERT_EQ(waveInGetNumDevs(), 2U);
    ASSERT_TRUE(m_server.RemoveMicrophones());
    EXPECT_EQ(m_recording.Open(0, RATE), MMSYSERR_BADDEVICEID);
    EXPECT_EQ(m_recording.Open(2, RATE), MMSYSERR_BADDEVICEID);
}

TEST_P(WaveInFault, OpeningAndClosingAgainAndAgainLeavesNothingBehind) {
    ASSERT_EQ(waveInGetNumDevs(), 1U);
    ASSERT_EQ(m_recording.Open(0, RATE), MMSYSERR_NOERROR);
    m_recording.Close();
    const auto nBefore = CountThreads();
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(m_recording.Open(0, RATE), MMSYSERR_NOERROR) << i;
        m_recording.Close();
    }
    EXPECT_EQ(CountThreads(), nBefore);
}

INSTANTIATE_TEST_SUITE_P(Servers, WaveInFault, testing::Values<std::string>("pulse", "pipewire"),
                         [](const auto& server) { return server.param; });

TEST(WaveInWithoutServer, HasNoDevicesAndRefusesAtOnce) {
    CPrivateSoundServer server;
    server.PretendThereIsNone();
    CTestRecording recording;
    WAVEINCAPS caps;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(waveInGetNumDevs(), 0U);
    EXPECT_NE(waveInGetDevCapsA(WAVE_MAPPER, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(recording.Open(WAVE_MAPPER, RATE), MMSYSERR_NODRIVER);
    EXPECT_EQ(recording.Open(0, RATE), MMSYSERR_BADDEVICEID);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
}

}  // namespace
