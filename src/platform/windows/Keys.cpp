#include "platform/windows/Keys.h"

#include "platform/windows/Messages.h"

#include <QtGui/QKeyEvent>
#include <algorithm>
#include <array>

namespace {

struct KeyPair {
    int nKey;
    UINT nVirtualKey;
};

constexpr std::array KEYS{
    KeyPair{Qt::Key_Backspace, VK_BACK},  KeyPair{Qt::Key_Tab, VK_TAB},
    KeyPair{Qt::Key_Backtab, VK_TAB},     KeyPair{Qt::Key_Return, VK_RETURN},
    KeyPair{Qt::Key_Enter, VK_RETURN},    KeyPair{Qt::Key_Shift, VK_SHIFT},
    KeyPair{Qt::Key_Control, VK_CONTROL}, KeyPair{Qt::Key_Alt, VK_MENU},
    KeyPair{Qt::Key_Escape, VK_ESCAPE},   KeyPair{Qt::Key_Space, VK_SPACE},
    KeyPair{Qt::Key_PageUp, VK_PRIOR},    KeyPair{Qt::Key_PageDown, VK_NEXT},
    KeyPair{Qt::Key_End, VK_END},         KeyPair{Qt::Key_Home, VK_HOME},
    KeyPair{Qt::Key_Left, VK_LEFT},       KeyPair{Qt::Key_Up, VK_UP},
    KeyPair{Qt::Key_Right, VK_RIGHT},     KeyPair{Qt::Key_Down, VK_DOWN},
    KeyPair{Qt::Key_Insert, VK_INSERT},   KeyPair{Qt::Key_Delete, VK_DELETE},
};

constexpr std::array KEYPAD{
    KeyPair{Qt::Key_Asterisk, VK_MULTIPLY}, KeyPair{Qt::Key_Plus, VK_ADD},
    KeyPair{Qt::Key_Minus, VK_SUBTRACT},    KeyPair{Qt::Key_Period, VK_DECIMAL},
    KeyPair{Qt::Key_Comma, VK_DECIMAL},     KeyPair{Qt::Key_Slash, VK_DIVIDE},
};

template <class Table>
UINT LookUp(const Table& table, int nKey) {
    const auto found =
        std::find_if(table.begin(), table.end(), [nKey](const KeyPair& pair) { return pair.nKey == nKey; });
    return found != table.end() ? found->nVirtualKey : 0;
}

}  // namespace

UINT VirtualKeyOf(const QKeyEvent& event) {
    const int nKey = event.key();
    const bool bKeypad = event.modifiers().testFlag(Qt::KeypadModifier);
    if (nKey >= Qt::Key_0 && nKey <= Qt::Key_9) {
        return static_cast<UINT>(nKey - Qt::Key_0) + (bKeypad ? VK_NUMPAD0 : static_cast<UINT>('0'));
    }
    if (nKey >= Qt::Key_A && nKey <= Qt::Key_Z) {
        return static_cast<UINT>(nKey - Qt::Key_A) + static_cast<UINT>('A');
    }
    if (nKey >= Qt::Key_F1 && nKey <= Qt::Key_F24) {
        return static_cast<UINT>(nKey - Qt::Key_F1) + VK_F1;
    }
    if (bKeypad) {
        if (const UINT nVirtualKey = LookUp(KEYPAD, nKey); nVirtualKey != 0) {
            return nVirtualKey;
        }
    }
    return LookUp(KEYS, nKey);
}

std::u32string CharactersOf(const QKeyEvent& event) {
    if (event.modifiers().testFlag(Qt::AltModifier) || event.key() == Qt::Key_Delete) {
        return {};
    }
    if (event.key() == Qt::Key_Backtab) {
        return {static_cast<char32_t>(VK_TAB)};
    }
    return event.text().toStdU32String();
}

bool FollowAltKey(const QKeyEvent& event) {
    static int nHeldKey = 0;
    const bool bAlt = event.modifiers().testFlag(Qt::AltModifier);
    if (event.type() == QEvent::KeyRelease) {
        const bool bHeld = event.key() == nHeldKey;
        nHeldKey = bHeld ? 0 : nHeldKey;
        return bHeld || bAlt;
    }
    nHeldKey = bAlt ? event.key() : 0;
    return bAlt;
}
