#include "platform/multimedia/BuiltInSynthesizer.h"
#include "platform/multimedia/MidiOut.h"
#include "platform/multimedia/MidiOutBackend.h"
#include "platform/multimedia/support/PrivateSoundServer.h"
#include "stage/Guitar.h"
#include "tones/TonePlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <numbers>
#include <numeric>
#include <thread>

// The tones as another program hears them from a sound server.

using namespace std::chrono_literals;

namespace {

constexpr int RATE = 48000;
constexpr auto SLOT = 900ms;                 // from one note to the next
constexpr double EXTRA_CENTS = 4.0 / 40.96;  // the bend of one string is four units too high by design

double FrequencyOf(int nKey) {
    return 440.0 * std::exp2((nKey - 69) / 12.0);
}

// What this process holds: threads, descriptors, and memory in pages.
struct Held {
    std::ptrdiff_t nThreads;
    std::ptrdiff_t nDescriptors;
    long nPages;
    static Held Now() {
        const auto count = [](const char* szDirectory) {
            return std::distance(std::filesystem::directory_iterator(szDirectory), {});
        };
        long nPages = 0;
        std::ifstream("/proc/self/statm") >> nPages >> nPages;
        return {count("/proc/self/task"), count("/proc/self/fd"), nPages};
    }
};

class ToneServer : public testing::Test {
protected:
    void SetUp() override { SetMidiOutBackend(nullptr); }
    void TearDown() override {
        m_pPlayer.reset();
        SetMidiOutBackend(nullptr);
    }

    // A player whose synthesizer is loaded: the thread that does so has ended.
    void StartPlayer(const std::string& strServer = "pulse") {
        ASSERT_TRUE(m_server.Start(strServer));
        const auto nThreads = Held::Now().nThreads;
        m_pPlayer = std::make_unique<CTonePlayer>();
        for (int i = 0; i < 1000 && Held::Now().nThreads > nThreads; ++i) {
            std::this_thread::sleep_for(10ms);
        }
    }
    // Hears what is played, and for as long as that takes.
    template <class Action>
    void Record(Action play) {
        const auto file = m_directory.GetPath() / "tone.raw";
        CChildProcess recorder;
        ASSERT_TRUE(recorder.Start({"parecord", "--raw", "--rate=48000", "--channels=1", "--format=float32le",
                                    "--latency-msec=20", "-d", "ref_out.monitor", file.string()},
                                   {}, m_directory.GetPath(), m_directory.GetPath() / "recorder.log"));
        std::this_thread::sleep_for(500ms);
        play();
        std::this_thread::sleep_for(100ms);
        recorder.End();
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        m_samples.resize(bytes.size() / sizeof(float));
        std::copy_n(bytes.data(), m_samples.size() * sizeof(float),
                    reinterpret_cast<char*>(m_samples.data()));
        const auto first =
            std::find_if(m_samples.begin(), m_samples.end(), [](float f) { return std::fabs(f) > 0.003F; });
        ASSERT_NE(first, m_samples.end()) << "nothing was heard";
        m_fOnset = static_cast<double>(first - m_samples.begin()) / RATE;
    }
    void RecordKeys(const std::vector<int>& keys) {
        Record([&] {
            const auto start = std::chrono::steady_clock::now();
            for (std::size_t i = 0; i < keys.size(); ++i) {
                std::this_thread::sleep_until(start + SLOT * i);
                m_pPlayer->PlayString(keys[i], 127);
            }
            std::this_thread::sleep_for(SLOT);
        });
    }
    // Seconds from the first sound on.
    std::vector<float> Stretch(double dFrom, double dTo) const {
        const auto at = [this](double dSeconds) {
            const auto n = static_cast<std::size_t>((m_fOnset + dSeconds) * RATE);
            return m_samples.begin() + static_cast<std::ptrdiff_t>(std::min(n, m_samples.size()));
        };
        return {at(dFrom), at(dTo)};
    }
    double CentsFrom(double dFrequency, double dFrom, double dTo) const {
        return 1200.0 * std::log2(MeasurePitch(Stretch(dFrom, dTo), RATE, dFrequency) / dFrequency);
    }
    float PeakAt(double dFrom, double dTo) const {
        const auto sound = Stretch(dFrom, dTo);
        return sound.empty() ? -1.0F : *std::max_element(sound.begin(), sound.end());
    }
    // How much of a frequency there is in 50 ms around a time.
    double AmountOf(double dFrequency, double dTime) const {
        const auto sound = Stretch(dTime - 0.025, dTime + 0.025);
        std::complex<double> sum = 0.0;
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const double dTurns = static_cast<double>(i) / static_cast<double>(sound.size());
            sum += static_cast<double>(sound[i]) * (1.0 - std::cos(2.0 * std::numbers::pi * dTurns)) *
                   std::polar(1.0, -2.0 * std::numbers::pi * dFrequency * static_cast<double>(i) / RATE);
        }
        return std::abs(sum);
    }
    // Plays the keys one after the other and compares each with its frequency at this A. On a machine that is
    // too busy to keep the sound flowing some are heard wrong: those get another chance.
    void CheckKeys(std::vector<int> keys, float fA) {
        m_pPlayer->SetAFrequency(fA);
        for (int nTry = 0; nTry < 3 && !keys.empty(); ++nTry) {
            ASSERT_NO_FATAL_FAILURE(RecordKeys(keys));
            std::vector<int> wrong;
            double dWorst = 0.0;
            for (std::size_t i = 0; i < keys.size(); ++i) {
                const double dStart = std::chrono::duration<double>(SLOT * i).count();
                const double dWanted =
                    FrequencyOf(keys[i]) * static_cast<double>(fA) / 440.0 * std::exp2(EXTRA_CENTS / 1200.0);
                const double dWhole = std::fabs(CentsFrom(dWanted, dStart + 0.07, dStart + 0.74));
                const double dLater = std::fabs(CentsFrom(dWanted, dStart + 0.4, dStart + 0.74));
                if (std::max(dWhole, dLater) > 0.5) {
                    wrong.push_back(keys[i]);
                } else {
                    dWorst = std::max(dWorst, dWhole);
                }
            }
            std::printf("%zu keys at %.0f Hz: %zu right, the worst of them off by %.3f cents\n", keys.size(),
                        static_cast<double>(fA), keys.size() - wrong.size(), dWorst);
            keys = std::move(wrong);
        }
        EXPECT_THAT(keys, testing::IsEmpty());
    }

