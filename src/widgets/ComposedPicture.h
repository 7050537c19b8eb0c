#pragma once

class CBitmap;
class CDC;

// A memory picture that a widget composes itself in: cx by cy pixels, filled with the stock brush, and set up
// for black text that leaves the ground around it as it is. False if there is no room.
bool CreateComposedPicture(const CDC& dcScreen, int cx, int cy, int nStockBrush, CDC& dc, CBitmap& bitmap);
