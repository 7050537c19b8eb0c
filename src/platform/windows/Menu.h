#pragma once

#include "platform/base/Types.h"

#include <memory>

class CWnd;
class QMenu;

inline constexpr UINT MF_CHECKED = 0x08;
inline constexpr UINT MF_POPUP = 0x10;
inline constexpr UINT TPM_RIGHTBUTTON = 0x02;

// A menu that pops up. An item has a command or opens another menu; "&" before a character of its text
// underlines it. Without CreatePopupMenu every operation fails. The object takes its menu with it; a menu and
// those that it opens may go in any order.
class CMenu {
public:
    CMenu();
    ~CMenu();
    CMenu(const CMenu&) = delete;
    CMenu& operator=(const CMenu&) = delete;
    CMenu(CMenu&&) = delete;
    CMenu& operator=(CMenu&&) = delete;

    bool CreatePopupMenu();
    // nFlags: 0, or MF_CHECKED for an item with a check mark.
    bool AppendMenu(UINT nFlags, int nId, const CString& strText);
    // nFlags: MF_POPUP. The item goes when popup does.
    bool AppendMenu(UINT nFlags, const CMenu& popup, const CString& strText);

    // Shows the menu, its top left corner at a point of the screen, until the user has chosen an item, by
    // either mouse button (nFlags: TPM_RIGHTBUTTON) or the keyboard, or given up, or the owner's window is
    // gone. A choice is sent to the owner as WM_COMMAND. False if it can't be shown.
    bool TrackPopupMenu(UINT nFlags, POINT ptScreen, CWnd& owner);

private:
    std::unique_ptr<QMenu> m_pMenu;
};
