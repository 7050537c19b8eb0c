#include "platform/signal/AlignedArray.h"
#include "platform/signal/SpectrumOperations.h"
#include "platform/signal/VectorOperations.h"
#include "stage/SyntheticString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FloatNear;

TEST(VectorOperations, SamplesBecomeFloats) {
    const std::array<std::int16_t, 5> samples = {-32768, -1, 0, 1, 32767};
    std::array<float, 5> floats{};
    nspsbIntToFloat(samples.data(), floats.data(), 5, 16, 0);
    EXPECT_THAT(floats, ElementsAre(-32768.0F, -1.0F, 0.0F, 1.0F, 32767.0F));
    nspsbIntToFloat(samples.data(), floats.data(), 5, 16, 15);
    nspsbIntToFloat(samples.data(), floats.data(), 5, 8, 0);
    EXPECT_THAT(floats, ElementsAre(-1.0F, -1.0F / 32768, 0.0F, 1.0F / 32768, 32767.0F / 32768))
        << "an unknown width must leave the destination alone";
}

TEST(VectorOperations, BlackmanWindowHasItsClosedForm) {
    // A quarter in: 0.42 - 0.5 cos(90 degrees) + 0.08 cos(180 degrees) = 0.34.
    std::array<float, 5> five = {2, 2, 2, 2, 2};
    nspsWinBlackmanStd(five.data(), 5);
    EXPECT_THAT(five, ElementsAre(FloatNear(0, 1e-7F), FloatNear(0.68F, 1e-6F), 2.0F, FloatNear(0.68F, 1e-6F),
                                  FloatNear(0, 1e-7F)));
    nspsWinBlackmanStd(&five[2], 1);
    EXPECT_EQ(five[2], 2.0F) << "one point has no window";
}

TEST(VectorOperations, ProductsInPlaceAndApart) {
    std::array<float, 37> left;
    std::array<float, 37> right;
    std::array<float, 37> product{};
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = static_cast<float>(i) - 18.0F;
        right[i] = 0.5F * static_cast<float>(i);
    }
    nspsbMpy3(left.data(), right.data(), product.data(), 37);
    EXPECT_EQ(product[4], -14.0F * 2.0F);
    EXPECT_EQ(product[36], 18.0F * 18.0F);
    nspsbMpy2(left.data(), right.data(), 37);
    EXPECT_EQ(right, product);
}

// The extreme at every place of vectors of every length around the width of the vector registers, and of
// equal ones the first.
TEST(VectorOperations, ExtremesAreFoundWhereverTheyLie) {
    for (int n = 1; n <= 70; ++n) {
        for (int nPlace = 0; nPlace < n; ++nPlace) {
            for (const float fExtreme : {-3.0F, -11.0F}) {
                std::vector<float> vector(static_cast<std::size_t>(n), -7.0F);
                vector[static_cast<std::size_t>(nPlace)] = fExtreme;
                vector.back() = nPlace % 2 == 0 ? fExtreme : vector.back();
                const bool bHighest = fExtreme > -7.0F;
                int nIndex = -1;
                EXPECT_EQ((bHighest ? nspsMax : nspsMin)(vector.data(), n), fExtreme);
                EXPECT_EQ((bHighest ? nspsMaxExt : nspsMinExt)(vector.data(), n, &nIndex), fExtreme);
                EXPECT_EQ(nIndex, nPlace);
            }
        }
    }
}

// (2^12 + 1)^2 + 1 = 2^24 + 2^13 + 2 and 1 beside it: in single precision alone the small square would
// vanish.
TEST(SpectrumOperations, PowerIsRoundedOnce) {
    const std::vector<float> bins = {-6, 8, 4097, 1, 4097, 1.5F};
    std::array<float, 3> power{};
    PowerSpectrum(bins.data(), power.data(), 3);
    EXPECT_THAT(power, ElementsAre(100.0F, 16785410.0F, 16785412.0F));
}

TEST(SpectrumOperations, MaximaAreAboveBothNeighbours) {
    const std::vector<float> vector = {9, 1, 2, 1, 3, 3, 1, 4, 0, 5};
    std::array<int, 8> places{};
    ASSERT_EQ(FindLocalMaxima(vector.data(), 10, places.data()), 2);
    EXPECT_EQ(places[0], 2);
    EXPECT_EQ(places[1], 7);
    // A saw of every length: every second place, around the ends of whatever is done at a time.
    for (int n = 0; n < 300; ++n) {
        std::vector<float> saw(static_cast<std::size_t>(n));
        std::vector<int> expected;
        for (int i = 1; i < n; i += 2) {
            saw[static_cast<std::size_t>(i)] = static_cast<float>(i);
            if (i < n - 1) {
                expected.push_back(i);
            }
        }
        std::vector<int> found(saw.size());
        found.resize(static_cast<std::size_t>(FindLocalMaxima(saw.data(), n, found.data())));
        ASSERT_EQ(found, expected);
    }
}

TEST(SpectrumOperations, NthLargestPartsTheVector) {
    std::vector<float> values = MakeNoise(133, 1000.0, 2);
    std::transform(values.begin(), values.end(), values.begin(), [](float f) { return f * f; });
    std::vector<float> ranked = values;
    std::sort(ranked.begin(), ranked.end(), std::greater<>());
    ranked.push_back(-1.0F);
    for (std::size_t nRank = 1; nRank <= values.size(); ++nRank) {
        const float fLimit = NthLargest(values.data(), 133, static_cast<int>(nRank));
        EXPECT_TRUE(fLimit <= ranked[nRank - 1] && fLimit > ranked[nRank]) << nRank;
    }
    const std::vector<float> equal = {7, 1, 7, 7, 0};
    EXPECT_EQ(NthLargest(equal.data(), 5, 2), 7.0F);
    EXPECT_LE(NthLargest(equal.data(), 5, 5), 0.0F);
}

TEST(AlignedArray, RefusesWhatCannotBeHadAndStaysUsable) {
    CAlignedArray<float> array;
    EXPECT_FALSE(array.Allocate(-1));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(array.Allocate(33));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(array.Data()) % 64, 0U);
        EXPECT_THAT(array.All(), Each(0.0F));
        array[32] = 1.0F;
    }
    EXPECT_TRUE(array.Allocate(0));
}

}  // namespace
