#include "platform/windows/support/Toolkit.h"
#include "support/StandInViewer.h"
#include "window/HintTable.h"
#include "window/TunerWndTest.h"

#include <chrono>
#include <thread>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int TAB = 0x01000001;
constexpr int F1 = 0x01000030;
constexpr int ALT = 0x01000023;
constexpr int DOWN = 0x01000015;

class InputTest : public CTunerWndTest {
protected:
    void OpenInFront(const std::vector<CString>& custom = {}, int nListIndex = 0) {
        OpenWith(custom, nListIndex);
        m_viewer.Install();
        ASSERT_TRUE(toolkit::WaitUntil([] { return CWnd::GetFocus() != nullptr; }));
    }
    // 0: the main window itself.
    CWnd& Item(int nId) { return nId != 0 ? *Wnd().GetDlgItem(nId) : Wnd(); }
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
        const std::size_t nDialogs = m_user.CountDialogs();
        toolkit::KeyDown(*CWnd::GetFocus(), nKey, strText, bKeypad);
        CWnd* const pFocus = CWnd::GetFocus();
        if (pFocus != nullptr && m_user.CountDialogs() == nDialogs) {
            toolkit::KeyUp(*pFocus, nKey, strText, bKeypad);
        }
    }
    void ClickFrom(POINT ptDown, POINT ptUp, bool bRight = false) {
        toolkit::Press(Wnd(), ptDown, bRight);
        toolkit::Release(Wnd(), ptUp, bRight);
    }

    CViewerInPath m_viewer;
};

// In the outermost pixels of areas and just beside them, over the window, its buttons and its list. Of areas
// that overlap the first one counts.
TEST_F(InputTest, HintsAtTheAreaThatTheMouseEnters) {
    m_fake->SetDevices({{}});
    Open();
    CWnd& hint = *Wnd().GetDlgItem(ID_HINT);
    const auto textAt = [&](POINT pt) {
        hint.SetWindowText("untouched");
        toolkit::MoveOver(Wnd(), pt);
        return toolkit::TextOf(hint);
    };
    EXPECT_EQ(toolkit::TextOf(hint), "");
    struct Case {
        POINT pt;
        HintRow nHint;  // HINT_ROWS for none
    };
    constexpr Case CASES[] = {{{20, 34}, HINT_STRINGS}, {{189, 101}, HINT_STRINGS}, {{19, 34}, HINT_ROWS},
                              {{190, 101}, HINT_ROWS},  {{20, 102}, HINT_ROWS},     {{20, 108}, HINT_PLAY},
                              {{101, 131}, HINT_PLAY},  {{102, 131}, HINT_ROWS},    {{113, 150}, HINT_LIST},
                              {{114, 144}, HINT_ADD},   {{149, 163}, HINT_ADD},     {{150, 163}, HINT_DELETE},
                              {{150, 164}, HINT_LIST},  {{30, 289}, HINT_LIST},     {{30, 290}, HINT_ROWS},
                              {{489, 390}, HINT_EXIT},  {{490, 390}, HINT_ROWS},    {{370, 5}, HINT_LOGO},
                              {{491, 41}, HINT_ROWS}};
    for (const auto& [pt, nHint] : CASES) {
        EXPECT_EQ(textAt({5, 5}), "untouched") << "the last text stays beside all areas";
        EXPECT_EQ(textAt(pt), nHint == HINT_ROWS ? "untouched" : HINT_TABLE[nHint].szText)
            << pt.x << ", " << pt.y;
        EXPECT_EQ(textAt(pt), "untouched") << "the area is the same";
    }
    textAt({30, 50});
    EXPECT_FALSE(toolkit::IsTextCut(hint));
}

TEST_F(InputTest, PlaysTheStringThatIsPressedAndReleased) {
    OpenInFront();
    // The lowest notes of the standard tuning: E2 is 40.
    int nLeft = 35;
    for (const int nNote : {40, 45, 50, 55, 59, 64}) {
        for (const int x : {nLeft, nLeft + 19}) {
            ClickFrom({x, 34}, {nLeft + 10, 101});
            EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(nNote)) << x;
        }
        ClickFrom({nLeft + 20, 34}, {nLeft + 19, 34});
        EXPECT_THAT(m_midi->TakeNotes(), IsEmpty()) << nLeft;
        nLeft += 25;
    }
    using Points = std::pair<POINT, POINT>;
    for (const auto& [ptDown, ptUp] : {Points{{95, 60}, {120, 60}},  // to another string
                                       Points{{57, 60}, {62, 60}},   // from a gap between two
                                       Points{{57, 60}, {40, 60}},   // the string of the press before
                                       Points{{40, 60}, {40, 103}},  // out of the diagram
                                       Points{{25, 60}, {40, 60}},   // from the left margin
                                       Points{{205, 60}, {40, 60}}}) {
        ClickFrom(ptDown, ptUp);
        EXPECT_THAT(m_midi->TakeNotes(), IsEmpty()) << ptDown.x << " to " << ptUp.x;
    }
}

TEST_F(InputTest, OpensTheWebPageByEitherButtonOnTheLogo) {
    OpenInFront();
    constexpr POINT LOGO{400, 20};
    constexpr POINT BESIDE{300, 20};
    for (const bool bRight : {false, true}) {
        ClickFrom(LOGO, BESIDE, bRight);
        // The area is kept by the left button alone; either way the next press decides.
        ClickFrom(BESIDE, LOGO, bRight);
        toolkit::RunFor(100);
        EXPECT_FALSE(m_viewer.WasStarted());
        ClickFrom(LOGO, LOGO, bRight);
        EXPECT_THAT(m_viewer.Told(), Contains("[https://www.fretvane.example/products/fvn10.html]"));
    }
}

