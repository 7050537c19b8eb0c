#include "stage/DisplayReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr int DIAL_X = 250;
constexpr int DIAL_Y = 43;
constexpr int HEAD_LINE_Y = DIAL_Y + 20;
constexpr int NOTE_X = DIAL_X + 22;
constexpr int GLYPH_ROWS = 27;

constexpr std::array<int, 10> LETTER_EDGES{0, 32, 60, 90, 119, 146, 170, 200, 225, 249};
constexpr std::array<int, 14> DIGIT_EDGES{0, 26, 50, 75, 99, 125, 150, 175, 200, 225, 250, 286, 299, 321};
constexpr int MINUS = 11;
constexpr int PLUS = 12;
constexpr int SHARP = 7;
constexpr int FLAT = 8;

struct Spelling {
    const char* szName;
    int nLetter;
    int nAccidental;  // -1: none
};
constexpr std::array<Spelling, 12> SPELLINGS{{{"C", 2, -1},
                                              {"C#", 2, SHARP},
                                              {"D", 3, -1},
                                              {"Eb", 4, FLAT},
                                              {"E", 4, -1},
                                              {"F", 5, -1},
                                              {"F#", 5, SHARP},
                                              {"G", 6, -1},
                                              {"G#", 6, SHARP},
                                              {"A", 0, -1},
                                              {"Bb", 1, FLAT},
                                              {"B", 1, -1}}};

int Luminance(std::uint32_t color) {
    return static_cast<int>((color >> 16 & 0xFFU) * 299 + (color >> 8 & 0xFFU) * 587 +
                            (color & 0xFFU) * 114) /
           1000;
}

// The dial's head line as ink (1) and ground (0). Ink is what is darker than halfway from the white ground to
// the darkest pixel there, whatever the text's colour: the same half of an edge pixel that the strips call
// ink.
Picture HeadLineInk(const Picture& window) {
    Picture ink{window.nWidth, window.nHeight, std::vector<std::uint32_t>(window.pixels.size())};
    const auto forEach = [](const auto& visit) {
        for (int y = HEAD_LINE_Y; y < HEAD_LINE_Y + GLYPH_ROWS; ++y) {
            for (int x = DIAL_X + 20; x < DIAL_X + 235; ++x) {
                visit(x, y);
            }
        }
    };
    int nDarkest = 255;
    forEach([&](int x, int y) { nDarkest = std::min(nDarkest, Luminance(window.At(x, y))); });
    forEach([&](int x, int y) {
        ink.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(window.nWidth) +
                   static_cast<std::size_t>(x)] = Luminance(window.At(x, y)) < (255 + nDarkest) / 2 ? 1 : 0;
    });
    return ink;
}

// Whether nothing is written where an accidental would stand.
bool IsEmpty(const Picture& ink, int x) {
    for (int y = HEAD_LINE_Y; y < HEAD_LINE_Y + GLYPH_ROWS; ++y) {
        for (int column = x; column < DIAL_X + 80; ++column) {
            if (ink.At(column, y) != 0) {
                return false;
            }
        }
    }
    return true;
}

int Width(std::span<const int> edges, int nGlyph) {
    return edges[static_cast<std::size_t>(nGlyph) + 1] - edges[static_cast<std::size_t>(nGlyph)];
}

// How much of the ink must lie where the shape has it, for a glyph to be recognised at all.
constexpr double MIN_AGREEMENT = 0.9;

// Between the scale and the hub nothing but the needle stands on the white ground: the middle of its pixels
// in each row gives the angle around the pivot.
void ReadNeedle(const Picture& window, DisplayedReading& reading) {
    double dSine = 0.0;
    double dCosine = 0.0;
    std::map<std::uint32_t, int> colors;
    for (int y = 132; y < 225; ++y) {
        double dSum = 0.0;
        int nCount = 0;
        for (int x = 4; x < 236; ++x) {
            const std::uint32_t color = window.At(DIAL_X + x, DIAL_Y + y);
            if (color != 0xFFFFFFU) {
                dSum += x;
                ++nCount;
                ++colors[color];
            }
        }
        if (nCount > 0) {
            dSine += dSum / nCount - 120.0;
            dCosine += 270.0 - y;
        }
    }
    if (!colors.empty()) {
        reading.dNeedleCents = std::atan2(dSine, dCosine) * 180.0 / std::numbers::pi / 0.6;
        reading.needleColor =
            std::max_element(colors.begin(), colors.end(), [](const auto& a, const auto& b) {
                return a.second < b.second;
            })->first;
    }
}

}  // namespace