    CPrivateSoundServer m_server;
    CTemporaryDirectory m_directory;
    std::unique_ptr<CTonePlayer> m_pPlayer;
    std::vector<float> m_samples;
    double m_fOnset = 0.0;
};

TEST_F(ToneServer, AllThirtySixNotesAreHeardAtTheirPitch) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    std::vector<int> keys(36);
    std::iota(keys.begin(), keys.end(), 36);
    CheckKeys(keys, 440.0F);
}

TEST_F(ToneServer, NotesFollowTheFrequencyOfA) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    CheckKeys({36, 45, 59, 71}, 430.0F);
    CheckKeys({36, 45, 59, 71}, 450.0F);
}

TEST_F(ToneServer, PipeWireSoundsAlike) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer("pipewire"));
    CheckKeys({40, 64}, 440.0F);
}

TEST_F(ToneServer, TheRunIsSixNotesEachInItsPlace) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    ASSERT_NO_FATAL_FAILURE(Record([this] {
        m_pPlayer->PlayAllStrings(41, 46, 51, 56, 60, 65, 127);
        std::this_thread::sleep_for(1600ms);
    }));
    const std::vector<int> keys{40, 45, 50, 55, 59, 64};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const double dStart = 0.18 * static_cast<double>(i);
        const double dFrequency = FrequencyOf(keys[i]);
        EXPECT_NEAR(CentsFrom(dFrequency, dStart, dStart + 0.18), 0.0, 1.0) << keys[i];
        const double dMiddle = AmountOf(dFrequency, dStart + 0.09);
        EXPECT_LT(AmountOf(dFrequency, dStart - 0.03), 0.3 * dMiddle) << keys[i];
        EXPECT_GT(AmountOf(dFrequency, dStart + 0.15), 0.7 * dMiddle) << keys[i];
        EXPECT_LT(AmountOf(dFrequency, dStart + 0.42), 0.4 * dMiddle) << keys[i];
    }
}

// A note lasts 800 ms, then dies away by 8 dB in 50 ms; closing ends it at once.
TEST_F(ToneServer, ANoteEndsAfterItsTimeAndAtOnceWithItsPlayer) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    ASSERT_NO_FATAL_FAILURE(Record([this] {
        m_pPlayer->PlayString(52, 127);
        std::this_thread::sleep_for(1500ms);
        m_pPlayer->PlayString(40, 127);
        std::this_thread::sleep_for(400ms);
        m_pPlayer.reset();
        std::this_thread::sleep_for(500ms);
    }));
    EXPECT_GT(PeakAt(0.76, 0.79), 0.7F * PeakAt(0.66, 0.69));
    EXPECT_LT(PeakAt(0.86, 0.89), 0.6F * PeakAt(0.76, 0.79));
    EXPECT_LT(PeakAt(1.2, 1.25), 0.01F * PeakAt(0.76, 0.79));
    EXPECT_GT(PeakAt(1.7, 1.8), 0.01F);
    EXPECT_EQ(PeakAt(2.1, 2.3), 0.0F);
}

