#pragma once

#include <array>
#include <cstdint>
#include <span>

// Looks at all first probes of the harmonic sieve side by side, in the lanes of vector registers, and tells
// which of them can come to nothing: no prime can lift them and the test of a fundamental refuses them. Most
// probes of most blocks are of this kind, and need not go through the sieve one by one.
//
// It errs to one side only. Where a comparison is too close for single precision, a probe counts as hopeful.
// Nothing allocates.
class CProbeBank {
public:
    static constexpr int MAX_PROBES = 32;

    // The probes' frequencies (Hz), at most MAX_PROBES; fBandRatio from a harmonic to the lower edge of its
    // band; the primes, 2 first, with the shares of the score at which they lift.
    void Prepare(std::span<const float> frequencies, float fBandRatio, std::span<const int> primes,
                 std::span<const float> shares);

    // Weighs the nPeaks peaks, in order of rising frequency. The result has bit t set where probe t is
    // hopeful.
    std::uint32_t FindHopeful(const float* pfFrequency, const float* pfAmplitude, int nPeaks) const;

private:
    static constexpr int LANES = 8;
    using Lanes = std::array<float, MAX_PROBES>;

    std::uint32_t FindHopefulInGroup(int nGroup, const float* pfFrequency, const float* pfAmplitude,
                                     int nPeaks) const;

    int m_nProbes = 0;
    Lanes m_afLow{};         // lower edges of the first harmonics' bands
    Lanes m_afReciprocal{};  // of the upper edges
    // The multiples of 5 and of any later prime, as bits.
    std::uint32_t m_nOthersBelow32 = 0;
    std::uint32_t m_nOthersBelow64 = 0;
    float m_fTwoShare = 0.0F;
    float m_fThreeShare = 0.0F;
    float m_fOtherShare = 0.0F;
};