bool CDisplayReader::Load(const std::filesystem::path& dataDirectory) {
    const auto letters = LoadPicture(dataDirectory / "NotesClr.bmp");
    const auto digits = LoadPicture(dataDirectory / "NumClr.bmp");
    if (!letters || !digits) {
        return false;
    }
    m_letters.shape = *letters;
    m_digits.shape = *digits;
    return true;
}

double CDisplayReader::Agreement(const Picture& ink, const Strip& strip, int xSource, int cx, int x,
                                 int y) const {
    // Over the pixels that either holds ink: two thin strokes in different places must not look alike.
    int nEither = 0;
    int nBoth = 0;
    for (int row = 0; row < GLYPH_ROWS; ++row) {
        for (int column = 0; column < cx; ++column) {
            const bool bShape = strip.Ink(xSource + column, row);
            const bool bSeen = ink.At(x + column, y + row) != 0;
            nEither += bShape || bSeen ? 1 : 0;
            nBoth += bShape && bSeen ? 1 : 0;
        }
    }
    return nEither == 0 ? 0.0 : static_cast<double>(nBoth) / nEither;
}

DisplayedReading CDisplayReader::Read(const Picture& window) const {
    const Picture ink = HeadLineInk(window);
    DisplayedReading reading;
    reading.strNote = ReadNote(ink);
    reading.nCents = ReadCents(ink);
    ReadNeedle(window, reading);
    return reading;
}

// The spelling whose glyphs agree best, its empty remainder included.
std::string CDisplayReader::ReadNote(const Picture& ink) const {
    const auto agreement = [this, &ink](int nGlyph, int x) {
        return Agreement(ink, m_letters, LETTER_EDGES[static_cast<std::size_t>(nGlyph)],
                         Width(LETTER_EDGES, nGlyph), x, HEAD_LINE_Y);
    };
    std::string strBest;
    double dBest = MIN_AGREEMENT;
    for (const Spelling& spelling : SPELLINGS) {
        const int xSecond = NOTE_X + Width(LETTER_EDGES, spelling.nLetter);
        const double dLetter = agreement(spelling.nLetter, NOTE_X);
        const double dRest = spelling.nAccidental >= 0 ? agreement(spelling.nAccidental, xSecond)
                             : IsEmpty(ink, xSecond)   ? 1.0
                                                       : 0.0;
        if (std::min(dLetter, dRest) > dBest) {
            dBest = std::min(dLetter, dRest);
            strBest = spelling.szName;
        }
    }
    return strBest;
}

std::optional<int> CDisplayReader::ReadCents(const Picture& ink) const {
    const auto agreement = [this, &ink](int nGlyph, int cx, int x) {
        return Agreement(ink, m_digits, DIGIT_EDGES[static_cast<std::size_t>(nGlyph)], cx, DIAL_X + x,
                         HEAD_LINE_Y);
    };
    const auto bestDigit = [&agreement](int x) {
        std::pair<double, int> best{0.0, -1};
        for (int nDigit = 0; nDigit < 10; ++nDigit) {
            // A cell's last columns may lie under the next one.
            best = std::max(best, {agreement(nDigit, std::min(Width(DIGIT_EDGES, nDigit), 24), x), nDigit});
        }
        return best.first < MIN_AGREEMENT ? -1 : best.second;
    };
    const int nTens = bestDigit(143);
    const int nOnes = bestDigit(168);
    const double dPlus = agreement(PLUS, Width(DIGIT_EDGES, PLUS), 119);
    const double dMinus = agreement(MINUS, Width(DIGIT_EDGES, MINUS), 125);
    if (nTens < 0 || nOnes < 0 || std::max(dPlus, dMinus) <= MIN_AGREEMENT) {
        return std::nullopt;
    }
    return (dPlus > dMinus ? 1 : -1) * (10 * nTens + nOnes);
}

std::optional<int> CDisplayReader::ReadCoarseHighlight(const Picture& window) {
    // Row 46 of the strip holds only the ground: white, and the tint under the highlight.
    for (int x = 2; x < 478; ++x) {
        if (window.At(10 + x, 310 + 46) != 0xFFFFFFU) {
            return x;
        }
    }
    return std::nullopt;
}

int CDisplayReader::ReadLevel(const Picture& window) {
    for (int y = 2; y < 255; ++y) {
        if (window.At(210 + 15, 43 + y) != 0xFFFFFFU) {
            return 255 - y;
        }
    }
    return 0;
}
