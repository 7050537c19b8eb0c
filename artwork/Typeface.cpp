#include "artwork/Typeface.h"

#include <QtGui/QFontInfo>
#include <QtGui/QTransform>

namespace {

constexpr int OUTLINE_SIZE = 1000;  // large, so that no grid rounds the curves

QFont Face(QFont::Weight weight) {
    QFont font(QStringLiteral("Inter"));
    font.setWeight(weight);
    font.setPixelSize(OUTLINE_SIZE);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoFontMerging);
    return font;
}

QPainterPath Outline(const QString& strText, QFont::Weight weight) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addText(0.0, 0.0, Face(weight), strText);
    return path;
}

}  // namespace

bool HasTypeface() {
    return QFontInfo(Face(QFont::Bold)).family() == QStringLiteral("Inter");
}

QPainterPath TextOutline(const QString& strText, QFont::Weight weight, double dCapHeight) {
    const double dScale = dCapHeight / Outline(QStringLiteral("H"), weight).boundingRect().height();
    const QPainterPath path = Outline(strText, weight);
    return QTransform::fromScale(dScale, dScale).map(path.translated(-path.boundingRect().left(), 0.0));
}
