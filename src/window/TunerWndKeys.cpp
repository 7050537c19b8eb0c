#include "platform/multimedia/TimeGetTime.h"
#include "window/ControlTable.h"
#include "window/TunerWnd.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// A key that is the same as a button. A button that has the keyboard tells of keys by their codes, which are
// capitals; all else tells of characters.
struct ButtonKey {
    UINT nCapital;
    UINT nSmall;
    int nId;
    bool bDialog;  // which then has the keyboard when the key comes up
};

constexpr std::array BUTTON_KEYS = {ButtonKey{'P', 'p', ID_PLAY, false},
                                    ButtonKey{'A', 'a', ID_A_FREQUENCY, true},
                                    ButtonKey{'O', 'o', ID_OPTIONS, true},
                                    ButtonKey{'H', 'h', ID_HELP, false}, ButtonKey{'E', 'e', ID_EXIT, false}};

// A key is down no longer than this, unless it is held on purpose.
constexpr DWORD PRESS_MS = 1000;

}  // namespace

void CTunerWnd::OnChar(UINT nChar) {
    Default();
    if (nChar == VK_TAB) {
        MoveFocus();
        return;
    }
    if (nChar == 'F' || nChar == 'f') {
        ToggleFrameRate();
        return;
    }
    const auto found = std::find_if(BUTTON_KEYS.begin(), BUTTON_KEYS.end(), [nChar](const ButtonKey& key) {
        return key.nCapital == nChar || key.nSmall == nChar;
    });
    if (found != BUTTON_KEYS.end() && (found->bDialog || !HasActed(found->nCapital))) {
        GetDlgItem(found->nId)->SetFocus();
        SendMessage(WM_COMMAND, MakeCommandParam(found->nId, BN_CLICKED));
    }
}

// A key that acts when it goes down in the list, or in the bare window, hands the keyboard to its button, and
// the button tells of the same press when it comes up: a second tone, a second page of help.
bool CTunerWnd::HasActed(UINT nKey) {
    const CWnd* const pFocus = GetFocus();
    const bool bGoesDown = pFocus == nullptr || pFocus == this || pFocus == &m_lbTunings;
    const bool bActed = !bGoesDown && nKey == m_nActedKey && timeGetTime() - m_dwActed < PRESS_MS;
    m_nActedKey = bGoesDown ? nKey : 0;
    m_dwActed = timeGetTime();
    return bActed;
}

void CTunerWnd::MoveFocus() {
    const CWnd* const pFocus = GetFocus();
    // The list tells of Tab when it goes down, the buttons when it comes up: the same Tab that led from the
    // list to the options comes up there, and moves nothing.
    if (pFocus == &m_btnOptions) {
        if (++m_nTabCount <= 1) {
            return;
        }
        m_nTabCount = 0;
    }
    CWnd* const pBehindAdd = m_btnDel.IsWindowEnabled() ? static_cast<CWnd*>(&m_btnDel) : &m_lbTunings;
    const std::array<std::pair<const CWnd*, CWnd*>, 10> circle = {{{nullptr, &m_btnPlay},
                                                                   {this, &m_btnPlay},
                                                                   {&m_btnPlay, &m_btnA},
                                                                   {&m_btnA, &m_btnAdd},
                                                                   {&m_btnAdd, pBehindAdd},
                                                                   {&m_btnDel, &m_lbTunings},
                                                                   {&m_lbTunings, &m_btnOptions},
                                                                   {&m_btnOptions, &m_btnHelp},
                                                                   {&m_btnHelp, &m_btnExit},
                                                                   {&m_btnExit, &m_btnPlay}}};
    const auto found = std::find_if(circle.begin(), circle.end(),
                                    [pFocus](const auto& step) { return step.first == pFocus; });
    if (found != circle.end()) {
        found->second->SetFocus();
    }
}
