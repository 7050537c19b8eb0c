#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/FontSize.h"
#include "window/HintTable.h"
#include "window/TunerApp.h"
#include "window/TunerWndTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NO_PRESETS = "Cannot find preset.txt, using only standard E tuning";

class StartTest : public CTunerWndTest {};

TEST(FontSize, CountersTheHeightThatTheScreenGives) {
    EXPECT_EQ(MainFontSize(13), 77);
    EXPECT_EQ(PresetFontSize(77), 115);
    EXPECT_EQ(MainFontSize(16), 63);
    EXPECT_EQ(PresetFontSize(63), 94);
}

TEST_F(StartTest, ComesUpWithDefaultsWhereThereAreNoSettings) {
    Open();
    ASSERT_TRUE(Wnd().IsWindow());
    EXPECT_EQ(m_directory.LogMessages(), std::vector<CString>{NO_SETTINGS});
    EXPECT_EQ(Wnd().GetWindowText(), "Fretvane 吉他校音软件 1.02");
    EXPECT_EQ(Wnd().GetClientRect(), (RECT{0, 0, 500, 396}));
    EXPECT_EQ(Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(), "&A : 440.0 Hz");
    EXPECT_EQ(Access().List().GetCurSel(), 0);
    EXPECT_EQ(Access().Current().m_strName, Access().List().GetText(0));
    EXPECT_FALSE(Access().CanDelete());
    EXPECT_EQ(CWnd::GetFocus(), &Access().List());
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
    Close();
    EXPECT_EQ(m_directory.Read("state.txt"),
              "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
              "44000\t10485760\t16711680\t32768\t16711680\t0\t0\t0\t128\t0\n");
}

TEST_F(StartTest, TakesUpTheSettings) {
    WriteState(1, 0, "64", {"Mine\t7\t2\t0\t9\t0\t2\t1\t7\t1\t9\t1\t2\t2"});
    m_directory.Write("preset.txt", "Other\t0\t4\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2");
    Open();
    EXPECT_FALSE(m_directory.Exists("errorlog.txt"));
    EXPECT_EQ(Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(), "&A : 441.0 Hz");
    EXPECT_THAT(Access().Rows(), ElementsAre("Other", "Mine"));
    EXPECT_EQ(Access().List().GetCurSel(), 1);
    EXPECT_EQ(Access().Current().m_strName, "Mine");
    EXPECT_TRUE(Access().CanDelete());
    Close();
    EXPECT_THAT(m_directory.Read("state.txt"),
                testing::EndsWith("44100\t10485760\t16711680\t32768\t16711680\t0\t0\t1\t64\t1\n"
                                  "Mine\t7\t2\t0\t9\t0\t2\t1\t7\t1\t9\t1\t2\t2\n"));
}

TEST_F(StartTest, PutsDefaultsInPlaceOfBadSettings) {
    WriteState(1, -1, "64", {"Mine\t7\t2\t0\t9\t0\t2\t1\t7\t1\t9\t1\t2\t2"});
    Open();
    EXPECT_EQ(m_directory.LogMessages(), std::vector<CString>{NO_SETTINGS});
    EXPECT_EQ(Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(), "&A : 440.0 Hz");
    EXPECT_EQ(Access().Store().GetCustomTunings()->GetCount(), 0);
    EXPECT_EQ(Access().Store().GetHop(), 128.0F);
}

TEST_F(StartTest, SelectsTheFirstRowForAnIndexPastTheLast) {
    WriteState(5000, 0);
    Open();
    EXPECT_EQ(Access().List().GetCurSel(), 0);
    EXPECT_EQ(Access().Store().GetListIndex(), 0);
    Close();
    EXPECT_EQ(StateField(7), "0");
}

TEST_F(StartTest, MakesTheStandardTuningWhereThereAreNoPresets) {
    WriteState(0, 0);
    m_directory.Remove("preset.txt");
    Open();
    EXPECT_EQ(m_directory.LogMessages(), std::vector<CString>{NO_PRESETS});
    EXPECT_THAT(Access().Rows(), ElementsAre("Standard E"));
    EXPECT_EQ(Access().List().GetCurSel(), 0);
    EXPECT_TRUE(Access().Current().IsEqual(Tuning::StandardE()));
}

TEST_F(StartTest, KeepsPresetsWithALineEndBehindThemAndAddsTheStandardTuning) {
    WriteState(0, 0);
    m_directory.Write("preset.txt", "Drop D\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n");
    Open();
    EXPECT_THAT(Access().Rows(), ElementsAre("Drop D", "Standard E"));
    EXPECT_EQ(m_directory.LogMessages(), std::vector<CString>{NO_PRESETS});
}

TEST_F(StartTest, LeavesOutAPresetWithANoteOutOfRangeAndSaysSo) {
    WriteState(0, 0);
    m_directory.Write("preset.txt",
                      "Bad\t0\t12\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n"
                      "Good\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2");
    Open();
    EXPECT_THAT(Access().Rows(), ElementsAre("Good"));
    EXPECT_THAT(m_directory.LogMessages(), ElementsAre("Left out 1 unusable tuning(s) of preset.txt"));
}

struct MissingFile {
    const char* szFile;
    const char* szMessage;

    friend void PrintTo(const MissingFile& missing, std::ostream* pStream) { *pStream << missing.szFile; }
};
class MissingFileTest : public CTunerWndTest, public testing::WithParamInterface<MissingFile> {};

