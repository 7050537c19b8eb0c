#include "stage/Stage.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>

// The window on screens of every density: larger by a whole number, its pictures pixel by pixel, its text
// drawn anew.

using namespace std::chrono_literals;

namespace {

struct Area {
    int nLeft;
    int nTop;
    int nRight;
    int nBottom;
};
// What is drawn by hand: the strings, the dial, the coarse indicator, the logo.
constexpr std::array DRAWN{Area{20, 34, 190, 102}, Area{250, 43, 490, 300}, Area{10, 310, 490, 360},
                           Area{370, 5, 491, 42}};
constexpr Area LIST{26, 168, 184, 280};

std::optional<Picture> PictureAt(int nDotsPerInch) {
    CSoundServer sound;
    CStage stage;
    if (!sound.Start() || !stage.Start(&sound, nDotsPerInch)) {
        return std::nullopt;
    }
    // Silence has been heard: the dial has gone from the F sharp of the start to a C, which leaves white
    // where the sharp stood, and the highlight stands on the lowest string.
    const auto isAtRest = [](const Picture& picture) {
        const int nFactor = picture.nWidth / 500;
        bool bWhite = true;
        for (int y = 64; y < 90; ++y) {
            bWhite = bWhite && picture.At(306 * nFactor, y * nFactor) == 0xFFFFFF;
        }
        return bWhite && picture.At(370 * nFactor, 150 * nFactor) == 0xA0A0A0 &&
               picture.At(26 * nFactor, 350 * nFactor) == 0xB3B3E3;
    };
    if (!stage.WaitForPicture(isAtRest, 10s)) {
        return std::nullopt;
    }
    std::optional<Picture> picture = stage.Grab();
    if (picture) {
        const auto directory = std::filesystem::path(FRETVANE_BINARY_DIR) / "pictures";
        std::filesystem::create_directories(directory);
        SavePng(*picture, directory / ("density-" + std::to_string(nDotsPerInch) + ".png"));
    }
    return picture;
}

int CountDifferences(const Picture& plain, const Picture& dense, int nFactor, const Area& area) {
    int nDifferences = 0;
    for (int y = area.nTop * nFactor; y < area.nBottom * nFactor; ++y) {
        for (int x = area.nLeft * nFactor; x < area.nRight * nFactor; ++x) {
            nDifferences += dense.At(x, y) != plain.At(x / nFactor, y / nFactor) ? 1 : 0;
        }
    }
    return nDifferences;
}

TEST(Density, PicturesGrowByWholePixelsAndTextIsDrawnAnew) {
    const auto plain = PictureAt(96);
    ASSERT_TRUE(plain);
    // A fraction is rounded.
    for (const auto& [nDotsPerInch, nFactor] : {std::pair{120, 1}, {144, 2}, {192, 2}, {288, 3}}) {
        SCOPED_TRACE(nDotsPerInch);
        const auto dense = PictureAt(nDotsPerInch);
        ASSERT_TRUE(dense);
        ASSERT_EQ(dense->nWidth, 500 * nFactor);
        for (const Area& area : DRAWN) {
            EXPECT_EQ(CountDifferences(*plain, *dense, nFactor, area), 0) << area.nLeft;
        }
        if (nFactor > 1) {
            EXPECT_GT(CountDifferences(*plain, *dense, nFactor, LIST), 0) << "letters of larger pixels";
        }
    }
}

}  // namespace
