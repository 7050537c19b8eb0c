#pragma once

// How turned metal catches the light.

// Light on a rod at u, -1 to 1 across it; the light falls on the side of -1.
double RodLight(double u);

// Light on a surface that leans by (dx, dy), its slope to the right and downward, lit from the top left.
double SlopeLight(double dSlopeX, double dSlopeY);
