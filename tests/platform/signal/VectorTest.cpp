#include "platform/signal/AlignedArray.h"
#include "platform/signal/SpectrumOperations.h"
#include "platform/signal/VectorOperations.h"
#include "support/SyntheticString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(VectorOperations, SamplesBecomeFloatsUnscaled) {
    const std::array<std::int16_t, 5> samples = {-32768, -1, 0, 1, 32767};
    std::array<float, 5> floats{};
    nspsbIntToFloat(samples.data(), floats.data(), 5, 16, 0);
    EXPECT_THAT(floats, ElementsAre(-32768.0F, -1.0F, 0.0F, 1.0F, 32767.0F));
    nspsbIntToFloat(samples.data(), floats.data(), 5, 16, 15);
    EXPECT_THAT(floats, ElementsAre(-1.0F, -1.0F / 32768, 0.0F, 1.0F / 32768, 32767.0F / 32768));
    nspsbIntToFloat(samples.data(), floats.data(), 5, 8, 0);
    EXPECT_EQ(floats[0], -1.0F) << "an unknown width must leave the destination alone";
}

TEST(VectorOperations, BlackmanWindowHasItsClosedForm) {
    for (const int n : {5, 64, 1025}) {
        std::vector<float> window(static_cast<std::size_t>(n), 2.0F);
        nspsWinBlackmanStd(window.data(), n);
        // Both cosines run through whole periods over n - 1 points, so that only the constant is left.
        const double dSum = std::accumulate(window.begin(), window.end(), 0.0);
        EXPECT_NEAR(dSum, 2.0 * 0.42 * (n - 1), 1e-5 * n) << n;
        for (std::size_t i = 0; i < window.size(); ++i) {
            EXPECT_NEAR(window[i], window[window.size() - 1 - i], 1e-6);
        }
        EXPECT_NEAR(window[0], 0.0, 1e-7);
    }
    // A quarter in: 0.42 - 0.5 cos(90 degrees) + 0.08 cos(180 degrees) = 0.34.
    std::array<float, 5> five = {1, 1, 1, 1, 1};
    nspsWinBlackmanStd(five.data(), 5);
    EXPECT_FLOAT_EQ(five[1], 0.34F);
    EXPECT_FLOAT_EQ(five[2], 1.0F);
    nspsWinBlackmanStd(&five[2], 1);
    EXPECT_FLOAT_EQ(five[2], 1.0F) << "one point has no window";
}

TEST(VectorOperations, ProductsInPlaceAndApart) {
    std::vector<float> left(37);
    std::vector<float> right(37);
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = static_cast<float>(i) - 18.0F;
        right[i] = 0.5F * static_cast<float>(i);
    }
    std::vector<float> product(37);
    nspsbMpy3(left.data(), right.data(), product.data(), 37);
    EXPECT_EQ(product[0], 0.0F);
    EXPECT_EQ(product[4], -14.0F * 2.0F);
    EXPECT_EQ(product[36], 18.0F * 18.0F);
    nspsbMpy2(left.data(), right.data(), 37);
    EXPECT_EQ(right, product);
    nspsbMpy2(left.data(), right.data(), 0);
    EXPECT_EQ(right, product);
}

// The extreme at every place of vectors of every length around the width of the vector registers, and of
// equal ones the first.
TEST(VectorOperations, ExtremesAreFoundWhereverTheyLie) {
    for (int n = 1; n <= 70; ++n) {
        for (int nPlace = 0; nPlace < n; ++nPlace) {
            std::vector<float> vector(static_cast<std::size_t>(n), -7.0F);
            const auto set = [&](float fExtreme) {
                vector[static_cast<std::size_t>(nPlace)] = fExtreme;
                if (nPlace % 2 == 0) {
                    vector.back() = fExtreme;
                }
            };
            int nIndex = -1;
            set(-3.0F);
            EXPECT_EQ(nspsMax(vector.data(), n), -3.0F);
            EXPECT_EQ(nspsMaxExt(vector.data(), n, &nIndex), -3.0F);
            EXPECT_EQ(nIndex, nPlace);
            set(-11.0F);
            EXPECT_EQ(nspsMin(vector.data(), n), -11.0F);
            EXPECT_EQ(nspsMinExt(vector.data(), n, &nIndex), -11.0F);
            EXPECT_EQ(nIndex, nPlace);
        }
    }
}

