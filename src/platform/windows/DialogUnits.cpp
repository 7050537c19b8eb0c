#include "platform/windows/DialogUnits.h"

#include <QtGui/QFontMetrics>
#include <cmath>

namespace {

constexpr int HORIZONTAL_UNITS = 4;
constexpr int VERTICAL_UNITS = 8;

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
    m_dWidth = AverageWidth(metrics);
    m_nWidth = static_cast<int>(std::lround(m_dWidth));
    m_nHeight = metrics.ascent() + metrics.descent();
}

double CDialogUnits::ExactX(int nUnits) const {
    return nUnits * m_dWidth / HORIZONTAL_UNITS;
}

int CDialogUnits::X(int nUnits) const {
    return Scale(nUnits, m_nWidth, HORIZONTAL_UNITS);
}

int CDialogUnits::Y(int nUnits) const {
    return Scale(nUnits, m_nHeight, VERTICAL_UNITS);
}
