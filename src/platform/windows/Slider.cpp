#include "platform/windows/Slider.h"

#include "platform/windows/WndState.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyleOptionSlider>
#include <algorithm>

namespace {

constexpr int PAGES = 5;

class CSliderWidget final : public QSlider {
public:
    explicit CSliderWidget(std::shared_ptr<CWndLink> pLink)
        : QSlider(Qt::Horizontal), m_pLink(std::move(pLink)) {
        setTickPosition(QSlider::TicksBelow);
        setTickInterval(1);
    }

    void SetRange(int nMin, int nMax) {
        setRange(nMin, nMax);
        setPageStep(std::max((nMax - nMin) / PAGES, 1));
    }

protected:
    // The ends of the travel lie inside the control, so that what stands under them has room.
    void initStyleOption(QStyleOptionSlider* pOption) const override {
        QSlider::initStyleOption(pOption);
        const int nInset = style()->pixelMetric(QStyle::PM_SliderLength, pOption, this);
        pOption->rect.adjust(nInset, 0, -nInset, 0);
    }
    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        const bool bLeft = pEvent->button() == Qt::LeftButton;
        QSlider::mouseReleaseEvent(pEvent);
        CWndState* const pState = m_pLink->StateFor(this);
        if (bLeft && pState != nullptr) {
            pState->NotifyParentByHeader(NM_RELEASEDCAPTURE);
        }
    }

private:
    const std::shared_ptr<CWndLink> m_pLink;
};

CSliderWidget* SliderOf(const CWnd& wnd) {
    return dynamic_cast<CSliderWidget*>(CWndState::Of(wnd).pWidget.get());
}

}  // namespace

bool CSliderCtrl::Create(DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    return state.Attach(std::make_unique<CSliderWidget>(state.pLink),
                        {{}, dwStyle | WS_CHILD, rc, pParent, nId});
}

LRESULT CSliderCtrl::DefWindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    CSliderWidget* const pSlider = SliderOf(*this);
    if (pSlider == nullptr) {
        return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
    switch (nMessage) {
        case TBM_GETPOS:
            return pSlider->value();
        case TBM_SETPOS:
            pSlider->setValue(static_cast<int>(lParam));
            return 0;
        case TBM_SETRANGE: {
            const POINT ptEnds = PointOfParam(lParam);
            pSlider->SetRange(ptEnds.x, ptEnds.y);
            return 0;
        }
        case TBM_SETTICFREQ:
            pSlider->setTickInterval(static_cast<int>(wParam));
            return 0;
        default:
            return CWnd::DefWindowProc(nMessage, wParam, lParam);
    }
}

void CSliderCtrl::SetRange(int nMin, int nMax, bool bRedraw) {
    SendMessage(TBM_SETRANGE, bRedraw ? 1 : 0, MakePointParam({nMin, nMax}));
}

void CSliderCtrl::SetTicFreq(int nFreq) {
    SendMessage(TBM_SETTICFREQ, static_cast<WPARAM>(nFreq));
}

void CSliderCtrl::SetPos(int nPos) {
    SendMessage(TBM_SETPOS, 1, nPos);
}

int CSliderCtrl::GetPos() {
    return static_cast<int>(SendMessage(TBM_GETPOS));
}
