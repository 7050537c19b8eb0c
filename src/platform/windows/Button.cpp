#include "platform/windows/Button.h"

#include "platform/windows/WndState.h"

#include <QtWidgets/QGroupBox>
#include <QtWidgets/QPushButton>

namespace {

constexpr DWORD TYPE_MASK = 0x0F;

std::unique_ptr<QWidget> MakeGroupBox() {
    auto pGroup = std::make_unique<QGroupBox>();
    pGroup->setAttribute(Qt::WA_TransparentForMouseEvents);
    return pGroup;
}

std::unique_ptr<QWidget> MakePushButton(const std::shared_ptr<CWndLink>& pLink, bool bDefault) {
    auto pButton = std::make_unique<QPushButton>();
    pButton->setDefault(bDefault);
    QObject::connect(pButton.get(), &QAbstractButton::clicked, pButton.get(),
                     [pLink, pWidget = pButton.get()] {
                         if (CWndState* const pState = pLink->StateFor(pWidget)) {
                             pState->NotifyParent(BN_CLICKED);
                         }
                     });
    return pButton;
}

}  // namespace

bool CButton::Create(const CString& strCaption, DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    const DWORD dwType = dwStyle & TYPE_MASK;
    return state.Attach(
        dwType == BS_GROUPBOX ? MakeGroupBox() : MakePushButton(state.pLink, dwType == BS_DEFPUSHBUTTON),
        {strCaption, dwStyle | WS_CHILD, rc, pParent, nId});
}
