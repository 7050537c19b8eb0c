#pragma once

#include "stage/Screen.h"

#include <filesystem>
#include <optional>
#include <string>

// What a person reads off the tuner's window, taken from its pixels alone. Positions are those of the layout;
// the glyphs are recognised by the shape that the strips beside the program give them, whatever their colour.

struct DisplayedReading {
    std::string strNote;                 // "E", "F#", "Bb"; empty if no glyphs are recognised
    std::optional<int> nCents;           // as the digits tell it
    std::optional<double> dNeedleCents;  // as the needle points
    std::uint32_t needleColor = 0;       // 0x00RRGGBB, the colour that the needle is drawn in

    // In the colours that a user who has chosen none sees: sounding now; no longer, or not yet.
    static bool IsLive(const DisplayedReading& reading) { return reading.needleColor == 0x0000A0; }
    static bool IsGrey(const DisplayedReading& reading) { return reading.needleColor == 0xA0A0A0; }
    // Before anything has been heard the dial stands on F sharp, plus, 0, 0, in grey.
    static bool IsOfTheStart(const DisplayedReading& reading) {
        return reading.strNote == "F#" && reading.nCents == 0 && IsGrey(reading);
    }
};

class CDisplayReader {
public:
    // False if the glyph strips can't be read.
    bool Load(const std::filesystem::path& dataDirectory);
    DisplayedReading Read(const Picture& window) const;

    // The left edge of the coarse indicator's highlight in the strip; nothing if none is seen.
    static std::optional<int> ReadCoarseHighlight(const Picture& window);
    // The height of the level meter's column in pixels.
    static int ReadLevel(const Picture& window);

private:
    struct Strip {
        Picture shape;
        bool Ink(int x, int y) const { return (shape.At(x, y) & 0xFFU) < 128U; }
    };

    std::string ReadNote(const Picture& ink) const;
    std::optional<int> ReadCents(const Picture& ink) const;
    double Agreement(const Picture& ink, const Strip& strip, int xSource, int cx, int x, int y) const;

    Strip m_letters;
    Strip m_digits;
};
