#include "platform/multimedia/StretchedSound.h"

namespace {

// Between b and c, with a before and d behind them.
float Interpolate(float a, float b, float c, float d, float t) {
    return b + 0.5F * t * (c - a + t * (2.0F * a - 5.0F * b + 4.0F * c - d + t * (3.0F * (b - c) + d - a)));
}

}  // namespace

void CStretchedSound::AddTo(std::span<float> stereo, double dRatio) {
    const std::size_t nFrames = stereo.size() / 2;
    if (nFrames == 0) {
        return;
    }
    constexpr std::size_t BEHIND = 3;  // the frame itself and the two that follow
    const double dLast = m_dPosition + dRatio * static_cast<double>(nFrames - 1);
    const std::size_t nNeeded = static_cast<std::size_t>(dLast) + BEHIND;
    if (const std::size_t nHeld = FramesHeld(); nNeeded > nHeld) {
        m_frames.resize(2 * nNeeded);
        m_source(std::span(m_frames).subspan(2 * nHeld));
        m_nAskedFor += nNeeded - nHeld;
    }
    for (std::size_t i = 0; i < nFrames; ++i) {
        const double dPosition = m_dPosition + dRatio * static_cast<double>(i);
        const auto nFrame = static_cast<std::size_t>(dPosition);
        const auto fBehind = static_cast<float>(dPosition - static_cast<double>(nFrame));
        for (std::size_t nSide = 0; nSide < 2; ++nSide) {
            const float* const pFrame = &m_frames[2 * (nFrame - 1) + nSide];
            stereo[2 * i + nSide] += Interpolate(pFrame[0], pFrame[2], pFrame[4], pFrame[6], fBehind);
        }
    }
    m_dPosition += dRatio * static_cast<double>(nFrames);
    const std::size_t nDone = static_cast<std::size_t>(m_dPosition) - 1;
    m_frames.erase(m_frames.begin(), m_frames.begin() + static_cast<std::ptrdiff_t>(2 * nDone));
    m_dPosition -= static_cast<double>(nDone);
}

double CStretchedSound::GetPosition() const {
    return static_cast<double>(m_nAskedFor) - static_cast<double>(FramesHeld()) + m_dPosition;
}
