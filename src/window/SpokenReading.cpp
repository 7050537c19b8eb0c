#include "window/SpokenReading.h"

#include "platform/base/String.h"

#include <cstdlib>

namespace {

constexpr std::uint32_t HEARD = 1U << 31U;
constexpr std::uint32_t HOLDING = 1U << 24U;
constexpr unsigned OCTAVE_SHIFT = 16;
constexpr unsigned CENTS_SHIFT = 8;
constexpr int CENTS_ZERO = 128;

constexpr std::uint32_t Byte(int nValue) {
    return static_cast<std::uint32_t>(nValue) & 0xFFU;
}

}  // namespace

void CSpokenReading::Publish(const NoteReading& reading, bool bHolding) {
    const bool bHeard = reading.frequency > 0.0F;
    m_nWord.store((bHeard ? HEARD : 0) | (bHolding ? HOLDING : 0) | Byte(reading.octave) << OCTAVE_SHIFT |
                      Byte(static_cast<int>(reading.cents) + CENTS_ZERO) << CENTS_SHIFT |
                      Byte(reading.semitone),
                  std::memory_order_relaxed);
}

CString CSpokenReading::GetText() const {
    const std::uint32_t nWord = m_nWord.load(std::memory_order_relaxed);
    const std::uint32_t nSemitone = nWord & 0xFFU;
    if ((nWord & HEARD) == 0 || nSemitone >= SEMITONES) {
        return {};
    }
    const int nCents = static_cast<int>(nWord >> CENTS_SHIFT & 0xFFU) - CENTS_ZERO;
    const CString strCents =
        nCents == 0 ? CString("in tune")
                    : FormatText("%d %s %s", std::abs(nCents), std::abs(nCents) == 1 ? "cent" : "cents",
                                 nCents > 0 ? "sharp" : "flat");
    return FormatText("%s%d, %s%s", SEMITONE_NAMES[nSemitone],
                      static_cast<int>(nWord >> OCTAVE_SHIFT & 0xFFU), strCents.c_str(),
                      (nWord & HOLDING) != 0 ? ", held" : "");
}
