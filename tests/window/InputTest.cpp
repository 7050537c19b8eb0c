#include "platform/windows/support/Toolkit.h"
#include "support/StandInViewer.h"
#include "window/ControlTable.h"
#include "window/TunerWndTest.h"

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int TAB = 0x01000001;
constexpr int F1 = 0x01000030;
constexpr int ALT = 0x01000023;
constexpr int DOWN = 0x01000015;
constexpr const char* MINE = "Mine\t5\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2";

class InputTest : public CTunerWndTest {
protected:
    void OpenInFront(const std::vector<CString>& custom = {}, int nListIndex = 0) {
        OpenWith(custom, nListIndex);
        ASSERT_TRUE(toolkit::WaitUntil([] { return CWnd::GetFocus() != nullptr; }));
    }
    // 0: the main window itself.
    void SetFocus(int nId) {
        CWnd& wnd = nId != 0 ? *Wnd().GetDlgItem(nId) : Wnd();
        wnd.SetFocus();
        ASSERT_EQ(CWnd::GetFocus(), &wnd);
    }
    int FocusId() {
        // A dialog may have had it, and no application gives it back here.
        if (CWnd::GetFocus() == nullptr) {
            Wnd().ShowWindow(SW_SHOW);
        }
        EXPECT_TRUE(toolkit::WaitUntil([] { return CWnd::GetFocus() != nullptr; }));
        return CWnd::GetFocus() == &Wnd() ? 0 : CWnd::GetFocus()->GetDlgCtrlID();
    }
    // As on a keyboard: what comes up does so where the keyboard is by then, which may be a dialog.
    void Press(int nKey, const CString& strText = {}, bool bKeypad = false) {
        const std::size_t nDialogs = m_user.GetDialogs().size();
        toolkit::KeyDown(*CWnd::GetFocus(), nKey, strText, bKeypad);
        CWnd* const pFocus = CWnd::GetFocus();
        if (pFocus != nullptr && m_user.GetDialogs().size() == nDialogs) {
            toolkit::KeyUp(*pFocus, nKey, strText, bKeypad);
        }
    }
    void ClickFrom(POINT ptDown, POINT ptUp, bool bRight = false) {
        toolkit::Press(Wnd(), ptDown, bRight);
        toolkit::Release(Wnd(), ptUp, bRight);
    }

    CViewerInPath m_viewer;
};

TEST_F(InputTest, PlaysTheStringThatIsPressedAndReleased) {
    OpenInFront();
    // The lowest notes of the standard tuning: E2 is 40.
    constexpr std::array NOTES = {40, 45, 50, 55, 59, 64};
    for (int i = 0; i < 6; ++i) {
        const int nLeft = 35 + 25 * i;
        for (const int x : {nLeft, nLeft + 19}) {
            ClickFrom({x, 34}, {nLeft + 10, 101});
            EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(NOTES.at(static_cast<std::size_t>(i)))) << x;
        }
    }
    using Points = std::pair<POINT, POINT>;
    for (const auto& [ptDown, ptUp] : {Points{{95, 60}, {120, 60}},  // to another string
                                       Points{{57, 60}, {62, 60}},   // from a gap between two
                                       Points{{40, 60}, {57, 60}},   // into a gap
                                       Points{{57, 60}, {40, 60}},   // the string of the press before
                                       Points{{40, 60}, {40, 103}},  // out of the diagram
                                       Points{{25, 60}, {40, 60}},   // from the left margin
                                       Points{{205, 60}, {40, 60}}}) {
        ClickFrom(ptDown, ptUp);
        EXPECT_THAT(m_midi->TakeNotes(), IsEmpty()) << ptDown.x << " to " << ptUp.x;
    }
    ClickFrom({95, 60}, {95, 60});
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(50));
}