// No window, no thread, no use of the object; the process ends and says that it failed.
TEST_P(MissingFileTest, EndsTheStart) {
    WriteState(3, 0, "77");
    m_directory.Remove(GetParam().szFile);
    Open();
    EXPECT_FALSE(Wnd().IsWindow());
    EXPECT_THAT(m_directory.LogMessages(), ElementsAre(GetParam().szMessage));
    EXPECT_EQ(StateField(7), "3") << "without a selected row the stored one stays";
    EXPECT_EQ(StateField(8), "77") << "without a capture the stored hop stays";
    m_pWnd.reset();
    toolkit::RunPending();
    EXPECT_EQ(toolkit::CountTopLevelWidgets(), 0);

    CTunerApp app;
    EXPECT_NE(app.Main(), 0);
    toolkit::RunPending();
    EXPECT_EQ(toolkit::CountTopLevelWidgets(), 0);
    EXPECT_EQ(m_fake->GetCalls().nOpen, 0);
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Pictures, MissingFileTest,
                         testing::Values(MissingFile{"FVLogo.bmp", "Cannot find file FVSmall.bmp"},
                                         MissingFile{"FVLogoOp.bmp", "Cannot find file FVSmall.bmp"},
                                         MissingFile{"string1.bmp", "Unable to create string diagram"},
                                         MissingFile{"gTic.bmp",
                                                     "Unable to create the global tuning indicator"}));

TEST_F(StartTest, GetsAlongWithoutThePicturesOfTheDial) {
    WriteState(0, 0);
    m_directory.Remove("Label.bmp");
    Open();
    EXPECT_TRUE(Wnd().IsWindow());
    EXPECT_FALSE(m_directory.Exists("errorlog.txt"));
    EXPECT_EQ(m_fake->GetOpenCount(), 1);
}

// Where the pointer is over a control, the hint line is to speak of that control.
TEST_F(StartTest, PutsTheControlsWhereTheHintsSay) {
    Open();
    const auto placeOf = [this](int nId) {
        const CWnd& control = *Wnd().GetDlgItem(nId);
        const RECT rcClient = control.GetClientRect();
        POINT pt;
        control.ClientToScreen(pt);
        Wnd().ScreenToClient(pt);
        return RECT{pt.x, pt.y, pt.x + rcClient.Width(), pt.y + rcClient.Height()};
    };
    EXPECT_EQ(placeOf(ID_PLAY), HINT_TABLE[HINT_PLAY].rc);
    EXPECT_EQ(placeOf(ID_A_FREQUENCY), HINT_TABLE[HINT_A_FREQUENCY].rc);
    EXPECT_EQ(placeOf(ID_ADD), HINT_TABLE[HINT_ADD].rc);
    EXPECT_EQ(placeOf(ID_DELETE), HINT_TABLE[HINT_DELETE].rc);
    EXPECT_EQ(placeOf(ID_OPTIONS), HINT_TABLE[HINT_OPTIONS].rc);
    EXPECT_EQ(placeOf(ID_HELP), HINT_TABLE[HINT_HELP].rc);
    EXPECT_EQ(placeOf(ID_EXIT), HINT_TABLE[HINT_EXIT].rc);
    EXPECT_EQ(placeOf(ID_HINT), (RECT{10, 365, 240, 391}));
    EXPECT_EQ(placeOf(ID_STRINGS), (RECT{10, 13, 200, 300}));
    for (int nId = ID_PLAY; nId <= ID_EXIT; ++nId) {
        EXPECT_FALSE(toolkit::IsTextCut(*Wnd().GetDlgItem(nId))) << nId;
    }
    for (const RECT& rc : STRING_AREAS) {
        EXPECT_TRUE(PtInRect(HINT_TABLE[HINT_STRINGS].rc, {rc.left, rc.top}));
        EXPECT_TRUE(PtInRect(HINT_TABLE[HINT_STRINGS].rc, {rc.right - 1, rc.bottom - 1}));
    }
    toolkit::SavePicture(Wnd(), "window-start.png");
}

TEST_F(StartTest, ShowsFSharpInGreyUntilSomethingIsHeard) {
    m_fake->SetDevices({});
    Open();
    constexpr int NEEDLE_X = 370;
    constexpr int NEEDLE_Y = 193;
    EXPECT_EQ(PixelAt(NEEDLE_X, NEEDLE_Y), 0xA0A0A0U);
    // The sharp behind the F.
    EXPECT_NE(PixelAt(250 + 22 + 24 + 10, 43 + 20 + 13), 0xFFFFFFU);
    // The highlight at the lowest string's mark: two columns from its left edge the tint of the default
    // colour.
    EXPECT_EQ(PixelAt(10 + 13, 310 + 3), 0xE3B3B3U);
    EXPECT_EQ(PixelAt(10 + 12, 310 + 3), 0xFFFFFFU);
    EXPECT_EQ(PixelAt(10 + 13 + 14, 310 + 3), 0xFFFFFFU);
}

TEST_F(StartTest, BlendsTheLogoAnewWhenTheFaceColourChanges) {
    Open();
    constexpr int LOGO_CORNER_X = 370;
    constexpr int LOGO_CORNER_Y = 41;
    const COLORREF clrBefore = PixelAt(LOGO_CORNER_X, LOGO_CORNER_Y);
    constexpr COLORREF NEW_FACE = 0xC0FFC0;
    toolkit::SetFaceColor(NEW_FACE);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return PixelAt(LOGO_CORNER_X, LOGO_CORNER_Y) != clrBefore; }));
    EXPECT_NEAR(GetGreen(PixelAt(LOGO_CORNER_X, LOGO_CORNER_Y)), 0xFF, 2);
    toolkit::SetFaceColor(clrBefore);
}

}  // namespace
