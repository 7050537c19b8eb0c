#include "analysis/ProbeBank.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t LANES = 8;
using Floats [[gnu::vector_size(LANES * sizeof(float))]] = float;
using Ints [[gnu::vector_size(LANES * sizeof(std::int32_t))]] = std::int32_t;
using Bits [[gnu::vector_size(LANES * sizeof(std::uint32_t))]] = std::uint32_t;

// A quotient or product of two floats is good to this part of itself, and more than so.
constexpr float CLOSE = 4.0e-7F;
// Sums of some tens of floats, in whatever order, agree to better than this part.
constexpr float SUM_MARGIN = 1.0e-5F;

constexpr float LAST_LOW_HARMONIC = 5.0F;
constexpr float LEAST_LOW_PART = 0.25F;
constexpr float LEAST_ADJACENT_PART = 0.5F;

// Harmonics whose divisors beyond 2 and 3 are known; any above counts as a multiple of them all.
constexpr int LISTED = 64;
constexpr int HALF = 32;

// number * THIRD >> THIRD_BITS is number / 3, cut, up to 49151.
constexpr int THIRD = 43691;
constexpr int THIRD_BITS = 17;

}  // namespace

void CProbeBank::Prepare(std::span<const float> frequencies, float fBandRatio, std::span<const int> primes,
                         std::span<const float> shares) {
    m_nProbes = static_cast<int>(frequencies.size());
    // A lane without a probe has its bands above everything.
    m_afLow.fill(3.0e38F);
    m_afReciprocal.fill(0.0F);
    for (std::size_t t = 0; t < frequencies.size(); ++t) {
        m_afLow[t] = static_cast<float>(static_cast<double>(frequencies[t]) * fBandRatio);
        m_afReciprocal[t] = static_cast<float>(fBandRatio / static_cast<double>(frequencies[t]));
    }
    m_nOthersBelow32 = 0;
    m_nOthersBelow64 = 0;
    for (std::size_t q = 2; q < primes.size(); ++q) {
        for (int h = primes[q]; h < LISTED; h += primes[q]) {
            (h < HALF ? m_nOthersBelow32 : m_nOthersBelow64) |= 1U << (h % HALF);
        }
    }
    const auto share = [shares](std::size_t q) { return q < shares.size() ? shares[q] : 1.0F; };
    m_fTwoShare = share(0);
    m_fThreeShare = share(1);
    m_fOtherShare = shares.size() > 2 ? *std::min_element(shares.begin() + 2, shares.end()) : 1.0F;
}

std::uint32_t CProbeBank::FindHopeful(const float* pfFrequency, const float* pfAmplitude, int nPeaks) const {
    std::uint32_t nHopeful = 0;
    for (int nGroup = 0; nGroup * LANES < m_nProbes; ++nGroup) {
        nHopeful |= FindHopefulInGroup(nGroup, pfFrequency, pfAmplitude, nPeaks) << (nGroup * LANES);
    }
    return nHopeful;
}

FRETVANE_VECTOR_CLONES
std::uint32_t CProbeBank::FindHopefulInGroup(int nGroup, const float* pfFrequency, const float* pfAmplitude,
                                             int nPeaks) const {
    const std::size_t nFirst = static_cast<std::size_t>(nGroup) * LANES;
    Floats low;
    Floats reciprocal;
    std::memcpy(&low, &m_afLow[nFirst], sizeof low);
    std::memcpy(&reciprocal, &m_afReciprocal[nFirst], sizeof reciprocal);

    const Floats none = {};
    Floats last = none;       // the harmonic whose slot is being filled
    Floats strongest = none;  // its amplitude
    Ints hasBefore = {};      // whether the slot before holds the harmonic before
    Ints even = {};           // what the harmonic is a multiple of
    Ints three = {};
    Ints other = {};
    Ints unsure = {};
    Floats score = none;
    Floats adjacent = none;
    Floats lowest = none;
    Floats evens = none;
    Floats threes = none;
    Floats others = none;
    for (int i = 0; i <= nPeaks; ++i) {
        // After the last peak one more, in nobody's reach but new to all, closes the slots.
        const bool bClosing = i == nPeaks;
        const float f = bClosing ? 0.0F : pfFrequency[i];
        const float a = bClosing ? 0.0F : pfAmplitude[i];
        const Floats quotient = reciprocal * f;
        const Ints whole = __builtin_convertvector(quotient, Ints);
        const Floats below = __builtin_convertvector(whole, Floats);
        const Floats rest = quotient - below;
        const Floats close = quotient * CLOSE;
        const Floats harmonic = below + 1.0F;
        const Floats edge = harmonic * low;
        unsure |= (rest < close) | (1.0F - rest < close) |
                  ((edge > f * (1.0F - CLOSE)) & (edge < f * (1.0F + CLOSE)));
        const Ints match = bClosing ? Ints{} - 1 : (edge < f);
        const Ints isNew = match & (harmonic != last);
        const Ints follows = harmonic == last + 1.0F;

        const Floats closed = isNew ? strongest : none;
        score += closed;
        adjacent += hasBefore ? closed : none;
        adjacent += follows ? closed : none;
        lowest += last <= LAST_LOW_HARMONIC ? closed : none;
        evens += even ? closed : none;
        threes += three ? closed : none;
        others += other ? closed : none;

        const Ints number = whole + 1;
        const Bits shift = reinterpret_cast<Bits>(number & (HALF - 1));
        const Ints inFirst = number < HALF;
        const Bits other32 = inFirst ? Bits{} + m_nOthersBelow32 : Bits{} + m_nOthersBelow64;
        const Ints beyond = number >= LISTED;
        hasBefore = isNew ? follows : hasBefore;
        even = isNew ? (number & 1) == 0 : even;
        three = isNew ? number == 3 * ((number * THIRD) >> THIRD_BITS) : three;
        other = isNew ? (((other32 >> shift) & 1U) != 0U) | beyond : other;
        const Floats here = match ? none + a : none;
        strongest = isNew ? here : (strongest < here ? here : strongest);
        last = isNew ? harmonic : last;
    }
    const Floats least = score * (1.0F - SUM_MARGIN);
    const Ints lifted =
        (evens > m_fTwoShare * least) | (threes > m_fThreeShare * least) | (others > m_fOtherShare * least);
    const Ints accepted =
        (0.5F * adjacent >= LEAST_ADJACENT_PART * least) & (lowest > LEAST_LOW_PART * least);
    const Ints hopeful = (score > none) & (lifted | accepted | unsure);
    std::uint32_t nHopeful = 0;
    for (std::size_t t = 0; t < LANES; ++t) {
        nHopeful |= static_cast<std::uint32_t>(hopeful[t] != 0) << t;
    }
    return nHopeful;
}
