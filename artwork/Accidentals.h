#pragma once

#include <QtGui/QPainterPath>

// The signs that no text face draws as musicians write them, beside capitals 23 high on the baseline y = 25.
// Both start at x = 0 and lie between y = 1 and y = 26.

// Upright strokes thin, cross strokes heavy and rising; 15 wide.
QPainterPath SharpOutline();

// A stem, and a bowl that runs out into a point; 14 wide.
QPainterPath FlatOutline();