// (2^12 + 1)^2 + 1 = 2^24 + 2^13 + 2 and 1 beside it: in single precision alone the small square would
// vanish.
TEST(SpectrumOperations, PowerIsRoundedOnce) {
    const std::vector<float> bins = {3, 4, 0, 0, -6, 8, 4097, 1, 4097, 1.5F};
    std::array<float, 5> power{};
    PowerSpectrum(bins.data(), power.data(), 5);
    EXPECT_THAT(power, testing::ElementsAre(25.0F, 0.0F, 100.0F, 16785410.0F, 16785412.0F));
}

TEST(SpectrumOperations, MaximaAreAboveBothNeighbours) {
    const std::vector<float> vector = {9, 1, 2, 1, 3, 3, 1, 4, 0, 5};
    std::array<int, 8> places{};
    ASSERT_EQ(FindLocalMaxima(vector.data(), 10, places.data()), 2);
    EXPECT_EQ(places[0], 2);
    EXPECT_EQ(places[1], 7);
    for (int n = 0; n < 3; ++n) {
        EXPECT_EQ(FindLocalMaxima(vector.data(), n, places.data()), 0);
    }
    // A saw of every length: every second place, around the ends of whatever is done at a time.
    for (int n = 3; n < 300; ++n) {
        std::vector<float> saw(static_cast<std::size_t>(n));
        for (std::size_t i = 1; i < saw.size(); i += 2) {
            saw[i] = static_cast<float>(i);
        }
        std::vector<int> found(static_cast<std::size_t>(n));
        const int nFound = FindLocalMaxima(saw.data(), n, found.data());
        ASSERT_EQ(nFound, (n - 1) / 2);
        for (int i = 0; i < nFound; ++i) {
            EXPECT_EQ(found[static_cast<std::size_t>(i)], 2 * i + 1);
        }
    }
}

TEST(SpectrumOperations, NthLargestPartsTheVector) {
    std::vector<float> values = MakeNoise(133, 1000.0, 2);
    std::transform(values.begin(), values.end(), values.begin(), [](float f) { return f * f; });
    std::vector<float> ranked = values;
    std::sort(ranked.begin(), ranked.end(), std::greater<>());
    for (int nRank = 1; nRank <= 133; ++nRank) {
        const float fLimit = NthLargest(values.data(), 133, nRank);
        EXPECT_LE(fLimit, ranked[static_cast<std::size_t>(nRank - 1)]);
        if (nRank < 133) {
            EXPECT_GT(fLimit, ranked[static_cast<std::size_t>(nRank)]);
        }
    }
    const std::vector<float> equal = {7, 1, 7, 7, 0};
    EXPECT_EQ(NthLargest(equal.data(), 5, 2), 7.0F);
    EXPECT_LE(NthLargest(equal.data(), 5, 5), 0.0F);
}

TEST(AlignedArray, RefusesWhatCannotBeHadAndStaysUsable) {
    CAlignedArray<float> array;
    EXPECT_FALSE(array.Allocate(-1));
    EXPECT_EQ(array.Count(), 0);
    ASSERT_TRUE(array.Allocate(33));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(array.Data()) % 64, 0U);
    EXPECT_THAT(array.All(), Each(0.0F));
    array[32] = 1.0F;
    ASSERT_TRUE(array.Allocate(33));
    EXPECT_THAT(array.All(), Each(0.0F));
    EXPECT_TRUE(array.Allocate(0));
}

}  // namespace
