#include "platform/base/String.h"
#include "platform/windows/support/Toolkit.h"
#include "window/HintTable.h"
#include "window/TunerApp.h"
#include "window/TunerWndTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NO_PRESETS = "Cannot find preset.txt, using only standard E tuning";
constexpr const char* DROP_D = "Drop D\t0\t2\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";
constexpr const char* MINE = "Mine\t7\t2\t0\t9\t0\t2\t1\t7\t1\t9\t1\t2\t2";

using StartTest = CTunerWndTest;

TEST_F(StartTest, ComesUpWithDefaultsWhereThereAreNoGoodSettings) {
    for (const int nDevice : {0, -1}) {
        if (nDevice < 0) {
            WriteState(1, nDevice, "64", {MINE});
            m_directory.Remove("errorlog.txt");
        }
        Open();
        ASSERT_TRUE(Wnd().IsWindow());
        EXPECT_THAT(m_directory.LogMessages(), ElementsAre("Unable to open state.txt, using defaults."));
        EXPECT_EQ(Wnd().GetWindowText(), "Fretvane 吉他校音软件 1.02");
        EXPECT_EQ(Wnd().GetClientRect(), (RECT{0, 0, 500, 396}));
        EXPECT_EQ(ACaption(), "&A : 440.0 Hz");
        EXPECT_EQ(Access().List().GetCurSel(), 0);
        EXPECT_FALSE(Access().CanDelete());
        EXPECT_EQ(CWnd::GetFocus(), &Access().List());
        EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
        Close();
        EXPECT_EQ(m_directory.Read("state.txt"),
                  "USED DIRECTLY BY FRETVANE, DO NOT EDIT!\n"
                  "44000\t10485760\t16711680\t32768\t16711680\t0\t0\t0\t128\t0\n");
    }
}

// Behind the presets stands the custom tuning, whose row was selected at the last exit.
TEST_F(StartTest, FillsTheListAndTakesUpTheSettings) {
    struct Case {
        CString strPresets;
        std::vector<CString> rows;
        std::vector<CString> log;
    };
    const std::vector<Case> cases{{DROP_D, {"Drop D", "Mine"}, {}},
                                  {"", {"Standard E", "Mine"}, {NO_PRESETS}},
                                  {CString(DROP_D) + "\n", {"Drop D", "Standard E", "Mine"}, {NO_PRESETS}},
                                  {CString("Bad\t0\t12\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2\n") + DROP_D,
                                   {"Drop D", "Mine"},
                                   {"Left out 1 unusable tuning(s) of preset.txt"}}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.strPresets);
        const int nLast = static_cast<int>(test.rows.size()) - 1;
        WriteState(nLast, 0, "64", {MINE});
        m_directory.Write("preset.txt", test.strPresets);
        m_directory.Remove("errorlog.txt");
        Open();
        EXPECT_EQ(Access().Rows(), test.rows);
        EXPECT_EQ(m_directory.LogMessages(), test.log);
        EXPECT_EQ(ACaption(), "&A : 441.0 Hz");
        EXPECT_EQ(Access().List().GetCurSel(), nLast);
        EXPECT_EQ(Access().Current().m_strName, "Mine");
        EXPECT_TRUE(Access().CanDelete());
        Close();
        EXPECT_EQ(SavedSettings(),
                  FormatText("44100\t10485760\t16711680\t32768\t16711680\t0\t0\t%d\t64\t1", nLast));
        EXPECT_THAT(m_directory.Read("state.txt"), testing::EndsWith(CString(MINE) + "\n"));
    }
}

// No window, no thread, no use of the object; the process ends and says that it failed.
TEST_F(StartTest, EndsWithoutAPictureThatItNeeds) {
    for (const auto& [szFile, szMessage] :
         {std::pair{"gTic.bmp", "Unable to create the global tuning indicator"},
          {"string1.bmp", "Unable to create string diagram"},
          {"FVLogo.bmp", "Cannot find file FVSmall.bmp"}}) {
        WriteState(3, 0, "77");
        m_directory.Remove(szFile);
        m_directory.Remove("errorlog.txt");
        Open();
        EXPECT_FALSE(Wnd().IsWindow());
        EXPECT_THAT(m_directory.LogMessages(), ElementsAre(szMessage));
        EXPECT_THAT(SavedSettings(), testing::EndsWith("\t3\t77\t0"))
            << "row and hop stay as they were stored";
        m_pWnd.reset();
        EXPECT_NE(CTunerApp().Main(), 0);
        toolkit::RunPending();
        EXPECT_EQ(toolkit::CountTopLevelWidgets(), 0);
    }
    EXPECT_EQ(m_fake->GetCalls().nOpen, 0);
    EXPECT_THAT(m_user.GetBoxes(), IsEmpty());
}

// Where the pointer is over a control, the hint line is to speak of that control.
TEST_F(StartTest, PutsTheControlsWhereTheHintsSay) {
    WriteState(5000, 0);
    m_directory.Remove("Label.bmp");  // without a picture of the dial's it comes up as well
    Open();
    EXPECT_THAT(m_directory.LogMessages(), IsEmpty());
    EXPECT_EQ(Access().List().GetCurSel(), 0) << "there is no such row as was stored";
    int nId = ID_PLAY;
    for (const HintRow nHint :
         {HINT_PLAY, HINT_A_FREQUENCY, HINT_ADD, HINT_DELETE, HINT_OPTIONS, HINT_HELP, HINT_EXIT}) {
        const CWnd& control = *Wnd().GetDlgItem(nId++);
        const RECT rcClient = control.GetClientRect();
        POINT pt;
        control.ClientToScreen(pt);
        Wnd().ScreenToClient(pt);
        EXPECT_EQ((RECT{pt.x, pt.y, pt.x + rcClient.Width(), pt.y + rcClient.Height()}), HINT_TABLE[nHint].rc)
            << nHint;
        EXPECT_FALSE(toolkit::IsTextCut(control)) << nHint;
    }
    toolkit::SavePicture(Wnd(), "window-start.png");
}

TEST_F(StartTest, BlendsTheLogoAnewWhenTheFaceColourChanges) {
    Open();
    const auto corner = [this] { return PixelAt(370, 41); };
    const COLORREF clrBefore = corner();
    toolkit::SetFaceColor(0xC0FFC0);
    EXPECT_TRUE(toolkit::WaitUntil([&] { return corner() != clrBefore; }));
    Wnd().SendMessage(WM_PAINT);
    EXPECT_NEAR(GetGreen(corner()), 0xFF, 2);
    toolkit::SetFaceColor(clrBefore);
}

}  // namespace
