#include "platform/windows/DialogUnits.h"

#include <QtGui/QFontMetrics>
#include <cmath>

namespace {

constexpr int g_nHorizontalUnits = 4;
constexpr int g_nVerticalUnits = 8;

int Scale(int nUnits, int nBase, int nDivisor) {
    return (nUnits * nBase + nDivisor / 2) / nDivisor;
}

double AverageWidth(const QFontMetrics& metrics) {
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return static_cast<double>(metrics.horizontalAdvance(alphabet)) / static_cast<double>(alphabet.size());
}

}  // namespace

CDialogUnits::CDialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    m_fWidth = AverageWidth(metrics);
    m_nWidth = static_cast<int>(std::lround(m_fWidth));
    m_nHeight = metrics.ascent() + metrics.descent();
}

double CDialogUnits::ExactX(int nUnits) const {
    return nUnits * m_fWidth / g_nHorizontalUnits;
}

int CDialogUnits::X(int nUnits) const {
    return Scale(nUnits, m_nWidth, g_nHorizontalUnits);
}

int CDialogUnits::Y(int nUnits) const {
    return Scale(nUnits, m_nHeight, g_nVerticalUnits);
}
