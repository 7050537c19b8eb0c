#pragma once

#include <span>

// The frequency in Hz of a steady, exactly periodic tone within half a semitone of `fExpected`, from the
// advance of its harmonics' phases between two windows of the samples: good to some thousandths of a cent
// over half a second. 0 where there is no such tone.
double EstimatePitch(std::span<const float> samples, int nRate, double fExpected);
