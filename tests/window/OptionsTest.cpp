#include "dialogs/OptionsSheet.h"
#include "platform/base/String.h"
#include "platform/windows/support/Toolkit.h"
#include "window/TunerWndTest.h"

#include <functional>

namespace {

using testing::ElementsAre;

constexpr int DEFAULTS = 1015;
constexpr int RECORDING_DEVICES = 1013;
constexpr int APPLY = 12321;
constexpr const char* DEFAULT_COLORS = "10485760\t16711680\t32768\t16711680";
constexpr const char* OTHER_COLORS = "255\t65280\t65535\t8388736";

class OptionsTest : public CTunerWndTest {
protected:
    void OpenWith(const char* szColors, int nDevice) {
        m_directory.Write("state.txt", FormatText("-\n44000\t%s\t0\t%d\t0\t128\t0\n", szColors, nDevice));
        m_user.LeaveDialogs();
        PlayString(0.0);
        Open();
        // The first block is full, and shown.
        toolkit::RunFor(300);
    }
    // What the user does in the sheet, which is then cancelled if it is still there.
    void InOptions(const std::function<void(const COptionsSheet& sheet)>& fnUser) {
        toolkit::Later([&] {
            const auto sheet = [] { return dynamic_cast<const COptionsSheet*>(CWnd::GetFocus()); };
            if (toolkit::WaitUntil([&] { return sheet() != nullptr; })) {
                fnUser(*sheet());
            }
            if (toolkit::ModalTitle() == "[高音 ]") {
                toolkit::CloseModal();
            }
        });
        Click(ID_OPTIONS);
    }
    void PickDevice(int nRow) {
        InOptions([nRow](const COptionsSheet& sheet) {
            toolkit::ClickTab(sheet, 1);
            if (nRow >= 0) {
                toolkit::PickRow(*sheet.m_devicePage.GetDlgItem(RECORDING_DEVICES), nRow);
            }
            toolkit::ClickInModal(IDOK);
        });
    }
    // After the time in which frames would draw something else.
    std::vector<std::uint32_t> PictureLater() {
        toolkit::RunFor(100);
        return CopyPicture();
    }
};

// Whatever brings the colours into force, the window looks as one that started with them, the grey needle
// included.
TEST_F(OptionsTest, MakeTheWindowLookLikeOneThatStartedWithTheirColors) {
    OpenWith(DEFAULT_COLORS, 0);
    const auto wanted = PictureLater();
    Close();
    for (const int nButton : {APPLY, int{IDOK}}) {
        OpenWith(OTHER_COLORS, 0);
        const auto other = PictureLater();
        EXPECT_NE(other, wanted);
        InOptions([](const COptionsSheet&) { toolkit::ClickInModal(DEFAULTS); });
        EXPECT_EQ(PictureLater(), other) << "cancelled";
        EXPECT_EQ(Access().Store().GetLowColor(), 65535U);
        InOptions([&](const COptionsSheet&) {
            toolkit::ClickInModal(DEFAULTS);
            toolkit::ClickInModal(nButton);
            if (nButton == APPLY) {
                EXPECT_EQ(PictureLater(), wanted) << "while the sheet is open";
            }
        });
        EXPECT_EQ(PictureLater(), wanted);
        EXPECT_EQ(Access().Store().GetLowColor(), CTuningStore::DEFAULT_LOW_COLOR);
        EXPECT_EQ(m_fake->GetOpenCount(), 1) << "the capture goes on";
        Close();
    }
    EXPECT_EQ(Openings().size(), 3U) << "one for each window";
}

TEST_F(OptionsTest, StartTheCaptureAnewOnAnotherDevice) {
    m_fake->SetDevices({{}, {}});
    OpenWith(OTHER_COLORS, 1);
    PickDevice(-1);
    EXPECT_THAT(Openings(), ElementsAre("0 11025")) << "the same device";
    PickDevice(2);
    EXPECT_THAT(Openings(), ElementsAre("0 11025", "1 11025"));
    EXPECT_EQ(m_fake->GetOpenCount(), 1) << "the other is closed";
    EXPECT_EQ(Access().Store().GetWaveDevice(), 2);
    PickDevice(0);
    EXPECT_EQ(Openings().back(), "-1 11025");
    m_fake->SetDevices({});
    PickDevice(-1);
    EXPECT_EQ(m_fake->GetOpenCount(), 0);
    EXPECT_THAT(m_user.GetBoxes(), testing::SizeIs(1)) << "the capture tells of it";
}

// Devices come and go while the window and the sheet are open, and every list is sorted anew.
TEST_F(OptionsTest, KeepToTheDeviceThatWasChosenWhicheverRowItStandsIn) {
    const CFakeWaveIn::Device first{.strKey = "a"};
    const CFakeWaveIn::Device between{.strKey = "b"};
    const CFakeWaveIn::Device second{.strKey = "c"};
    m_fake->SetDevices({first, second});
    OpenWith(OTHER_COLORS, 2);
    m_fake->SetDevices({first, between, second});
    PickDevice(-1);
    EXPECT_EQ(Access().Store().GetWaveDevice(), 3) << "the row to start with the next time";
    m_fake->SetDevices({first, between});
    PickDevice(-1);
    EXPECT_EQ(Access().Store().GetWaveDevice(), 3) << "away, and still the chosen one";
    EXPECT_THAT(Openings(), ElementsAre("1 11025")) << "no other device was chosen";

    m_fake->SetDevices({first, second});
    InOptions([&](const COptionsSheet& sheet) {
        toolkit::ClickTab(sheet, 1);
        toolkit::PickRow(*sheet.m_devicePage.GetDlgItem(RECORDING_DEVICES), 1);
        m_fake->SetDevices({between, first, second});
        toolkit::ClickInModal(IDOK);
    });
    EXPECT_EQ(Openings().back(), "1 11025") << "the first one, in its new row";
    EXPECT_EQ(Access().Store().GetWaveDevice(), 2);
    InOptions([&](const COptionsSheet& sheet) {
        toolkit::ClickTab(sheet, 1);
        toolkit::PickRow(*sheet.m_devicePage.GetDlgItem(RECORDING_DEVICES), 3);
        m_fake->SetDevices({between, first});
        toolkit::ClickInModal(IDOK);
    });
    EXPECT_EQ(Openings().back(), "-1 11025") << "gone before it was opened: no other takes its place";
    EXPECT_EQ(Access().Store().GetWaveDevice(), 3);
}

}  // namespace
