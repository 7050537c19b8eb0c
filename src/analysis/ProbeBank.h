#pragma once

#include <array>
#include <cstdint>
#include <span>

// Judges probes of the harmonic sieve side by side, in the lanes of vector registers: each lane goes through
// the peaks as a probe on its own would, in the same order and precision, without filling slots.
//
// Bands and quotients are looked at in single precision only, and the primes beyond 5 only together. Where
// that does not suffice to know what the plain way gives, a verdict says so. Nothing allocates.
class CProbeBank {
public:
    static constexpr int LANES = 8;
    using Lanes = std::array<float, LANES>;

    // The bands of a group of probes. A lane without a probe has them above everything.
    class CBands {
    public:
        CBands() { m_afLow.fill(3.0e38F); }
        // fFrequency: Hz. fBandRatio: from a harmonic to the lower edge of its band.
        void Set(int nLane, float fFrequency, float fBandRatio);

    private:
        friend class CProbeBank;
        Lanes m_afLow;           // lower edges of the first harmonics' bands
        Lanes m_afReciprocal{};  // of the upper edges
    };

    // What a lane comes to, as a sum of these; 0 for nothing. A fundamental that can be lifted as well is one
    // where the lift would lead too high.
    static constexpr std::int32_t LIFTED_BY_TWO = 1;
    static constexpr std::int32_t LIFTED_BY_THREE = 2;
    static constexpr std::int32_t LIFTED_BY_FIVE = 4;
    static constexpr std::int32_t FUNDAMENTAL = 8;
    static constexpr std::int32_t UNSURE = 16;  // only the plain way can tell, whatever else is set
    struct Verdicts {
        Lanes afScore;
        std::array<std::int32_t, LANES> anVerdict;
    };

    // The primes, 2 first, with the shares of the score at which they lift.
    void Prepare(std::span<const int> primes, std::span<const float> shares);

    // Weighs the nPeaks peaks, in order of rising frequency.
    Verdicts Judge(const CBands& bands, const float* pfFrequency, const float* pfAmplitude, int nPeaks) const;

private:
    // The multiples of 7 and of any later prime, as bits.
    std::uint32_t m_nOthersBelow32 = 0;
    std::uint32_t m_nOthersBelow64 = 0;
    float m_fTwoShare = 0.0F;
    float m_fThreeShare = 0.0F;
    float m_fFiveShare = 0.0F;
    float m_fOtherShare = 0.0F;
};
