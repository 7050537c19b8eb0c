#include "platform/drawing/Dc.h"
#include "platform/drawing/SysColors.h"
#include "platform/windows/WndState.h"

#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QWidget>
#include <algorithm>
#include <cstring>

namespace {

// A window of fixed size that shows the picture of its CWnd. It keeps a copy of what it has been given last,
// so that it can show any part of it anew at any time.
class CFrameWidget final : public QWidget {
public:
    explicit CFrameWidget(std::shared_ptr<CWndLink> pLink)
        : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                               Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                               Qt::WindowCloseButtonHint),
          m_pLink(std::move(pLink)) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setContextMenuPolicy(Qt::PreventContextMenu);
        m_refresh.setTimerType(Qt::PreciseTimer);
        connect(&m_refresh, &QTimer::timeout, this, [this] { Refresh(); });
    }

    // Takes what is marked, under the picture's lock, for the length of a copy.
    void Flush() {
        CWndState* const pState = m_pLink->StateFor(this);
        if (pState == nullptr) {
            return;
        }
        CPicture::Dirty dirty;
        {
            const std::lock_guard lock(pState->picture.GetLock());
            dirty = pState->picture.TakeDirty();
            const CSurface& surface = pState->picture.GetSurface();
            const QSize size(surface.GetWidth(), surface.GetHeight());
            if (m_front.size() != size) {
                m_front = QImage(size, QImage::Format_RGB32);
            }
            for (std::size_t i = 0; i < dirty.nCount; ++i) {
                CopyFrom(surface, dirty.rects[i]);
            }
        }
        for (std::size_t i = 0; i < dirty.nCount; ++i) {
            const RECT& rc = dirty.rects[i];
            update(rc.left, rc.top, rc.Width(), rc.Height());
        }
    }

protected:
    void paintEvent(QPaintEvent* pEvent) override {
        QPainter painter(this);
        for (const QRect& rect : pEvent->region()) {
            const QRect covered = rect & m_front.rect();
            painter.drawImage(covered, m_front, covered);
            if (covered != rect) {
                // A desktop that makes windows larger than they ask for shows the face colour there.
                const QRegion rest = QRegion(rect) - covered;
                for (const QRect& bare : rest) {
                    painter.fillRect(bare, palette().window());
                }
            }
        }
    }
    void showEvent(QShowEvent* pEvent) override {
        QWidget::showEvent(pEvent);
        RunRefresh();
    }
    void hideEvent(QHideEvent* pEvent) override {
        QWidget::hideEvent(pEvent);
        m_refresh.stop();
    }
    void changeEvent(QEvent* pEvent) override {
        QWidget::changeEvent(pEvent);
        if (pEvent->type() == QEvent::WindowStateChange) {
            RunRefresh();
        } else if (pEvent->type() == QEvent::PaletteChange) {
            OnPaletteChange();
        }
    }

private:
    void RunRefresh() {
        if (!isVisible() || isMinimized()) {
            m_refresh.stop();
            return;
        }
        constexpr double dSlowest = 24.0;
        constexpr double dFastest = 240.0;
        const double dRate = screen() != nullptr ? screen()->refreshRate() : 0.0;
        m_refresh.start(static_cast<int>(1000.0 / std::clamp(dRate, dSlowest, dFastest)));
    }

    void Refresh() {
        CWndState* pState = m_pLink->StateFor(this);
        if (pState == nullptr) {
            return;
        }
        pState->ApplyPendingText();
        for (const CWnd* const pChild : pState->children) {
            CWndState::Of(*pChild).ApplyPendingText();
        }
        pState->SendDuePaint();
        Flush();
    }

    void OnPaletteChange() {
        ReadSystemColors(palette());
        if (CWndState* const pState = m_pLink->StateFor(this)) {
            pState->wnd.InvalidateRect(nullptr, true);
        }
    }

    void CopyFrom(const CSurface& surface, const RECT& rc) {
        for (int y = rc.top; y < rc.bottom; ++y) {
            std::memcpy(m_front.scanLine(y) + static_cast<std::size_t>(rc.left) * sizeof(Pixel),
                        surface.GetRow(y) + rc.left, static_cast<std::size_t>(rc.Width()) * sizeof(Pixel));
        }
    }

    const std::shared_ptr<CWndLink> m_pLink;
    QImage m_front;
    QTimer m_refresh;
};

}  // namespace

std::unique_ptr<QWidget> MakeFrameWidget(CWndState& state) {
    return std::make_unique<CFrameWidget>(state.pLink);
}

void FlushPicture(CWndState& state) {
    if (auto* const pFrame = dynamic_cast<CFrameWidget*>(state.pWidget.get())) {
        pFrame->Flush();
    }
}

void CWnd::UpdateWindow() {
    if (IsWindowVisible()) {
        m_pState->SendDuePaint();
        FlushPicture(*m_pState);
    }
}

void CWnd::InvalidateRect(const RECT* prc, bool bErase) {
    CWndState& state = *m_pState;
    state.bPaintDue = true;
    const RECT rc = prc != nullptr ? *prc : RECT{0, 0, state.nWidth, state.nHeight};
    if (state.pWidget && (state.bDialog || state.bLabel)) {
        state.pWidget->update();
    }
    const std::lock_guard lock(state.picture.GetLock());
    if (!bErase) {
        state.picture.MarkDirty(rc);
        return;
    }
    CDC dc;
    dc.AttachPicture(&state.picture);
    dc.FillSolidRect(rc, GetSysColor(COLOR_BTNFACE));
}

CPicture& CWnd::GetPicture() const {
    return m_pState->picture;
}

std::mutex& CWnd::GetPictureLock() const {
    return m_pState->picture.GetLock();
}
