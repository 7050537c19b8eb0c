#pragma once

#include "platform/base/Types.h"

#include <span>

enum class DialogControlKind { Static, Edit, Button, DefaultButton, ComboBox, ListBox, Slider };

// One control of a dialog template. The rectangle is in dialog units; a combo box's includes its open list.
struct DialogControl {
    DialogControlKind nKind;
    int nId;             // -1 for a label that nobody asks for
    const char* szText;  // of one that shows no text of its own: what a screen reader calls it
    int x;
    int y;
    int cx;
    int cy;
    DWORD dwStyle = 0;
};

// A dialog as data. Sizes are in dialog units: horizontally a quarter of the dialog font's average character
// width, vertically an eighth of its height.
struct DialogTemplate {
    int nId;
    const char* szTitle;
    int cx;
    int cy;
    std::span<const DialogControl> controls;
    int nPointSize = 8;
    const char* szFace = "MS Sans Serif";
};
