#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/support/PrivateSoundServer.h"
#include "platform/multimedia/support/TestRecording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>

// Recording from a real sound server, PulseAudio and PipeWire alike, and what can happen to a microphone and
// to a server. A device that was open once stays open for the program: it is silent while it is away, and
// heard again when it is back.

using namespace std::chrono_literals;

namespace {

constexpr UINT RATE = 11025;

class WaveInServer : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.Start(GetParam())); }

    static std::string NameOf(UINT uDeviceId) {
        WAVEINCAPS caps;
        return waveInGetDevCapsA(uDeviceId, caps) == MMSYSERR_NOERROR ? caps.szPname : "(none)";
    }
    void HearFirst(UINT uDeviceId) {
        ASSERT_EQ(waveInGetNumDevs(), 1U);
        ASSERT_TRUE(m_server.PlaySine(110.0));
        ASSERT_EQ(m_recording.Open(uDeviceId, RATE), MMSYSERR_NOERROR);
        ASSERT_TRUE(m_recording.Hears(110.0));
    }
    static bool IsDoneWithin(std::chrono::milliseconds limit, const std::function<void()>& operation) {
        const auto begin = std::chrono::steady_clock::now();
        operation();
        return std::chrono::steady_clock::now() - begin < limit;
    }
    // Without waiting for an answer that does not come, which takes longer.
    bool ClosesAtOnce(CTestRecording& recording) {
        return IsDoneWithin(1s, [&recording] { recording.Close(); });
    }
    static auto CountThreads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    CPrivateSoundServer m_server;
    CTestRecording m_recording;
};

TEST_P(WaveInServer, ListsMicrophonesByFriendlyNameAndNoMonitors) {
    EXPECT_EQ(waveInGetNumDevs(), 1U);
    EXPECT_EQ(NameOf(WAVE_MAPPER), "Test Microphone");
    EXPECT_EQ(NameOf(0), "Test Microphone");
    const auto strLine = m_server.AddMicrophone("another", "Line In: 吉他");
    ASSERT_TRUE(strLine);
    EXPECT_EQ(NameOf(1), "(none)") << "not before the list is taken anew";
    // One that holds less: mono, at a low rate.
    ASSERT_TRUE(m_server.Control({"load-module", "module-remap-source", "source_name=a_headset",
                                  "master=mic_feed.monitor", "rate=16000", "channels=1",
                                  "master_channel_map=front-left", "channel_map=mono"}));
    EXPECT_EQ(waveInGetNumDevs(), 3U);
    EXPECT_EQ(NameOf(1), "Line In: 吉他");
    EXPECT_EQ(NameOf(2), "Test Microphone");
    WAVEINCAPS caps;
    ASSERT_EQ(waveInGetDevCapsA(2, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.dwFormats, 0xFFFU) << "two channels at 48 kHz hold everything";
    EXPECT_EQ(caps.wChannels, 2);
    EXPECT_EQ(caps.strKey, "mic") << "the server's name for it, whichever row it stands in";
    EXPECT_GE(caps.vDriverVersion, 0x0F00U);
    ASSERT_EQ(waveInGetDevCapsA(0, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wChannels, 1);
    // One server keeps the rate that was asked for, the other runs everything at its own.
    EXPECT_EQ(caps.dwFormats, GetParam() == "pulse" ? 0x005U : 0x555U);

    ASSERT_TRUE(m_server.Control({"unload-module", *strLine}));
    EXPECT_EQ(m_recording.Open(1, RATE), MMSYSERR_BADDEVICEID) << "gone since";
    EXPECT_EQ(m_recording.Open(3, RATE), MMSYSERR_BADDEVICEID) << "never there";
}

TEST_P(WaveInServer, HearsTheTruePitchAndLevelAtEveryRate) {
    ASSERT_TRUE(m_server.PlaySine(110.0));
    for (const UINT nRate : {11025U, 22050U, 44100U}) {
        ASSERT_EQ(m_recording.Open(WAVE_MAPPER, nRate), MMSYSERR_NOERROR);
        ASSERT_TRUE(m_recording.Hears(110.0)) << nRate;
        // A player that the machine starves leaves a hole in what it plays: measure a second without one.
        std::vector<float> samples = m_recording.Listen(1.0);
        for (int nTry = 0; nTry < 8 && ShareOfSine(samples, 110.0, nRate) < 0.9999; ++nTry) {
            samples = m_recording.Listen(1.0);
        }
        const double dPitch = MeasurePitch(samples, static_cast<int>(nRate), 110.0);
        EXPECT_NEAR(1200.0 * std::log2(dPitch / 110.0), 0.0, 0.1) << nRate;
        EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), 16384.0, 200.0) << nRate;
    }
}

TEST_P(WaveInServer, ANamedDeviceIsThatDeviceAndThePreferredOneFollowsTheDefault) {
    ASSERT_TRUE(m_server.AddFeed("second_feed"));
    ASSERT_TRUE(m_server.AddMicrophone("second", "Second Microphone", "second_feed"));
    ASSERT_EQ(waveInGetNumDevs(), 2U);
    ASSERT_EQ(NameOf(1), "Second Microphone");
    ASSERT_TRUE(m_server.PlaySine(196.0, "second_feed"));
    CTestRecording second;
    ASSERT_EQ(m_recording.Open(WAVE_MAPPER, RATE), MMSYSERR_NOERROR);
    ASSERT_EQ(second.Open(1, RATE), MMSYSERR_NOERROR);
    EXPECT_TRUE(second.Hears(196.0));
    EXPECT_TRUE(m_recording.HearsSilence());
    ASSERT_TRUE(m_server.Control({"set-default-source", "second"}));
    EXPECT_TRUE(m_recording.Hears(196.0));
    ASSERT_TRUE(m_server.Control({"set-default-source", "mic"}));
    EXPECT_TRUE(m_recording.HearsSilence());
    EXPECT_TRUE(second.Hears(196.0)) << "a change of the default moved a device that was chosen by name";
}

