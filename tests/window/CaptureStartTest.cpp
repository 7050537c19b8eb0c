#include "platform/windows/support/Toolkit.h"
#include "support/CaptureSets.h"
#include "window/CaptureLadder.h"
#include "window/TunerWndTest.h"

#include <chrono>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const ShownBox NO_DEVICE{"Error: No sound card found",
                         "Fretvane was unable to find any usable recording device on this computer.  To use "
                         "this program a 16-bit sound card must be installed"};
const ShownBox NO_USE{"Error: Unable to use recording device",
                      "Unable to use your sound card. Try a different recording device in the options dialog "
                      "box or click the help button in the main window for further help."};

class CaptureStartTest : public CTunerWndTest {
protected:
    // What was opened, as "device rate", the preferred device being -1, and a ! where it was refused.
    std::vector<CString> Openings() const {
        std::vector<CString> result;
        for (const auto& opening : m_fake->GetOpenings()) {
            result.push_back(std::to_string(static_cast<int>(opening.uDeviceId)) + " " +
                             std::to_string(opening.nSampleRate) + (opening.result != 0 ? "!" : ""));
        }
        return result;
    }
    // Frames come: their text is shown.
    bool FramesCome() {
        PlayString(110.0);
        Wnd().ToggleFrameRate();
        const bool bCome = toolkit::WaitUntil([this] { return !Access().FrameRateText().empty(); });
        Wnd().ToggleFrameRate();
        return bCome;
    }
};

// The accuracy of the analysis was measured with these sets, at these limits: the window must use the same.
TEST(CaptureLadder, HoldsTheSetsThatTheAnalysisWasMeasuredWith) {
    for (std::size_t i = 0; i < CAPTURE_SETS.size(); ++i) {
        EXPECT_EQ(CAPTURE_LADDER[i].bPreferredDevice, i >= 3);
        EXPECT_EQ(CAPTURE_LADDER[i].nSampleRate, CAPTURE_SETS[i].nSampleRate);
        EXPECT_EQ(CAPTURE_LADDER[i].nBufferSamples, CAPTURE_SETS[i].nBufferSamples);
        EXPECT_EQ(CAPTURE_LADDER[i].nBlockSamples, CAPTURE_SETS[i].nBlockSamples);
        EXPECT_EQ(CAPTURE_LADDER[i].fLowestFrequency, CAPTURE_SETS[i].fLowestFrequency);
    }
}

struct Ladder {
    const char* szName;
    int nChoice;
    std::vector<CFakeWaveIn::Device> devices;
    std::vector<CString> openings;
    int nRate;

    friend void PrintTo(const Ladder& ladder, std::ostream* pStream) { *pStream << ladder.szName; }
};
class LadderTest : public CaptureStartTest, public testing::WithParamInterface<Ladder> {};

TEST_P(LadderTest, IsClimbedUntilADeviceOpens) {
    WriteState(0, GetParam().nChoice);
    m_fake->SetDevices(GetParam().devices);
    Open();
    EXPECT_EQ(Openings(), GetParam().openings);
    EXPECT_EQ(Access().Engine().GetSampleRate(), GetParam().nRate);
    EXPECT_EQ(Access().Store().GetWaveDevice(), GetParam().nChoice) << "the choice stays";
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
    EXPECT_TRUE(FramesCome());
}

INSTANTIATE_TEST_SUITE_P(
    , LadderTest,
    testing::Values(Ladder{"First", 0, {{}}, {"-1 11025"}, 11025},
                    Ladder{"HigherRate", 2, {{}, {.refusedRates = {11025}}}, {"1 11025!", "1 22050"}, 22050},
                    Ladder{
                        "PreferredDevice", 3, {{}}, {"2 11025!", "2 22050!", "2 44100!", "-1 11025"}, 11025}),
    [](const auto& ladder) { return ladder.param.szName; });

TEST_F(CaptureStartTest, TellsOfADeviceThatRefusesAll) {
    WriteState(0, 1);
    m_fake->SetDevices({{.bRefusesAll = true}});
    Open();
    EXPECT_THAT(Openings(),
                ElementsAre("0 11025!", "0 22050!", "0 44100!", "-1 11025!", "-1 22050!", "-1 44100!"));
    EXPECT_THAT(m_user.GetBoxes(), ElementsAre(NO_USE));
    EXPECT_THAT(m_directory.LogMessages(), ElementsAre("Unable any open any recording device"));
    EXPECT_TRUE(Wnd().IsWindowVisible()) << "the window works on without a capture";

    // Another device, chosen later.
    m_fake->SetDevices({{.bRefusesAll = true}, {}});
    Access().Store().SetWaveDevice(2);
    Access().StopCapture();
    Access().StartCapture();
    EXPECT_EQ(Openings().back(), "1 11025");
    EXPECT_THAT(m_user.GetBoxes(), SizeIs(1));
    EXPECT_TRUE(FramesCome());
}

TEST_F(CaptureStartTest, TellsThatThereIsNoDevice) {
    WriteState(0, 0);
    m_fake->SetDevices({});
    Open();
    EXPECT_THAT(m_user.GetBoxes(), ElementsAre(NO_DEVICE));
    EXPECT_THAT(m_directory.LogMessages(), ElementsAre("Unable to find any recording device"));
    EXPECT_THAT(Openings(), IsEmpty());
    EXPECT_TRUE(Wnd().IsWindowVisible());
}

TEST_F(CaptureStartTest, BearsWhateverHopWasStored) {
    for (const char* szHop : {"0", "2147483647", "1000000000"}) {
        WriteState(0, 0, szHop);
        Open();
        EXPECT_TRUE(FramesCome()) << szHop;
        m_fake->StopPlaying();
        Close();
    }
}

// The highlight of the strip tells which of two strings is heard: A2 stands at 105, D3 at 198.
TEST_F(CaptureStartTest, GoesOnWhenALostDeviceComesBack) {
    const auto isLitAt = [this](int x) { return PixelAt(10 + x + 7, 310 + 3) == 0xE3B3B3U; };
    Open();
    PlayString(110.0);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return isLitAt(105); }));
    m_fake->SetPresent(0, false);
    PlayString(146.832);
    toolkit::RunFor(300);
    EXPECT_TRUE(isLitAt(105)) << "nothing is heard";
    m_fake->SetPresent(0, true);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return isLitAt(198); }));
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
}

// The device neither opens nor refuses: the window comes up without it, closes in bounded time, and what the
// device does afterwards touches nothing.
TEST_F(CaptureStartTest, LeavesADeviceAloneThatHangs) {
    WriteState(0, 0, "1");
    m_fake->HangOpen(true);
    Open();
    EXPECT_TRUE(Wnd().IsWindowVisible());
    EXPECT_TRUE(m_fake->IsAnybodyHanging());
    const auto start = std::chrono::steady_clock::now();
    Close();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    m_fake->HangOpen(false);
    toolkit::RunFor(200);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

}  // namespace