TEST_F(InputTest, OpensTheWebPageByEitherButtonOnTheLogo) {
    OpenInFront();
    m_viewer.Install();
    constexpr POINT LOGO{400, 20};
    constexpr POINT BESIDE{300, 20};
    for (const bool bRight : {false, true}) {
        ClickFrom(LOGO, BESIDE, bRight);
        // The area is kept by the left button alone; either way the next press decides.
        ClickFrom(BESIDE, LOGO, bRight);
        toolkit::RunFor(100);
        EXPECT_FALSE(m_viewer.WasStarted());
        ClickFrom(LOGO, LOGO, bRight);
        const auto told = m_viewer.Told();
        ASSERT_GT(told.size(), 1U);
        EXPECT_EQ(told[1], "[https://www.fretvane.example/products/fvn10.html]");
    }
}

struct KeyCase {
    int nFocus;
    int nKey;
    const char* szText;
    bool bKeypad;
    int nButton;  // whose button the key is; 0 for nobody's
};

// From the window and the list by the character, in both cases; from a button by the key's code.
constexpr std::array KEY_CASES = {KeyCase{0, 'P', "p", false, ID_PLAY},
                                  KeyCase{ID_TUNINGS, 'P', "P", false, ID_PLAY},
                                  KeyCase{ID_ADD, 'P', "p", false, ID_PLAY},
                                  KeyCase{ID_ADD, F1, "", false, ID_PLAY},
                                  KeyCase{0, F1, "", false, 0},
                                  KeyCase{0, 'A', "a", false, ID_A_FREQUENCY},
                                  KeyCase{ID_ADD, '1', "1", true, ID_A_FREQUENCY},
                                  KeyCase{ID_ADD, '1', "1", false, 0},
                                  KeyCase{ID_TUNINGS, '1', "1", true, 0},
                                  KeyCase{ID_EXIT, 'O', "O", false, ID_OPTIONS},
                                  KeyCase{ID_TUNINGS, 'H', "h", false, ID_HELP},
                                  KeyCase{ID_PLAY, 'H', "h", false, ID_HELP},
                                  KeyCase{0, 'X', "x", false, 0},
                                  KeyCase{ID_TUNINGS, 'D', "d", false, 0}};

TEST_F(InputTest, TakesKeysForTheirButtons) {
    OpenInFront();
    m_viewer.Install();
    for (const KeyCase& key : KEY_CASES) {
        SCOPED_TRACE(testing::Message() << "key " << key.nKey << " '" << key.szText << "' at " << key.nFocus);
        SetFocus(key.nFocus);
        m_midi->TakeNotes();
        const std::size_t nDialogs = m_user.GetDialogs().size();
        Press(key.nKey, key.szText, key.bKeypad);
        EXPECT_EQ(FocusId(), key.nButton != 0 ? key.nButton : key.nFocus);
        EXPECT_EQ(m_midi->CountNotes() > 0, key.nButton == ID_PLAY);
        const bool bDialog = key.nButton == ID_A_FREQUENCY || key.nButton == ID_OPTIONS;
        EXPECT_EQ(m_user.GetDialogs().size() > nDialogs, bDialog);
        if (key.nButton == ID_HELP) {
            const auto told = m_viewer.Told();
            ASSERT_GT(told.size(), 1U);
            EXPECT_EQ(told[1], "[" + m_directory.Path("fvnhelp.htm") + "]");
        }
        EXPECT_FALSE(m_viewer.WasStarted());
        EXPECT_EQ(Access().List().GetCurSel(), 0) << "no looking for rows by their letters";
    }
    SetFocus(ID_TUNINGS);
    Press(DOWN);
    EXPECT_EQ(Access().Current().m_strName, "Drop D") << "arrows still move the selection";
}

