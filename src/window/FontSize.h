#pragma once

// The controls' text is to be as tall on every screen, whatever height the screen gives to 8 points: the size
// of the main font in tenths of a point, from the height in pixels that the 8 points came out with (1 or
// more).
constexpr int MainFontSize(int nEightPointHeight) {
    constexpr double TWICE_AN_INCH_IN_POINTS = 144.0;
    constexpr double TENTHS = 7.0;
    return static_cast<int>(TWICE_AN_INCH_IN_POINTS / nEightPointHeight * TENTHS);
}

// The caption of the list stands out.
constexpr int PresetFontSize(int nMainFontSize) {
    return static_cast<int>(nMainFontSize * 1.5);
}
