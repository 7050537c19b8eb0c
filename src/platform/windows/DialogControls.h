#pragma once

#include "platform/windows/DialogTemplate.h"
#include "platform/windows/Wnd.h"

#include <memory>
#include <vector>

class QFont;

// Making the controls of a template. For the .cpp files of this directory only.

using DialogControls = std::vector<std::unique_ptr<CWnd>>;

// The font that a template names.
bool MakeDialogFont(const DialogTemplate& dialogTemplate, QFont& font);
// The pixels that a template takes, as its own font has them; empty if there is no such font.
RECT MeasureDialog(const DialogTemplate& dialogTemplate);
// Fills the dialog's window with the controls, in the order of the template and in its font; empty if one
// can't be made.
DialogControls MakeControls(const DialogTemplate& dialogTemplate, CWnd& dialog);
