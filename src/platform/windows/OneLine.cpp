#include "platform/windows/OneLine.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QString>

QString OneLine(const QString& text) {
    static const QRegularExpression lineEnd(QStringLiteral("\\R"));
    return QString(text).replace(lineEnd, QStringLiteral(" "));
}
