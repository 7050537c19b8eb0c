#include "platform/drawing/Bitmap.h"

#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QImageReader>
#include <algorithm>
#include <exception>

bool CBitmap::LoadFile(const CString& strFile) {
    DeleteObject();
    try {
        QFile file(QString::fromStdString(strFile));
        if (!file.open(QIODevice::ReadOnly)) {
            return false;
        }
        QImageReader reader(&file, "bmp");
        reader.setAutoDetectImageFormat(false);
        const QImage image = reader.read().convertToFormat(QImage::Format_RGB32);
        if (image.isNull() || !m_surface.Create(image.width(), image.height(), false)) {
            return false;
        }
        for (int y = 0; y < image.height(); ++y) {
            const auto* const pRow = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            std::transform(pRow, pRow + image.width(), m_surface.GetRow(y),
                           [](QRgb rgb) { return g_pixelBlack | rgb; });
        }
        return true;
    } catch (const std::exception&) {
        DeleteObject();
        return false;
    }
}