TEST_F(InputTest, PlaysFromAButtonWhenTheKeyComesUp) {
    OpenInFront();
    SetFocus(ID_ADD);
    toolkit::KeyDown(*Wnd().GetDlgItem(ID_ADD), 'P', "p");
    EXPECT_THAT(m_midi->TakeNotes(), IsEmpty());
    toolkit::KeyUp(*Wnd().GetDlgItem(ID_ADD), 'P', "p");
    // One after the other, each a semitone above its string.
    EXPECT_TRUE(toolkit::WaitUntil([this] { return m_midi->CountNotes() == 6; }));
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41, 46, 51, 56, 60, 65));
    // From the list it starts when the key goes down, and what comes up at the button starts nothing more.
    SetFocus(ID_TUNINGS);
    Press('P', "p");
    EXPECT_EQ(FocusId(), ID_PLAY);
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41));
    Press('P', "p");
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41)) << "the next press is another one";
    // The standard comfort: Space presses the button that has the keyboard.
    SetFocus(ID_PLAY);
    Press(' ', " ");
    EXPECT_EQ(m_midi->CountNotes(), 1U);
}

// A mnemonic is the button's alone: neither order of letting go makes a second key of it.
TEST_F(InputTest, KeepsMnemonicsApartFromKeys) {
    OpenInFront();
    m_viewer.Install();
    for (const bool bAltFirst : {false, true}) {
        SetFocus(ID_EXIT);
        CWnd& button = *Wnd().GetDlgItem(ID_EXIT);
        toolkit::AltKeyDown(button, 'H');
        toolkit::KeyUp(button, bAltFirst ? ALT : 'H');
        toolkit::KeyUp(button, bAltFirst ? 'H' : ALT);
        EXPECT_EQ(FocusId(), ID_EXIT);
    }
    Press('H', "h");
    EXPECT_EQ(FocusId(), ID_HELP) << "without Alt it is a key again";
    EXPECT_FALSE(m_viewer.Told().empty());
}

TEST_F(InputTest, GoesRoundWithTab) {
    OpenInFront({MINE}, 2);
    SetFocus(0);
    toolkit::KeyDown(Wnd(), TAB, "\t");
    std::vector<int> way{FocusId()};
    for (int i = 0; i < 9; ++i) {
        Press(TAB, "\t");
        way.push_back(FocusId());
    }
    EXPECT_THAT(way, ElementsAre(ID_PLAY, ID_A_FREQUENCY, ID_ADD, ID_DELETE, ID_TUNINGS, ID_OPTIONS, ID_HELP,
                                 ID_EXIT, ID_PLAY, ID_A_FREQUENCY));
    // Past a button that is switched off.
    Access().SetString(0, 4, 0);
    EXPECT_FALSE(Access().CanDelete());
    SetFocus(ID_ADD);
    Press(TAB, "\t");
    EXPECT_EQ(FocusId(), ID_TUNINGS);
    toolkit::KeyDown(Access().List(), TAB, "\t");
    EXPECT_EQ(FocusId(), ID_OPTIONS) << "the list passes it on when it goes down";
    CWnd& options = *Wnd().GetDlgItem(ID_OPTIONS);
    toolkit::KeyUp(options, TAB, "\t");
    toolkit::KeyDown(options, TAB, "\t");
    EXPECT_EQ(FocusId(), ID_OPTIONS) << "and a button when it comes up";
    toolkit::KeyUp(options, TAB, "\t");
    EXPECT_EQ(FocusId(), ID_HELP);
}

// F against frames that are just about to show their text: what they show goes with the switch.
TEST_F(InputTest, ClearsTheFrameRateWhateverFramesDo) {
    m_fake->SetDevices({});
    OpenInFront();
    std::atomic<bool> bRun = true;
    std::jthread frames([this, &bRun] {
        while (bRun) {
            Access().MakeFrameRateDue();
            Wnd().OnFrame();
        }
    });
    SetFocus(0);
    int nLeft = 0;
    for (int i = 0; i < 300; ++i) {
        Press('F', "f");
        std::this_thread::sleep_for(std::chrono::microseconds(100 + 7 * i));
        Press('F', "F");
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        nLeft += Access().FrameRateText().empty() ? 0 : 1;
    }
    bRun = false;
    frames.join();
    EXPECT_EQ(nLeft, 0);
}

}  // namespace
