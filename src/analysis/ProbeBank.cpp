#include "analysis/ProbeBank.h"

#include "platform/signal/VectorClones.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t LANES = CProbeBank::LANES;
static_assert(LANES == VECTOR_LANES);
using Floats = FloatLanes;
using Doubles [[gnu::vector_size(LANES * sizeof(double))]] = double;
using Ints [[gnu::vector_size(LANES * sizeof(std::int32_t))]] = std::int32_t;
using Bits [[gnu::vector_size(LANES * sizeof(std::uint32_t))]] = std::uint32_t;

// A quotient or product of two floats is good to this part of itself, and more than so.
constexpr float CLOSE = 4.0e-7F;

constexpr std::int32_t LAST_LOW_HARMONIC = 5;
constexpr double LEAST_LOW_PART = 0.25;
// Exactly half suffices: two harmonics alone are a note.
constexpr double LEAST_ADJACENT_PART = 0.5;

// Harmonics whose divisors beyond 5 are known; any above counts as a multiple of them all.
constexpr int LISTED = 64;
constexpr int HALF = 32;

// number * THIRD >> THIRD_BITS is number / 3, cut, for harmonics up to the highest; the fifth likewise.
constexpr int THIRD = 43691;
constexpr int THIRD_BITS = 17;
constexpr int FIFTH = 52429;
constexpr int FIFTH_BITS = 18;
constexpr float HIGHEST_HARMONIC = 40000.0F;

}  // namespace

void CProbeBank::CBands::Set(int nLane, float fFrequency, float fBandRatio) {
    const auto lane = static_cast<std::size_t>(nLane);
    m_afLow[lane] = static_cast<float>(static_cast<double>(fFrequency) * fBandRatio);
    m_afReciprocal[lane] = static_cast<float>(fBandRatio / static_cast<double>(fFrequency));
}

void CProbeBank::Prepare(std::span<const int> primes, std::span<const float> shares) {
    m_nOthersBelow32 = 0;
    m_nOthersBelow64 = 0;
    for (std::size_t q = 3; q < primes.size(); ++q) {
        for (int h = primes[q]; h < LISTED; h += primes[q]) {
            (h < HALF ? m_nOthersBelow32 : m_nOthersBelow64) |= 1U << (h % HALF);
        }
    }
    const auto share = [shares](std::size_t q) { return q < shares.size() ? shares[q] : 1.0F; };
    m_fTwoShare = share(0);
    m_fThreeShare = share(1);
    m_fFiveShare = share(2);
    m_fOtherShare = shares.size() > 3 ? *std::min_element(shares.begin() + 3, shares.end()) : 1.0F;
}

FRETVANE_VECTOR_CLONES
CProbeBank::Verdicts CProbeBank::Judge(const CBands& bands, const float* pfFrequency,
                                       const float* pfAmplitude, int nPeaks) const {
    Floats low;
    Floats reciprocal;
    std::memcpy(&low, bands.m_afLow.data(), sizeof low);
    std::memcpy(&reciprocal, bands.m_afReciprocal.data(), sizeof reciprocal);

    const Floats none = {};
    Ints last = Ints{} - 1;   // the harmonic whose slot is being filled; the first follows nobody
    Floats strongest = none;  // its amplitude
    Ints hasBefore = {};      // whether the slot before holds the harmonic before
    Ints unsure = {};
    float fHighest = 0.0F;
    Floats score = none;
    Floats adjacent = none;
    Floats lowest = none;
    Floats evens = none;
    Floats threes = none;
    Floats fives = none;
    Floats others = none;
    for (int i = 0; i <= nPeaks; ++i) {
        // After the last peak one more, new to all, closes the slots.
        const bool bClosing = i == nPeaks;
        const float f = bClosing ? 0.0F : pfFrequency[i];
        const float a = bClosing ? 0.0F : pfAmplitude[i];
        fHighest = std::max(fHighest, f);
        const Floats quotient = reciprocal * f;
        const Ints whole = __builtin_convertvector(quotient, Ints);
        const Floats rest = quotient - __builtin_convertvector(whole, Floats);
        const Floats toNext = 1.0F - rest;
        const Ints number = bClosing ? Ints{} : whole + 1;
        const Floats edge = __builtin_convertvector(number, Floats) * low;
        unsure |= ((rest < toNext ? rest : toNext) < quotient * CLOSE) |
                  ((edge > f * (1.0F - CLOSE)) & (edge < f * (1.0F + CLOSE)));
        const Ints match = bClosing ? Ints{} - 1 : (edge < f);
        const Ints isNew = match & (number != last);
        const Ints follows = number == last + 1;

        const Floats closed = isNew ? strongest : none;
        const Bits shift = reinterpret_cast<Bits>(last & (HALF - 1));
        const Bits other32 = last < HALF ? Bits{} + m_nOthersBelow32 : Bits{} + m_nOthersBelow64;
        const Ints isOther = (((other32 >> shift) & 1U) != 0U) | (last >= LISTED);
        score += closed;
        adjacent += hasBefore ? closed : none;
        adjacent += follows ? closed : none;
        lowest += last <= LAST_LOW_HARMONIC ? closed : none;
        evens += (last & 1) == 0 ? closed : none;
        threes += last == 3 * ((last * THIRD) >> THIRD_BITS) ? closed : none;
        fives += last == 5 * ((last * FIFTH) >> FIFTH_BITS) ? closed : none;
        others += isOther ? closed : none;

        hasBefore = isNew ? follows : hasBefore;
        const Floats here = match ? none + a : none;
        strongest = isNew ? here : (strongest < here ? here : strongest);
        last = isNew ? number : last;
    }
    unsure |= reciprocal * fHighest > HIGHEST_HARMONIC;

    // Products of two floats are exact in double precision.
    const Doubles score64 = __builtin_convertvector(score, Doubles);
    const Doubles evens64 = __builtin_convertvector(evens, Doubles);
    const Doubles threes64 = __builtin_convertvector(threes, Doubles);
    const Doubles fives64 = __builtin_convertvector(fives, Doubles);
    const Doubles others64 = __builtin_convertvector(others, Doubles);
    const Doubles lowest64 = __builtin_convertvector(lowest, Doubles);
    const Doubles adjacent64 = __builtin_convertvector(adjacent * 0.5F, Doubles);
    const Ints twoWins = __builtin_convertvector(score64 * m_fTwoShare < evens64, Ints);
    const Ints threeWins = __builtin_convertvector(score64 * m_fThreeShare < threes64, Ints);
    const Ints fiveWins = __builtin_convertvector(score64 * m_fFiveShare < fives64, Ints);
    // Together they hold at least what each of them holds.
    const Ints otherMayWin = __builtin_convertvector(score64 * m_fOtherShare < others64, Ints);
    const Ints fundamental = __builtin_convertvector(
        (LEAST_ADJACENT_PART * score64 <= adjacent64) & (lowest64 > LEAST_LOW_PART * score64), Ints);
    const Ints isUnsure = unsure | otherMayWin | (twoWins & threeWins) | ((twoWins | threeWins) & fiveWins);
    const Ints verdict = (twoWins & LIFTED_BY_TWO) | (threeWins & LIFTED_BY_THREE) |
                         (fiveWins & LIFTED_BY_FIVE) | (fundamental & FUNDAMENTAL) | (isUnsure & UNSURE);

    Verdicts verdicts;
    std::memcpy(verdicts.afScore.data(), &score, sizeof score);
    std::memcpy(verdicts.anVerdict.data(), &verdict, sizeof verdict);
    return verdicts;
}
