#include "platform/windows/DialogUnits.h"

#include <QtGui/QFontMetrics>

namespace {

constexpr int g_nHorizontalUnits = 4;
constexpr int g_nVerticalUnits = 8;

int Scale(int nUnits, int nBase, int nDivisor) {
    return (nUnits * nBase + nDivisor / 2) / nDivisor;
}

int AverageWidth(const QFontMetrics& metrics) {
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const int nHalf = static_cast<int>(alphabet.size()) / 2;
    return (metrics.horizontalAdvance(alphabet) / nHalf + 1) / 2;
}

}  // namespace

CDialogUnits::CDialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    m_nWidth = AverageWidth(metrics);
    m_nHeight = metrics.ascent() + metrics.descent();
}

int CDialogUnits::X(int nUnits) const {
    return Scale(nUnits, m_nWidth, g_nHorizontalUnits);
}

int CDialogUnits::Y(int nUnits) const {
    return Scale(nUnits, m_nHeight, g_nVerticalUnits);
}
