#include "platform/signal/SpectrumOperations.h"
#include "support/SyntheticString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace {

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

}  // namespace
