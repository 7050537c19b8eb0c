#include "platform/windows/Edit.h"

#include "platform/windows/OneLine.h"
#include "platform/windows/WndState.h"

#include <QtGui/QValidator>
#include <QtWidgets/QLineEdit>
#include <limits>

namespace {

// What is pasted may have come with its line ends.
class CLineEnds final : public QValidator {
public:
    State validate(QString& text, int& /*nCursor*/) const override {
        text = OneLine(text);
        return Acceptable;
    }
};

class CLineEdit final : public QLineEdit {
public:
    CLineEdit() { setValidator(&m_lineEnds); }

private:
    CLineEnds m_lineEnds;
};

}  // namespace

bool CEdit::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    auto pEdit = std::make_unique<CLineEdit>();
    pEdit->setMaxLength(std::numeric_limits<int>::max());
    // By the user, by a screen reader in the user's place; what SetWindowText changes it tells itself.
    QObject::connect(pEdit.get(), &QLineEdit::textChanged, pEdit.get(),
                     [pLink = state.pLink, pWidget = pEdit.get()] {
                         if (CWndState* const pState = pLink->StateFor(pWidget)) {
                             pState->NotifyParent(EN_CHANGE);
                         }
                     });
    return state.Attach(std::move(pEdit), {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}
