#include "platform/signal/AlignedArray.h"
#include "platform/signal/RealFft.h"
#include "stage/SyntheticString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <thread>
#include <vector>

namespace {

// The sum that a forward transform is, bin k of N/2 + 1.
std::complex<double> DirectBin(const std::vector<float>& samples, std::size_t k) {
    std::complex<double> sum;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double dTurn =
            static_cast<double>(k * i % samples.size()) / static_cast<double>(samples.size());
        sum += static_cast<double>(samples[i]) * std::polar(1.0, -2.0 * std::numbers::pi * dTurn);
    }
    return sum;
}

// The transform in a buffer that starts nShift floats past a well aligned address.
std::vector<float> Transform(const std::vector<float>& samples, int nOrder, int nShift = 0) {
    CAlignedArray<float> buffer;
    EXPECT_TRUE(buffer.Allocate(static_cast<int>(samples.size()) + 2 + nShift));
    float* pfBuffer = buffer.Data() + nShift;
    std::copy(samples.begin(), samples.end(), pfBuffer);
    nspsRealFft(pfBuffer, nOrder, NSP_FORWARD);
    return {pfBuffer, pfBuffer + samples.size() + 2};
}

TEST(RealFft, EqualsTheSumThatDefinesIt) {
    for (int nOrder = 0; nOrder <= 9; ++nOrder) {
        const std::vector<float> samples = MakeNoise(1 << nOrder, 1000.0, 7);
        for (const int nShift : {0, 1, 4}) {
            const std::vector<float> spectrum = Transform(samples, nOrder, nShift);
            for (std::size_t k = 0; k <= samples.size() / 2; ++k) {
                const std::complex<double> bin{spectrum[2 * k], spectrum[2 * k + 1]};
                EXPECT_NEAR(std::abs(bin - DirectBin(samples, k)), 0.0, 0.02) << nOrder << ' ' << k;
            }
        }
    }
}

TEST(RealFft, WhatItDoesNotKnowLeavesTheBufferAlone) {
    const std::vector<float> before = {1, 2, 3, 4, 5, 6};
    std::vector<float> buffer = before;
    for (const int nOrder : {-1, MAX_FFT_ORDER + 1}) {
        EXPECT_FALSE(nspsPrepareRealFft(nOrder));
        nspsRealFft(buffer.data(), nOrder, NSP_FORWARD);
    }
    nspsRealFft(buffer.data(), 2, 2);
    EXPECT_EQ(buffer, before);
}

// Threads that meet at the planner, on the same and on different orders, with tables that were just released.
TEST(RealFft, ReleasedTablesComeBackOnSeveralThreadsAtOnceAndGiveTheSameBits) {
    const std::vector<std::vector<float>> noises{MakeNoise(256, 100.0, 5), MakeNoise(512, 100.0, 5)};
    const std::vector<std::vector<float>> expected{Transform(noises[0], 8), Transform(noises[1], 9)};
    for (int nRound = 0; nRound < 6; ++nRound) {
        nspFreeBitRevTbls();
        nspcFreeTwdTbls();
        std::vector<std::jthread> threads;
        for (std::size_t t = 0; t < 4; ++t) {
            threads.emplace_back([&noises, &expected, nKind = t % 2] {
                for (int i = 0; i < 20; ++i) {
                    EXPECT_EQ(Transform(noises[nKind], 8 + static_cast<int>(nKind)), expected[nKind]);
                }
            });
        }
    }
}

}  // namespace
