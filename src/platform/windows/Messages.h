#pragma once

#include "platform/base/Types.h"

#include <bit>

// The messages, notification codes, styles and key codes in use, under their usual names and numbers.

inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_MOVE = 0x0003;
inline constexpr UINT WM_PAINT = 0x000F;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_SETFONT = 0x0030;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_CONTEXTMENU = 0x007B;
inline constexpr UINT WM_NCHITTEST = 0x0084;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_CHAR = 0x0102;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_TIMER = 0x0113;
inline constexpr UINT WM_MOUSEMOVE = 0x0200;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_LBUTTONUP = 0x0202;
inline constexpr UINT WM_RBUTTONDOWN = 0x0204;
inline constexpr UINT WM_RBUTTONUP = 0x0205;
inline constexpr UINT WM_MOUSEWHEEL = 0x020A;
inline constexpr UINT WM_USER = 0x0400;

// List box messages. Texts go as `const char*` in lParam; CListBox has a typed call for each.
inline constexpr UINT LB_ADDSTRING = 0x0180;
inline constexpr UINT LB_INSERTSTRING = 0x0181;
inline constexpr UINT LB_DELETESTRING = 0x0182;
inline constexpr UINT LB_SETCURSEL = 0x0186;
inline constexpr UINT LB_GETCURSEL = 0x0188;
inline constexpr UINT LB_GETCOUNT = 0x018B;
inline constexpr UINT LB_FINDSTRING = 0x018F;
inline constexpr UINT LB_SETTABSTOPS = 0x0192;  // wParam: 1; lParam: points to an int, dialog units
inline constexpr int LB_ERR = -1;

// Combo box messages. CComboBox has a typed call for each.
inline constexpr UINT CB_GETCURSEL = 0x0147;
inline constexpr UINT CB_INSERTSTRING = 0x014A;
inline constexpr UINT CB_SETCURSEL = 0x014E;
inline constexpr int CB_ERR = -1;

// Slider messages. CSliderCtrl has a typed call for each.
inline constexpr UINT TBM_GETPOS = 0x0400;
inline constexpr UINT TBM_SETPOS = 0x0405;      // lParam: the position; wParam: redraw
inline constexpr UINT TBM_SETRANGE = 0x0406;    // lParam: the ends in its low and high word; wParam: redraw
inline constexpr UINT TBM_SETTICFREQ = 0x0414;  // wParam: units from tick to tick

// Notification codes: the high word of WM_COMMAND's wParam.
inline constexpr UINT BN_CLICKED = 0;
inline constexpr UINT LBN_SELCHANGE = 1;
inline constexpr UINT CBN_SELCHANGE = 1;
inline constexpr UINT EN_CHANGE = 0x0300;

// Notification codes of WM_NOTIFY.
inline constexpr UINT NM_RELEASEDCAPTURE = 0xFFFFFFF0;  // -16

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int ID_APPLY_NOW = 12321;  // of a property sheet

inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_BORDER = 0x00800000;
inline constexpr DWORD WS_VSCROLL = 0x00200000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD BS_DEFPUSHBUTTON = 0x00000001;
inline constexpr DWORD BS_GROUPBOX = 0x00000007;
inline constexpr DWORD SS_SUNKEN = 0x00001000;
inline constexpr DWORD LBS_NOTIFY = 0x00000001;
inline constexpr DWORD LBS_USETABSTOPS = 0x00000080;
inline constexpr DWORD CBS_DROPDOWN = 0x00000002;
inline constexpr DWORD ES_AUTOHSCROLL = 0x00000080;

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_RESTORE = 9;

inline constexpr UINT SWP_NOSIZE = 0x01;
inline constexpr UINT SWP_NOMOVE = 0x02;
inline constexpr UINT SWP_NOZORDER = 0x04;
inline constexpr UINT SWP_NOREDRAW = 0x08;

// Results of WM_NCHITTEST.
inline constexpr LRESULT HTCLIENT = 1;

// Virtual-key codes; letters and digits are their own capital ASCII characters.
inline constexpr UINT VK_BACK = 0x08;
inline constexpr UINT VK_TAB = 0x09;
inline constexpr UINT VK_RETURN = 0x0D;
inline constexpr UINT VK_SHIFT = 0x10;
inline constexpr UINT VK_CONTROL = 0x11;
inline constexpr UINT VK_MENU = 0x12;
inline constexpr UINT VK_ESCAPE = 0x1B;
inline constexpr UINT VK_SPACE = 0x20;
inline constexpr UINT VK_PRIOR = 0x21;
inline constexpr UINT VK_NEXT = 0x22;
inline constexpr UINT VK_END = 0x23;
inline constexpr UINT VK_HOME = 0x24;
inline constexpr UINT VK_LEFT = 0x25;
inline constexpr UINT VK_UP = 0x26;
inline constexpr UINT VK_RIGHT = 0x27;
inline constexpr UINT VK_DOWN = 0x28;
inline constexpr UINT VK_INSERT = 0x2D;
inline constexpr UINT VK_DELETE = 0x2E;
inline constexpr UINT VK_NUMPAD0 = 0x60;
inline constexpr UINT VK_MULTIPLY = 0x6A;
inline constexpr UINT VK_ADD = 0x6B;
inline constexpr UINT VK_SUBTRACT = 0x6D;
inline constexpr UINT VK_DECIMAL = 0x6E;
inline constexpr UINT VK_DIVIDE = 0x6F;
inline constexpr UINT VK_F1 = 0x70;

// A point in an lParam: y in the high word, x in the low, both signed 16 bits.
constexpr LPARAM MakePointParam(POINT pt) {
    return static_cast<LPARAM>(static_cast<std::int32_t>((static_cast<std::uint32_t>(pt.y) << 16U) |
                                                         (static_cast<std::uint32_t>(pt.x) & 0xFFFFU)));
}
constexpr POINT PointOfParam(LPARAM lParam) {
    return {static_cast<std::int16_t>(lParam & 0xFFFF), static_cast<std::int16_t>(lParam >> 16 & 0xFFFF)};
}

// The id and the notification code in the wParam of a WM_COMMAND.
constexpr WPARAM MakeCommandParam(int nId, UINT nCode) {
    return (static_cast<WPARAM>(nCode & 0xFFFFU) << 16U) | static_cast<WPARAM>(nId & 0xFFFF);
}
constexpr int IdOfCommand(WPARAM wParam) {
    return static_cast<int>(wParam & 0xFFFFU);
}
constexpr UINT CodeOfCommand(WPARAM wParam) {
    return static_cast<UINT>(wParam >> 16U & 0xFFFFU);
}

// A text in an lParam, for the length of the call.
inline LPARAM MakeTextParam(const CString& strText) {
    return std::bit_cast<LPARAM>(strText.c_str());
}
inline const char* TextOfParam(LPARAM lParam) {
    return std::bit_cast<const char*>(lParam);
}

class CWnd;

// What the lParam of a WM_NOTIFY points to, for the length of the call: who sends it, and why.
struct NMHDR {
    CWnd* hwndFrom;
    int idFrom;
    UINT code;
};
