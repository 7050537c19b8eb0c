#include "platform/windows/DialogControls.h"

#include "platform/drawing/ToolkitFont.h"
#include "platform/windows/Button.h"
#include "platform/windows/ComboBox.h"
#include "platform/windows/DialogUnits.h"
#include "platform/windows/Edit.h"
#include "platform/windows/ListBox.h"
#include "platform/windows/Slider.h"
#include "platform/windows/Static.h"
#include "platform/windows/WndState.h"

#include <QtGui/QFont>
#include <QtWidgets/QWidget>

namespace {

constexpr int TENTHS = 10;

// Controls without a text of their own.
template <class Control>
std::unique_ptr<CWnd> MakeBox(const DialogControl& control, const RECT& rc, CWnd& dialog, DWORD dwStyle) {
    auto pControl = std::make_unique<Control>();
    if (!pControl->Create(dwStyle, rc, &dialog, control.nId)) {
        return nullptr;
    }
    pControl->SetAccessibleName(control.szText);
    return pControl;
}

template <class Control>
std::unique_ptr<CWnd> MakeTitled(const DialogControl& control, const RECT& rc, CWnd& dialog, DWORD dwStyle) {
    auto pControl = std::make_unique<Control>();
    return pControl->Create(control.szText, dwStyle, rc, &dialog, control.nId) ? std::move(pControl)
                                                                               : nullptr;
}

std::unique_ptr<CWnd> MakeControl(const DialogControl& control, const RECT& rc, CWnd& dialog) {
    const DWORD dwStyle = control.dwStyle | WS_CHILD | WS_VISIBLE;
    switch (control.nKind) {
        case DialogControlKind::Static:
            return MakeTitled<CStatic>(control, rc, dialog, dwStyle);
        case DialogControlKind::Button:
            return MakeTitled<CButton>(control, rc, dialog, dwStyle);
        case DialogControlKind::DefaultButton:
            return MakeTitled<CButton>(control, rc, dialog, dwStyle | BS_DEFPUSHBUTTON);
        case DialogControlKind::Edit:
            return MakeBox<CEdit>(control, rc, dialog, dwStyle);
        case DialogControlKind::ComboBox:
            return MakeBox<CComboBox>(control, rc, dialog, dwStyle);
        case DialogControlKind::ListBox:
            return MakeBox<CListBox>(control, rc, dialog, dwStyle);
        case DialogControlKind::Slider:
            return MakeBox<CSliderCtrl>(control, rc, dialog, dwStyle);
    }
    return nullptr;
}

}  // namespace

bool MakeDialogFont(const DialogTemplate& dialogTemplate, QFont& font) {
    CFont named;
    if (!named.CreatePointFont(dialogTemplate.nPointSize * TENTHS, dialogTemplate.szFace)) {
        return false;
    }
    font = ToToolkitFont(named);
    return true;
}

RECT MeasureDialog(const DialogTemplate& dialogTemplate) {
    QFont font;
    if (!MakeDialogFont(dialogTemplate, font)) {
        return {};
    }
    return CDialogUnits(font).Rect(0, 0, dialogTemplate.cx, dialogTemplate.cy);
}

DialogControls MakeControls(const DialogTemplate& dialogTemplate, CWnd& dialog) {
    QWidget& widget = *CWndState::Of(dialog).pWidget;
    QFont font;
    if (!MakeDialogFont(dialogTemplate, font)) {
        return {};
    }
    widget.setFont(font);
    const CDialogUnits units(widget.font());
    DialogControls controls;
    for (const DialogControl& control : dialogTemplate.controls) {
        std::unique_ptr<CWnd> pControl =
            MakeControl(control, units.Rect(control.x, control.y, control.cx, control.cy), dialog);
        if (!pControl) {
            return {};
        }
        controls.push_back(std::move(pControl));
    }
    return controls;
}
