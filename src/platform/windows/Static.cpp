#include "platform/windows/Static.h"

#include "platform/windows/WndState.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <bit>

namespace {

// Shows its text, or, once something has been drawn into its window's picture, the picture.
class CLabelWidget final : public QLabel {
public:
    CLabelWidget(std::shared_ptr<CWndLink> pLink, DWORD dwStyle) : m_pLink(std::move(pLink)) {
        setTextFormat(Qt::PlainText);
        setAlignment(Qt::AlignLeft | Qt::AlignTop);
        setWordWrap(true);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        const bool bBorder = (dwStyle & WS_BORDER) != 0;
        if ((dwStyle & SS_SUNKEN) != 0) {
            // With a border it is two pixels deep.
            setFrameStyle(static_cast<int>(bBorder ? WinPanel : Panel) | static_cast<int>(Sunken));
        } else if (bBorder) {
            setFrameStyle(static_cast<int>(Box) | static_cast<int>(Plain));
        }
    }

protected:
    void paintEvent(QPaintEvent* pEvent) override {
        CWndState* const pState = m_pLink->StateFor(this);
        if (pState == nullptr || !pState->bShowsPicture) {
            QLabel::paintEvent(pEvent);
            return;
        }
        QPainter painter(this);
        drawFrame(&painter);
        const std::lock_guard lock(pState->picture.GetLock());
        pState->picture.TakeDirty();
        const CSurface& surface = pState->picture.GetSurface();
        if (!surface.IsEmpty()) {
            const QImage image(std::bit_cast<const uchar*>(surface.GetRow(0)), surface.GetWidth(),
                               surface.GetHeight(), QImage::Format_RGB32);
            painter.drawImage(contentsRect().topLeft(), image);
        }
    }

private:
    const std::shared_ptr<CWndLink> m_pLink;
};

}  // namespace

bool CStatic::Create(const CString& strText, DWORD dwStyle, const RECT& rc, CWnd* pParent, int nId) {
    if (!HasToolkit()) {
        return false;
    }
    CWndState& state = CWndState::Of(*this);
    state.bLabel = true;
    state.bShowsPicture = false;
    return state.Attach(std::make_unique<CLabelWidget>(state.pLink, dwStyle),
                        {strText, dwStyle | WS_CHILD, rc, pParent, nId});
}
