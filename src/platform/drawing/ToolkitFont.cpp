#include "platform/drawing/ToolkitFont.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QFont>

QFont ToToolkitFont(const CFont& font) {
    QStringList families;
    for (const CString& strFamily : font.GetFamilies()) {
        families.append(QString::fromStdString(strFamily));
    }
    QFont result;
    result.setFamilies(families);
    result.setPixelSize(font.GetPixelSize());
    return result;
}
