#pragma once

#include "platform/base/Types.h"

#include <functional>
#include <optional>
#include <vector>

class CWnd;

// The user's side of a window, for tests: what is typed, clicked and seen. A program that links this has the
// toolkit's display open while its tests run.
namespace toolkit {

// Runs the message loop until the condition holds; false if it doesn't within a time that is long for
// anything.
bool WaitUntil(const std::function<bool()>& fnHolds);
// Runs whatever is waiting in the message loop now.
void RunPending();
// Runs the message loop for a while, in which something must not happen.
void RunFor(int nMilliseconds);
// Calls the function from the message loop, soon: for what is to happen inside a modal loop.
void Later(std::function<void()> fnAction);

// Client coordinates.
void Press(const CWnd& wnd, POINT pt, bool bRight = false);
void Release(const CWnd& wnd, POINT pt, bool bRight = false);
void Click(const CWnd& wnd, POINT pt, bool bControl = false);
void DoubleClick(const CWnd& wnd, POINT pt);
void Move(const CWnd& wnd, POINT pt);
// Over the middle of it, away from the user where nNotches is above 0.
void Wheel(const CWnd& wnd, int nNotches);
// As the window system does: to whatever widget of the window lies there.
void MoveOver(const CWnd& topLevel, POINT pt);
void ClickInto(const CWnd& topLevel, POINT pt);

// A key of the toolkit by its number, going down and up at the window given.
void KeyDown(const CWnd& wnd, int nToolkitKey, const CString& strText = {}, bool bKeypad = false);
void KeyUp(const CWnd& wnd, int nToolkitKey, const CString& strText = {}, bool bKeypad = false);
// With Alt held, mnemonics included.
void AltKeyDown(const CWnd& wnd, int nToolkitKey);
void Key(const CWnd& wnd, int nToolkitKey, const CString& strText = {});
// To whatever of the window in front has the keyboard.
void KeyIntoFocus(int nToolkitKey);
void TypeText(const CWnd& wnd, const CString& strText);
// What an input method does: a text that is being composed, then its final form.
void Compose(const CWnd& wnd, const CString& strPreedit, const CString& strCommit);
// The close box of the title bar.
void CloseBox(const CWnd& wnd);

// What the screen shows of the client area, row by row, 0xFFRRGGBB.
struct Screenshot {
    int nWidth = 0;
    int nHeight = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t At(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(nWidth) +
                         static_cast<std::size_t>(x));
    }
    friend bool operator==(const Screenshot&, const Screenshot&) = default;
};
Screenshot GrabScreen(const CWnd& wnd);
// A PNG of the window as it paints itself, below the build directory.
bool SavePicture(const CWnd& wnd, const CString& strName);

// The modal box or dialog that is in front, by its title; empty if there is none.
CString ModalTitle();
// The text that a message box shows.
CString ModalText();
// Its rectangle on the screen, with the title bar.
RECT ModalFrame();
void CloseModal();
// In the control of it that has this id.
void TypeIntoModal(int nId, const CString& strText);
void ClickInModal(int nId);

// The popup menu that is open in front, item by item: the text, and behind it " *" for a check mark or " >"
// for a menu of its own. Empty if there is none.
std::vector<CString> PopupItems();
void PopupKey(int nToolkitKey);
// Where it lies, in screen coordinates.
POINT PopupOrigin();
void ClickPopupItem(int nItem, bool bRight = false);

// The tab of a property sheet.
void ClickTab(const CWnd& sheet, int nTab);
// Opens the list of a combo box and clicks on a row.
void PickRow(const CWnd& combo, int nRow);
std::vector<CString> ComboRows(const CWnd& combo);
// How much narrower the open list of a combo box is than its widest row.
int MissingWidthOfOpenList(const CWnd& combo);
// Takes this colour in the colour dialog that is in front, or cancels; the colour that it started from.
COLORREF AnswerColorDialog(std::optional<COLORREF> clr);

// The text that a control really shows.
CString TextOf(const CWnd& control);
// The height of the first row that a list shows.
int RowHeight(const CWnd& list);
// The desktop takes another colour for the faces of things.
void SetFaceColor(COLORREF clr);
// A control's text doesn't fit its rectangle.
bool IsTextCut(const CWnd& control);
int CountTopLevelWidgets();

}  // namespace toolkit
