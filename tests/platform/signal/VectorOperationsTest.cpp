#include "platform/signal/AlignedArray.h"
#include "platform/signal/VectorOperations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
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
    for (const int n : {5, 64, 513, 1024, 1025}) {
        std::vector<float> window(static_cast<std::size_t>(n), 2.0F);
        nspsWinBlackmanStd(window.data(), n);
        // Both cosines run through whole periods over n - 1 points, so that only the constant is left.
        const double dSum = std::accumulate(window.begin(), window.end(), 0.0);
        EXPECT_NEAR(dSum, 2.0 * 0.42 * (n - 1), 1e-5 * n) << n;
        EXPECT_NEAR(window.front(), 0.0, 1e-7);
        EXPECT_NEAR(window.back(), 0.0, 1e-7);
        for (int i = 0; i < n; ++i) {
            EXPECT_NEAR(window[static_cast<std::size_t>(i)], window[static_cast<std::size_t>(n - 1 - i)],
                        1e-6);
        }
        if (n % 2 == 1) {
            EXPECT_FLOAT_EQ(window[static_cast<std::size_t>(n / 2)], 2.0F);
        }
    }
    // A quarter in: 0.42 - 0.5 cos(90 degrees) + 0.08 cos(180 degrees) = 0.34.
    std::array<float, 5> five = {1, 1, 1, 1, 1};
    nspsWinBlackmanStd(five.data(), 5);
    EXPECT_FLOAT_EQ(five[1], 0.34F);
    float fOne = 3.0F;
    nspsWinBlackmanStd(&fOne, 1);
    EXPECT_EQ(fOne, 3.0F);
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

// The extreme at every place of vectors of every length around the width of the vector registers.
TEST(VectorOperations, ExtremesAreFoundWhereverTheyLie) {
    for (int n = 1; n <= 70; ++n) {
        for (int nPlace = 0; nPlace < n; ++nPlace) {
            std::vector<float> vector(static_cast<std::size_t>(n), -7.0F);
            int nIndex = -1;
            vector[static_cast<std::size_t>(nPlace)] = -3.0F;
            EXPECT_EQ(nspsMax(vector.data(), n), -3.0F);
            EXPECT_EQ(nspsMaxExt(vector.data(), n, &nIndex), -3.0F);
            EXPECT_EQ(nIndex, nPlace);
            vector[static_cast<std::size_t>(nPlace)] = -11.0F;
            EXPECT_EQ(nspsMin(vector.data(), n), -11.0F);
            EXPECT_EQ(nspsMinExt(vector.data(), n, &nIndex), -11.0F);
            EXPECT_EQ(nIndex, nPlace);
        }
    }
}

TEST(VectorOperations, TheFirstOfEqualExtremesIsReported) {
    std::vector<float> vector(40, 1.0F);
    int nIndex = -1;
    nspsMaxExt(vector.data(), 40, &nIndex);
    EXPECT_EQ(nIndex, 0);
    vector[9] = vector[21] = vector[38] = 2.0F;
    nspsMaxExt(vector.data(), 40, &nIndex);
    EXPECT_EQ(nIndex, 9);
    vector[5] = vector[6] = 0.0F;
    nspsMinExt(vector.data(), 40, &nIndex);
    EXPECT_EQ(nIndex, 5);
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
