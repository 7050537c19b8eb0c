#include "platform/windows/support/Toolkit.h"
#include "window/ControlTable.h"
#include "window/HintTable.h"
#include "window/TunerApp.h"
#include "window/TunerWndTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NO_PRESETS = "Cannot find preset.txt, using only standard E tuning";
constexpr const char* DROP_D = "Drop D\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* MINE = "Mine\t7\t2\t0\t9\t0\t2\t1\t7\t1\t9\t1\t2\t2";

class StartTest : public CTunerWndTest {
protected:
    CString ACaption() { return Wnd().GetDlgItem(ID_A_FREQUENCY)->GetWindowText(); }
};

TEST_F(StartTest, ComesUpWithDefaultsWhereThereAreNoGoodSettings) {
    for (const bool bBad : {false, true}) {
        if (bBad) {
            WriteState(1, -1, "64", {MINE});
            m_directory.Remove("errorlog.txt");
        }
        Open();
        ASSERT_TRUE(Wnd().IsWindow());
        EXPECT_EQ(m_directory.LogMessages(), std::vector<CString>{NO_SETTINGS});
        EXPECT_EQ(Wnd().GetWindowText(), "Fretvane 吉他校音软件 1.02");
        EXPECT_EQ(Wnd().GetClientRect(), (RECT{0, 0, 500, 396}));
        EXPECT_EQ(ACaption(), "&A : 440.0 Hz");
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
}

struct PresetCase {
    const char* szName;
    CString strPresets;  // empty: no such file
    std::vector<CString> rows;
    std::vector<CString> log;

    friend void PrintTo(const PresetCase& preset, std::ostream* pStream) { *pStream << preset.szName; }
};
class PresetTest : public StartTest, public testing::WithParamInterface<PresetCase> {};

// Behind the presets stands the custom tuning, whose row was selected at the last exit.
TEST_P(PresetTest, FillsTheListAndTakesUpTheSettings) {
    const PresetCase& preset = GetParam();
    const int nLast = static_cast<int>(preset.rows.size()) - 1;
    WriteState(nLast, 0, "64", {MINE});
    if (preset.strPresets.empty()) {
        m_directory.Remove("preset.txt");
    } else {
        m_directory.Write("preset.txt", preset.strPresets);
    }
    Open();
    EXPECT_EQ(Access().Rows(), preset.rows);
    EXPECT_EQ(m_directory.LogMessages(), preset.log);
    EXPECT_EQ(ACaption(), "&A : 441.0 Hz");
    EXPECT_EQ(Access().List().GetCurSel(), nLast);
    EXPECT_EQ(Access().Current().m_strName, "Mine");
    EXPECT_TRUE(Access().CanDelete());
    Close();
    EXPECT_THAT(m_directory.Read("state.txt"),
                testing::EndsWith("44100\t10485760\t16711680\t32768\t16711680\t0\t0\t" +
                                  std::to_string(nLast) + "\t64\t1\n" + MINE + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    , PresetTest,
    testing::Values(PresetCase{"Good", DROP_D, {"Drop D", "Mine"}, {}},
                    PresetCase{"Missing", "", {"Standard E", "Mine"}, {NO_PRESETS}},
                    PresetCase{"WithALineEndBehind",
                               CString(DROP_D) + "\n",
                               {"Drop D", "Standard E", "Mine"},
                               {NO_PRESETS}},
                    PresetCase{"WithABadNote",
                               CString("Bad\t0\t12\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n") + DROP_D,
                               {"Drop D", "Mine"},
                               {"Left out 1 unusable tuning(s) of preset.txt"}}),
    [](const auto& preset) { return preset.param.szName; });

TEST_F(StartTest, SelectsTheFirstRowForAnIndexPastTheLast) {
    WriteState(5000, 0);
    Open();
    EXPECT_EQ(Access().List().GetCurSel(), 0);
    Close();
    EXPECT_EQ(StateField(7), "0");
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
                                         MissingFile{"string1.bmp", "Unable to create string diagram"},
                                         MissingFile{"gTic.bmp",
                                                     "Unable to create the global tuning indicator"}));

// Where the pointer is over a control, the hint line is to speak of that control.
TEST_F(StartTest, PutsTheControlsWhereTheHintsSay) {
    WriteState(0, 0);
    m_directory.Remove("Label.bmp");  // without a picture of the dial's it comes up as well
    Open();
    EXPECT_FALSE(m_directory.Exists("errorlog.txt"));
    constexpr std::array<std::pair<int, HintRow>, 7> PLACES{{{ID_PLAY, HINT_PLAY},
                                                             {ID_A_FREQUENCY, HINT_A_FREQUENCY},
                                                             {ID_ADD, HINT_ADD},
                                                             {ID_DELETE, HINT_DELETE},
                                                             {ID_OPTIONS, HINT_OPTIONS},
                                                             {ID_HELP, HINT_HELP},
                                                             {ID_EXIT, HINT_EXIT}}};
    for (const auto& [nId, nHint] : PLACES) {
        const CWnd& control = *Wnd().GetDlgItem(nId);
        const RECT rcClient = control.GetClientRect();
        POINT pt;
        control.ClientToScreen(pt);
        Wnd().ScreenToClient(pt);
        EXPECT_EQ((RECT{pt.x, pt.y, pt.x + rcClient.Width(), pt.y + rcClient.Height()}),
                  HINT_TABLE[nHint].rc);
        EXPECT_FALSE(toolkit::IsTextCut(control)) << nId;
    }
    toolkit::SavePicture(Wnd(), "window-start.png");
}

TEST_F(StartTest, BlendsTheLogoAnewWhenTheFaceColourChanges) {
    Open();
    const auto corner = [this] { return PixelAt(370, 41); };
    const COLORREF clrBefore = corner();
    toolkit::SetFaceColor(0xC0FFC0);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return corner() != clrBefore; }));
    EXPECT_NEAR(GetGreen(corner()), 0xFF, 2);
    toolkit::SetFaceColor(clrBefore);
}

}  // namespace
