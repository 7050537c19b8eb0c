#include "platform/multimedia/WaveIn.h"
#include "platform/multimedia/support/PrivateSoundServer.h"
#include "platform/multimedia/support/TestRecording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Recording from a real sound server, PulseAudio and PipeWire alike.

namespace {

class WaveInServer : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.Start(GetParam())); }
    static std::string NameOf(UINT uDeviceId) {
        WAVEINCAPS caps;
        return waveInGetDevCapsA(uDeviceId, caps) == MMSYSERR_NOERROR ? caps.szPname : "(none)";
    }

    CPrivateSoundServer m_server;
    CTestRecording m_recording;
};

TEST_P(WaveInServer, ListsMicrophonesByFriendlyNameAndNoMonitors) {
    EXPECT_EQ(waveInGetNumDevs(), 1U);
    EXPECT_EQ(NameOf(WAVE_MAPPER), "Test Microphone");
    EXPECT_EQ(NameOf(0), "Test Microphone");
    EXPECT_EQ(NameOf(1), "(none)");
    ASSERT_TRUE(m_server.AddMicrophone("another", "Line In: \xe5\x90\x89\xe4\xbb\x96"));
    EXPECT_EQ(NameOf(1), "(none)") << "not before the list is taken anew";
    EXPECT_EQ(waveInGetNumDevs(), 2U);
    EXPECT_EQ(NameOf(0), "Line In: \xe5\x90\x89\xe4\xbb\x96");
    EXPECT_EQ(NameOf(1), "Test Microphone");

    WAVEINCAPS caps;
    ASSERT_EQ(waveInGetDevCapsA(1, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.dwFormats, 0xFFFU) << "two channels at 48 kHz hold everything";
    EXPECT_EQ(caps.wChannels, 2);
    EXPECT_GE(caps.vDriverVersion, 0x0F00U);
}

TEST_P(WaveInServer, FormatsFollowTheSourcesOwnRateAndChannels) {
    ASSERT_TRUE(m_server.Control({"load-module", "module-remap-source", "source_name=a_headset",
                                  "master=mic_feed.monitor", "rate=16000", "channels=1",
                                  "master_channel_map=front-left", "channel_map=mono"}));
    ASSERT_EQ(waveInGetNumDevs(), 2U);
    WAVEINCAPS caps;
    ASSERT_EQ(waveInGetDevCapsA(0, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wChannels, 1);
    // One server keeps the rate that was asked for, the other runs everything at its own.
    const DWORD dwMonoUpTo11K = WAVE_FORMAT_1M08 | WAVE_FORMAT_1M16;
    const DWORD dwMono =
        dwMonoUpTo11K | WAVE_FORMAT_2M08 | WAVE_FORMAT_2M16 | WAVE_FORMAT_4M08 | WAVE_FORMAT_4M16;
    EXPECT_EQ(caps.dwFormats, GetParam() == "pulse" ? dwMonoUpTo11K : dwMono);
}

TEST_P(WaveInServer, HearsTheTruePitchAndLevelAtEveryRate) {
    ASSERT_TRUE(m_server.PlaySine(110.0));
    for (const UINT nRate : {11025U, 22050U, 44100U}) {
        ASSERT_EQ(m_recording.Open(WAVE_MAPPER, nRate), MMSYSERR_NOERROR);
        ASSERT_TRUE(m_recording.Hears(110.0)) << nRate;
        // A player that the machine starves leaves a hole in what it plays: measure a second without one.
        std::vector<double> samples = m_recording.Listen(1.0);
        for (int nTry = 0; nTry < 8 && ShareOfSine(samples, 110.0, nRate) < 0.9999; ++nTry) {
            samples = m_recording.Listen(1.0);
        }
        const double fCents = 1200 * std::log2(MeasureFrequency(samples, 110.0, nRate) / 110.0);
        EXPECT_NEAR(fCents, 0.0, 0.1) << nRate;
        const double fPeak = *std::max_element(samples.begin(), samples.end());
        EXPECT_NEAR(fPeak, 16384.0, 200.0) << nRate;
        m_recording.Close();
    }
}

TEST_P(WaveInServer, ANamedDeviceIsThatDeviceAndThePreferredOneFollowsTheDefault) {
    ASSERT_TRUE(m_server.AddFeed("second_feed"));
    ASSERT_TRUE(m_server.AddMicrophone("second", "Second Microphone", "second_feed"));
    ASSERT_EQ(waveInGetNumDevs(), 2U);
    ASSERT_EQ(NameOf(1), "Second Microphone");
    ASSERT_TRUE(m_server.PlaySine(196.0, "second_feed"));
    CTestRecording second;
    ASSERT_EQ(m_recording.Open(WAVE_MAPPER, 11025), MMSYSERR_NOERROR);
    ASSERT_EQ(second.Open(1, 11025), MMSYSERR_NOERROR);
    EXPECT_TRUE(second.Hears(196.0));
    EXPECT_TRUE(m_recording.HearsSilence());
    ASSERT_TRUE(m_server.Control({"set-default-source", "second"}));
    EXPECT_TRUE(m_recording.Hears(196.0));
    ASSERT_TRUE(m_server.Control({"set-default-source", "mic"}));
    EXPECT_TRUE(m_recording.HearsSilence());
    EXPECT_TRUE(second.Hears(196.0)) << "a change of the default moved a device that was chosen by name";
}

INSTANTIATE_TEST_SUITE_P(Servers, WaveInServer, testing::Values<std::string>("pulse", "pipewire"),
                         [](const auto& server) { return server.param; });

}  // namespace
