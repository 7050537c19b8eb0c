#include "end_to_end/Guitar.h"
#include "platform/multimedia/MidiOut.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/support/PrivateSoundServer.h"
#include "tones/TonePlayer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr int RATE = 48000;

class ToneServer : public testing::Test {
protected:
    void SetUp() override { SetMidiOutBackend(nullptr); }
    void TearDown() override {
        m_recorder.End();
        SetMidiOutBackend(nullptr);
    }

    bool StartRecording() {
        m_file = m_directory.GetPath() / "tone.raw";
        return m_recorder.Start({"parecord", "--raw", "--rate=48000", "--channels=1", "--format=float32le",
                                 "--latency-msec=20", "-d", "ref_out.monitor", m_file.string()},
                                {}, m_directory.GetPath(), m_directory.GetPath() / "recorder.log") &&
               [] {
                   std::this_thread::sleep_for(500ms);
                   return true;
               }();
    }
    std::vector<float> StopRecording() {
        m_recorder.End();
        std::ifstream stream(m_file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        std::vector<float> samples(bytes.size() / sizeof(float));
        std::copy_n(bytes.data(), samples.size() * sizeof(float), reinterpret_cast<char*>(samples.data()));
        return samples;
    }
    static std::size_t FirstSound(const std::vector<float>& samples) {
        return static_cast<std::size_t>(
            std::find_if(samples.begin(), samples.end(), [](float f) { return std::fabs(f) > 0.003F; }) -
            samples.begin());
    }

    CPrivateSoundServer m_server;
    CTemporaryDirectory m_directory;
    CChildProcess m_recorder;
    std::filesystem::path m_file;
};

TEST_F(ToneServer, TonesAreHeardAtTheirPitch) {
    ASSERT_TRUE(m_server.Start("pulse"));
    CTonePlayer player;
    for (const int nKey : {36, 40, 45, 50, 55, 59, 64, 71}) {
        ASSERT_TRUE(StartRecording());
        player.PlayString(nKey, 127);
        std::this_thread::sleep_for(1s);
        const auto samples = StopRecording();
        const std::size_t nStart = FirstSound(samples) + RATE / 20;
        ASSERT_GT(samples.size(), nStart + RATE * 7 / 10) << nKey;
        const std::vector<float> steady(
            samples.begin() + static_cast<std::ptrdiff_t>(nStart),
            samples.begin() + static_cast<std::ptrdiff_t>(nStart + RATE * 7 / 10));
        const double fFrequency = 440.0 * std::exp2((nKey - 69) / 12.0);
        const double fCents = 1200.0 * std::log2(MeasurePitch(steady, RATE, fFrequency) / fFrequency);
        EXPECT_NEAR(fCents, 0.1, 0.5) << nKey;
        std::printf("key %d: %+.3f cents\n", nKey, fCents);
    }
}

TEST_F(ToneServer, ClosingEndsTheSoundAtOnce) {
    ASSERT_TRUE(m_server.Start("pulse"));
    ASSERT_TRUE(StartRecording());
    {
        CTonePlayer player;
        player.PlayString(40, 127);
        std::this_thread::sleep_for(400ms);
    }
    std::this_thread::sleep_for(500ms);
    const auto samples = StopRecording();
    ASSERT_LT(FirstSound(samples), samples.size());
    ASSERT_GT(samples.size(), static_cast<std::size_t>(RATE / 2));
    EXPECT_TRUE(std::all_of(samples.end() - RATE / 5, samples.end(), [](float f) { return f == 0.0F; }));
}

TEST_F(ToneServer, AHundredPlaysAndPlaysInQuickSuccession) {
    ASSERT_TRUE(m_server.Start("pulse"));
    CTonePlayer player;
    for (int i = 0; i < 100; ++i) {
        if (i % 2 == 0) {
            player.PlayString(40 + i % 24, 127);
        } else {
            player.PlayAllStrings(41, 46, 51, 56, 60, 65, 127);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 7));
    }
}

TEST_F(ToneServer, WithoutAServerOrWithAFrozenOneNothingHangsAndNothingIsPrinted) {
    testing::internal::CaptureStderr();
    m_server.PretendThereIsNone();
    {
        CTonePlayer player;
        player.PlayString(40, 127);
        std::this_thread::sleep_for(50ms);
    }
    ASSERT_TRUE(m_server.Start("pulse"));
    m_server.Freeze();
    {
        CTonePlayer player;
        player.PlayString(40, 127);
        std::this_thread::sleep_for(50ms);
        player.PlayString(45, 127);
    }
    m_server.Thaw();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ToneServer, DeviceZeroIsASynthesizer) {
    EXPECT_GE(midiOutGetNumDevs(), 1U);
    MIDIOUTCAPS caps;
    ASSERT_EQ(midiOutGetDevCapsA(0, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wTechnology, MOD_SYNTH);
    ASSERT_EQ(midiOutGetDevCapsA(MIDI_MAPPER, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wTechnology, MOD_MAPPER);
    HMIDIOUT hMidiOut = 0;
    ASSERT_EQ(midiOutOpen(hMidiOut, 0, 0, 0, 0), MMSYSERR_NOERROR);
    DWORD dwVolume = 0;
    EXPECT_EQ(midiOutSetVolume(hMidiOut, 0x40008000), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutGetVolume(hMidiOut, dwVolume), MMSYSERR_NOERROR);
    EXPECT_EQ(dwVolume, 0x40008000U);
    EXPECT_NE(midiOutShortMsg(hMidiOut, 0x00F8B0), MMSYSERR_NOERROR);
    HMIDIOUT hSecond = 0;
    EXPECT_NE(midiOutOpen(hSecond, 0, 0, 0, 0), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutClose(hMidiOut), MMSYSERR_NOERROR);
    EXPECT_NE(midiOutClose(hMidiOut), MMSYSERR_NOERROR);
}

}  // namespace
