#include "platform/drawing/Dc.h"
#include "platform/drawing/Font.h"
#include "platform/drawing/Picture.h"
#include "platform/drawing/ToolkitFont.h"

#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtGui/QFontMetrics>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <exception>

namespace {

QColor ToQtColor(COLORREF clr) {
    return {GetRed(clr), GetGreen(clr), GetBlue(clr)};
}

// As it is drawn into a picture.
QFont ToPictureFont(const CFont& font) {
    QFont result = ToToolkitFont(font);
    // Grey edges only: coloured ones would look wrong on any ground but the one they were made for.
    result.setStyleStrategy(QFont::NoSubpixelAntialias);
    // The same letters on screens of every density; without a word the toolkit hints only where it does not
    // scale.
    result.setHintingPreference(QFont::PreferFullHinting);
    return result;
}

// Whether text can be drawn or measured at all: fonts need the toolkit's application object.
bool CanUse(const CFont* pFont) {
    return pFont != nullptr && pFont->GetPixelSize() > 0 &&
           qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

}  // namespace

bool CDC::GetTextMetrics(TEXTMETRIC* pMetrics) const {
    *pMetrics = {};
    if (!CanUse(m_pFont)) {
        return false;
    }
    try {
        const QFontMetrics metrics(ToPictureFont(*m_pFont));
        *pMetrics = {metrics.ascent() + metrics.descent(), metrics.ascent(), metrics.descent()};
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

int CDC::DrawText(const CString& strText, const RECT& rc, UINT nFormat) {
    CSurface* const pSurface = GetSurface();
    if (pSurface == nullptr || pSurface->IsEmpty() || pSurface->IsMonochrome() || !CanUse(m_pFont)) {
        return 0;
    }
    const RECT rcClip = pSurface->Clip(rc.left, rc.top, rc.right, rc.bottom);
    try {
        const QFont font = ToPictureFont(*m_pFont);
        const QFontMetrics metrics(font);
        const QString text = QString::fromStdString(strText);
        const int nHeight = metrics.ascent() + metrics.descent();
        if (rcClip.IsEmpty()) {
            return nHeight;
        }
        constexpr UINT nCentred = DT_VCENTER | DT_SINGLELINE;
        const int nTop = (nFormat & nCentred) == nCentred ? rc.top + (rc.Height() - nHeight) / 2 : rc.top;

        QImage image(reinterpret_cast<uchar*>(pSurface->GetRow(0)), pSurface->GetWidth(),
                     pSurface->GetHeight(), pSurface->GetWidth() * static_cast<qsizetype>(sizeof(Pixel)),
                     QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setClipRect(rcClip.left, rcClip.top, rcClip.Width(), rcClip.Height());
        if (m_nBkMode == OPAQUE) {
            painter.fillRect(rc.left, nTop, metrics.horizontalAdvance(text), nHeight, ToQtColor(m_clrBack));
        }
        painter.setFont(font);
        painter.setPen(ToQtColor(m_clrText));
        painter.drawText(rc.left, nTop + metrics.ascent(), text);
        painter.end();
        MarkDirty(rcClip);
        return nHeight;
    } catch (const std::exception&) {
        return 0;
    }
}
