#include "platform/multimedia/BuiltInSynthesizer.h"
#include "platform/multimedia/ToneSynthesizer.h"
#include "stage/Guitar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

class ToneSynthesizer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        for (const std::string& strFont : DefaultSoundFonts()) {
            if (!m_pSynthesizer) {
                m_pSynthesizer = CToneSynthesizer::Load(strFont);
            }
        }
    }
    static void TearDownTestSuite() { m_pSynthesizer.reset(); }
    void SetUp() override {
        ASSERT_TRUE(m_pSynthesizer);
        Reset();
    }
    // To silence, then to the guitar.
    static void Reset() {
        m_pSynthesizer->ShortMsg(0xFF);
        m_pSynthesizer->ShortMsg(0x18C0);
    }

    static std::vector<float> Render(double dSeconds) {
        std::vector<float> stereo(2 * static_cast<std::size_t>(dSeconds * SYNTHESIZER_RATE));
        m_pSynthesizer->Render(stereo);
        std::vector<float> left;
        for (std::size_t i = 0; i < stereo.size(); i += 2) {
            left.push_back(stereo[i]);
        }
        return left;
    }
    // By how many cents the note lies above the key's frequency with A at 440 Hz.
    static double CentsOf(int nKey, int nBend, int nSoundingKey) {
        Reset();
        m_pSynthesizer->ShortMsg(0xE0U | static_cast<DWORD>(nBend & 0x7F) << 8 |
                                 static_cast<DWORD>(nBend >> 7) << 16);
        m_pSynthesizer->ShortMsg(0x7F0090U | static_cast<DWORD>(nKey) << 8);
        Render(0.05);
        const double dFrequency = 440.0 * std::exp2((nSoundingKey - 69) / 12.0);
        return 1200.0 * std::log2(MeasurePitch(Render(0.6), SYNTHESIZER_RATE, dFrequency) / dFrequency);
    }

    static inline std::unique_ptr<CToneSynthesizer> m_pSynthesizer;
};

TEST_F(ToneSynthesizer, AllThirtySixNotesAreInTuneAloneAndInTheRun) {
    double dWorst = 0.0;
    for (int nKey = 36; nKey <= 71; ++nKey) {
        // The bend of one string is four units too high.
        const double dAlone = CentsOf(nKey, 8196, nKey) - 4.0 / 40.96;
        const double dInRun = CentsOf(nKey + 1, 4096, nKey);
        EXPECT_NEAR(dAlone, 0.0, 0.25) << nKey;
        EXPECT_NEAR(dInRun, 0.0, 0.25) << nKey;
        dWorst = std::max({dWorst, std::fabs(dAlone), std::fabs(dInRun)});
    }
    std::printf("worst deviation: %.3f cents\n", dWorst);
}

TEST_F(ToneSynthesizer, BendsAreNotCutToWholeCents) {
    for (const int nBend : {6561, 9784, 8192, 8212, 8188}) {
        EXPECT_NEAR(CentsOf(45, nBend, 45), (nBend - 8192) / 40.96, 0.2) << nBend;
    }
}

TEST_F(ToneSynthesizer, AMessageWithAWrongDataByteIsDropped) {
    m_pSynthesizer->ShortMsg(0x7F2890);
    Render(0.1);
    m_pSynthesizer->ShortMsg(0x00F8B0);  // masked it would end all sound
    const auto sound = Render(0.1);
    EXPECT_GT(*std::max_element(sound.begin(), sound.end()), 0.01F);
    EXPECT_FALSE(m_pSynthesizer->IsSilent());
    m_pSynthesizer->ShortMsg(0xFF);
    Render(1.5);  // the note dies away
    Render(0.1);
    EXPECT_TRUE(m_pSynthesizer->IsSilent());
}

TEST_F(ToneSynthesizer, ANoteOffEndsTheNoteWhereverItWasPlayed) {
    for (DWORD dwKey = 40; dwKey < 60; ++dwKey) {
        m_pSynthesizer->ShortMsg(0x7F0090U | dwKey << 8);
        Render(0.02);
        m_pSynthesizer->ShortMsg(0x90U | dwKey << 8);
    }
    Render(3.0);
    Render(0.1);
    EXPECT_TRUE(m_pSynthesizer->IsSilent());
}

}  // namespace
