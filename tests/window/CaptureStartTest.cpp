#include "platform/windows/support/Toolkit.h"
#include "support/CaptureSets.h"
#include "window/CaptureLadder.h"
#include "window/TunerWndTest.h"

#include <chrono>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NO_DEVICE =
    "[Error: No sound card found] Fretvane was unable to find any usable recording device on this computer.  "
    "To use this program a 16-bit sound card must be installed";
constexpr const char* NO_USE =
    "[Error: Unable to use recording device] Unable to use your sound card. Try a different recording device "
    "in the options dialog box or click the help button in the main window for further help.";

using CaptureStartTest = CTunerWndTest;

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

TEST_F(CaptureStartTest, ClimbsTheLadderUntilADeviceOpens) {
    struct Ladder {
        int nChoice;
        std::vector<CFakeWaveIn::Device> devices;
        std::vector<CString> openings;
        int nRate;
    };
    const std::vector<Ladder> ladders{{0, {{}}, {"-1 11025"}, 11025},
                                      {2, {{}, {.refusedRates = {11025}}}, {"1 11025!", "1 22050"}, 22050},
                                      {3, {{}}, {"2 11025!", "2 22050!", "2 44100!", "-1 11025"}, 11025}};
    std::vector<CString> all;
    for (const Ladder& ladder : ladders) {
        SCOPED_TRACE(ladder.nChoice);
        WriteState(0, ladder.nChoice);
        m_fake->SetDevices(ladder.devices);
        Open();
        all.insert(all.end(), ladder.openings.begin(), ladder.openings.end());
        EXPECT_EQ(Openings(), all);
        EXPECT_EQ(Access().Engine().GetSampleRate(), ladder.nRate);
        EXPECT_EQ(Access().Store().GetWaveDevice(), ladder.nChoice) << "the choice stays";
        PlayString(0.0);
        Wnd().ToggleFrameRate();
        EXPECT_TRUE(toolkit::WaitUntil([this] { return !Access().FrameRateText().empty(); }))
            << "frames come";
        Close();
    }
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
}

TEST_F(CaptureStartTest, TellsOfFailureAndWorksOn) {
    WriteState(0, 1);
    m_fake->SetDevices({{.bRefusesAll = true}});
    Open();
    const auto openings =
        ElementsAre("0 11025!", "0 22050!", "0 44100!", "-1 11025!", "-1 22050!", "-1 44100!");
    EXPECT_THAT(Openings(), openings);
    EXPECT_TRUE(Wnd().IsWindowVisible());
    Close();
    m_fake->SetDevices({});
    Open();
    EXPECT_THAT(Openings(), openings) << "nothing to open";
    EXPECT_TRUE(Wnd().IsWindowVisible());
    EXPECT_THAT(m_user.GetBoxes(), ElementsAre(NO_USE, NO_DEVICE));
    EXPECT_THAT(m_directory.LogMessages(),
                ElementsAre("Unable any open any recording device", "Unable to find any recording device"));
}

// The device neither opens nor refuses: the window comes up without it, closes in bounded time, and what the
// device does afterwards touches nothing.
TEST_F(CaptureStartTest, LeavesADeviceAloneThatHangs) {
    WriteState(0, 0, "1");
    m_fake->HangOpen(true);
    Open();
    EXPECT_TRUE(m_fake->IsAnybodyHanging());
    const auto start = std::chrono::steady_clock::now();
    Close();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    m_fake->HangOpen(false);
    toolkit::RunFor(200);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
}

}  // namespace