TEST_P(WaveInServer, IsSilentWhileItsMicrophoneOrTheServerIsAwayAndHeardAgainWhenBack) {
    ASSERT_TRUE(m_server.AddFeed("second_feed"));
    for (const auto& [uDeviceId, bServer] : {std::pair{0U, false}, {WAVE_MAPPER, false}, {0U, true}}) {
        ASSERT_NO_FATAL_FAILURE(HearFirst(uDeviceId));
        if (bServer) {
            m_server.Kill();
        } else {
            ASSERT_TRUE(m_server.RemoveMicrophones());
        }
        // The sine goes on at the monitor, now the only source: who chose a microphone may not hear that
        // instead.
        EXPECT_TRUE(uDeviceId == WAVE_MAPPER || m_recording.HearsSilence());
        std::this_thread::sleep_for(700ms);
        EXPECT_TRUE(uDeviceId == WAVE_MAPPER || m_recording.HearsSilence());
        // Back with other sound, which cannot be taken for what was heard meanwhile.
        if (bServer) {
            m_server.Stop();
            ASSERT_TRUE(m_server.Start(GetParam()));
        } else {
            ASSERT_TRUE(m_server.AddMicrophone("mic", "Test Microphone", "second_feed"));
        }
        ASSERT_TRUE(m_server.PlaySine(196.0, bServer ? "mic_feed" : "second_feed"));
        EXPECT_TRUE(m_recording.Hears(196.0)) << uDeviceId << bServer;
        if (!bServer) {
            ASSERT_TRUE(m_server.RemoveMicrophones() && m_server.AddMicrophone("mic", "Test Microphone"));
        }
    }
}

TEST_P(WaveInServer, AnotherDeviceThatGoesDoesNotMatter) {
    ASSERT_NO_FATAL_FAILURE(HearFirst(WAVE_MAPPER));
    const std::size_t nHeard = m_recording.GetSamples().size();
    const auto begin = std::chrono::steady_clock::now();
    const auto strModule = m_server.AddMicrophone("another", "Another");
    ASSERT_TRUE(strModule);
    std::this_thread::sleep_for(300ms);
    ASSERT_TRUE(m_server.Control({"unload-module", *strModule}));
    EXPECT_TRUE(m_recording.Hears(110.0));
    // Nothing is missing: a stream that is lost and taken up again has a gap of half a second.
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    const auto samples = m_recording.GetSamples();
    EXPECT_GT(static_cast<double>(samples.size() - nHeard), (elapsed.count() - 0.3) * RATE);
    const auto from = samples.begin() + static_cast<std::ptrdiff_t>(nHeard);
    EXPECT_EQ(std::search_n(from, samples.end(), RATE / 4, 0.0F, [](float f, float) { return IsSilence(f); }),
              samples.end());
}

TEST_P(WaveInServer, AFrozenServerHoldsNobodyUpAndIsHeardAgainWhenItGoesOn) {
    ASSERT_NO_FATAL_FAILURE(HearFirst(WAVE_MAPPER));
    CTestRecording other;
    ASSERT_EQ(other.Open(0, RATE), MMSYSERR_NOERROR);
    m_server.Freeze();
    EXPECT_TRUE(m_recording.HearsSilence());
    EXPECT_TRUE(ClosesAtOnce(other));
    EXPECT_TRUE(IsDoneWithin(3s, [&] { EXPECT_NE(other.Open(0, RATE), MMSYSERR_NOERROR); }));
    EXPECT_TRUE(IsDoneWithin(3s, [] { EXPECT_EQ(waveInGetNumDevs(), 0U); }));
    m_server.Thaw();
    EXPECT_TRUE(m_recording.Hears(110.0));
    EXPECT_EQ(waveInGetNumDevs(), 1U);
    EXPECT_EQ(other.Open(0, RATE), MMSYSERR_NOERROR);
}

TEST_P(WaveInServer, ASuspendedSourceGivesSilenceAndClosesAtOnce) {
    ASSERT_NO_FATAL_FAILURE(HearFirst(0));
    ASSERT_TRUE(m_server.Control({"suspend-source", "mic", "1"}));
    // PipeWire takes the command, and may let the sound run on. Either way the recording goes on.
    EXPECT_TRUE(GetParam() == "pipewire" || m_recording.HearsSilence());
    EXPECT_GE(m_recording.Listen(1.0).size(), RATE);
    EXPECT_TRUE(ClosesAtOnce(m_recording));
    const auto nThreads = CountThreads();
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(m_recording.Open(0, RATE), MMSYSERR_NOERROR) << i;
        m_recording.Close();
    }
    EXPECT_EQ(CountThreads(), nThreads) << "something of an opening stays behind";
}

INSTANTIATE_TEST_SUITE_P(Servers, WaveInServer, testing::Values<std::string>("pulse", "pipewire"),
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