// From the window and the list by the character, in both cases; from a button by the key's code. The one that
// plays comes last, for its notes go on for a while.
TEST_F(InputTest, TakesKeysForTheirButtons) {
    struct Case {
        int nFocus;
        int nKey;
        const char* szText;
        int nButton;  // whose button the key is; 0 for nobody's
        bool bKeypad = false;
    };
    constexpr Case CASES[] = {{0, F1, "", 0},
                              {0, 'A', "a", ID_A_FREQUENCY},
                              {ID_ADD, '1', "1", ID_A_FREQUENCY, true},
                              {ID_ADD, '1', "1", 0},
                              {ID_TUNINGS, '1', "1", 0, true},
                              {ID_EXIT, 'O', "O", ID_OPTIONS},
                              {ID_PLAY, 'H', "h", ID_HELP},
                              {ID_TUNINGS, 'D', "d", 0},
                              {ID_ADD, F1, "", ID_PLAY}};
    OpenInFront();
    for (const Case& key : CASES) {
        SCOPED_TRACE(testing::Message() << "key " << key.nKey << " '" << key.szText << "' at " << key.nFocus);
        Item(key.nFocus).SetFocus();
        m_midi->TakeNotes();
        const std::size_t nDialogs = m_user.CountDialogs();
        Press(key.nKey, key.szText, key.bKeypad);
        EXPECT_EQ(FocusId(), key.nButton != 0 ? key.nButton : key.nFocus);
        EXPECT_EQ(m_midi->CountNotes() > 0, key.nButton == ID_PLAY);
        EXPECT_EQ(m_user.CountDialogs() > nDialogs,
                  key.nButton == ID_A_FREQUENCY || key.nButton == ID_OPTIONS);
        if (key.nButton == ID_HELP) {
            EXPECT_THAT(m_viewer.Told(), Contains("[" + m_directory.Path("fvnhelp.htm") + "]"));
        }
        EXPECT_FALSE(m_viewer.WasStarted());
        EXPECT_EQ(Access().List().GetCurSel(), 0) << "no looking for rows by their letters";
    }
    Item(ID_TUNINGS).SetFocus();
    Press(DOWN);
    EXPECT_EQ(Access().Current().m_strName, "Drop D") << "arrows still move the selection";
}

TEST_F(InputTest, PlaysFromAButtonWhenTheKeyComesUp) {
    OpenInFront();
    Item(ID_ADD).SetFocus();
    toolkit::KeyDown(Item(ID_ADD), 'P', "p");
    EXPECT_THAT(m_midi->TakeNotes(), IsEmpty());
    toolkit::KeyUp(Item(ID_ADD), 'P', "p");
    // One after the other, each a semitone above its string.
    EXPECT_TRUE(toolkit::WaitUntil([this] { return m_midi->CountNotes() == 6; }));
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41, 46, 51, 56, 60, 65));
    // From the list it starts when the key goes down, and what comes up at the button starts nothing more.
    Item(ID_TUNINGS).SetFocus();
    Press('P', "p");
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41));
    Press('P', "p");
    EXPECT_THAT(m_midi->TakeNotes(), ElementsAre(41)) << "the next press is another one";
}

// A mnemonic is the button's alone: neither order of letting go makes a second key of it.
TEST_F(InputTest, KeepsMnemonicsApartFromKeys) {
    OpenInFront();
    for (const bool bAltFirst : {false, true}) {
        Item(ID_EXIT).SetFocus();
        toolkit::AltKeyDown(Item(ID_EXIT), 'H');
        toolkit::KeyUp(Item(ID_EXIT), bAltFirst ? ALT : 'H');
        toolkit::KeyUp(Item(ID_EXIT), bAltFirst ? 'H' : ALT);
        EXPECT_EQ(FocusId(), ID_EXIT);
    }
    Press('H', "h");
    EXPECT_EQ(FocusId(), ID_HELP) << "without Alt it is a key again";
}

TEST_F(InputTest, GoesRoundWithTab) {
    OpenInFront({"Mine\t5\t0\t0\t9\t0\t2\t1\t7\t1\t11\t1\t4\t2"}, 2);
    for (const bool bCanDelete : {true, false}) {
        if (!bCanDelete) {
            Access().SetString(0, 4, 0);
        }
        Wnd().SetFocus();
        toolkit::KeyDown(Wnd(), TAB, "\t");
        for (const int nId :
             {ID_PLAY, ID_A_FREQUENCY, ID_ADD, ID_DELETE, ID_TUNINGS, ID_OPTIONS, ID_HELP, ID_EXIT}) {
            if (nId != ID_DELETE || bCanDelete) {
                EXPECT_EQ(FocusId(), nId) << bCanDelete;
                Press(TAB, "\t");
            }
        }
    }
}

// F against frames that are just about to show their text: what they show goes with the switch.
TEST_F(InputTest, ClearsTheFrameRateWhateverFramesDo) {
    m_fake->SetDevices({});
    OpenInFront();
    std::jthread frames([this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            Access().MakeFrameRateDue();
            Wnd().OnFrame();
        }
    });
    Wnd().SetFocus();
    int nLeft = 0;
    for (int i = 0; i < 300; ++i) {
        Press('F', "f");
        std::this_thread::sleep_for(std::chrono::microseconds(100 + 7 * i));
        Press('F', "F");
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        nLeft += Access().FrameRateText().empty() ? 0 : 1;
    }
    EXPECT_EQ(nLeft, 0);
}

}  // namespace