TEST_F(ToneServer, AHundredPlaysInQuickSuccessionLeaveNothing) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    const auto play = [this](int nTimes) {
        for (int i = 0; i < nTimes; ++i) {
            if (i % 2 == 0) {
                m_pPlayer->PlayString(40 + i % 24, 127);
            } else {
                m_pPlayer->PlayAllStrings(41, 46, 51, 56, 60, 65, 127);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(i % 7));
        }
        std::this_thread::sleep_for(1500ms);  // until all is still
    };
    play(100);
    const Held before = Held::Now();
    play(100);
    const Held after = Held::Now();
    EXPECT_EQ(after.nThreads, before.nThreads);
    EXPECT_EQ(after.nDescriptors, before.nDescriptors);
#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed for a while, and looks for leaks itself
    EXPECT_LT(after.nPages, before.nPages + 256);
#endif
    CheckKeys({50}, 440.0F);
}

TEST_F(ToneServer, ATonePlayedWhileTheSynthesizerIsLoadedSoundsAndTheNextTakesItsPlace) {
    ASSERT_TRUE(m_server.Start("pulse"));
    ASSERT_NO_FATAL_FAILURE(Record([this] {
        m_pPlayer = std::make_unique<CTonePlayer>();
        m_pPlayer->PlayString(40, 127);
        std::this_thread::sleep_for(700ms);
        m_pPlayer->PlayString(57, 127);
        std::this_thread::sleep_for(700ms);
    }));
    EXPECT_GT(AmountOf(FrequencyOf(40), 0.1), 3.0 * AmountOf(FrequencyOf(57), 0.1));
    const double dLate = static_cast<double>(m_samples.size()) / RATE - m_fOnset - 0.3;
    EXPECT_GT(AmountOf(FrequencyOf(57), dLate), 20.0 * AmountOf(FrequencyOf(40), dLate));
}

TEST_F(ToneServer, AServerThatDiesDuringAToneAndReturnsSoundsAgain) {
    ASSERT_NO_FATAL_FAILURE(StartPlayer());
    m_pPlayer->PlayString(40, 127);
    std::this_thread::sleep_for(300ms);
    m_server.Kill();
    std::this_thread::sleep_for(100ms);
    m_pPlayer->PlayString(40, 127);
    ASSERT_TRUE(m_server.Start("pulse"));
    CheckKeys({45}, 440.0F);
}

TEST_F(ToneServer, WithoutServerOrSoundFontOrWithAFrozenServerNothingHangsAndNothingIsPrinted) {
    testing::internal::CaptureStderr();
    const auto play = [] {
        CTonePlayer player;
        for (int i = 0; i < 3; ++i) {
            player.PlayString(40, 127);
            std::this_thread::sleep_for(50ms);
        }
    };
    m_server.PretendThereIsNone();
    play();
    ASSERT_TRUE(m_server.Start("pulse"));
    m_server.Freeze();
    play();
    m_server.Thaw();
    SetMidiOutBackend(MakeBuiltInSynthesizer({m_directory.GetPath() / "nowhere.sf2"}));
    play();
    HMIDIOUT hMidiOut = 0;
    EXPECT_EQ(midiOutOpen(hMidiOut, 0, 0, 0, 0), MMSYSERR_NODRIVER);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ToneServer, DeviceZeroIsASynthesizerThatIsOpenOnce) {
    MIDIOUTCAPS caps;
    ASSERT_EQ(midiOutGetDevCapsA(0, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wTechnology, MOD_SYNTH);
    ASSERT_EQ(midiOutGetDevCapsA(MIDI_MAPPER, caps), MMSYSERR_NOERROR);
    EXPECT_EQ(caps.wTechnology, MOD_MAPPER);
    HMIDIOUT hMidiOut = 0;
    ASSERT_EQ(midiOutOpen(hMidiOut, 0, 0, 0, 0), MMSYSERR_NOERROR);
    EXPECT_NE(midiOutShortMsg(hMidiOut, 0x00F8B0), MMSYSERR_NOERROR);
    HMIDIOUT hSecond = 0;
    EXPECT_NE(midiOutOpen(hSecond, 0, 0, 0, 0), MMSYSERR_NOERROR);
    EXPECT_EQ(midiOutClose(hMidiOut), MMSYSERR_NOERROR);
    EXPECT_NE(midiOutClose(hMidiOut), MMSYSERR_NOERROR);
}

}  // namespace
