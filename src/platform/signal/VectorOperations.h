#pragma once

#include <cstdint>

// Operations on vectors of n single-precision floats. None allocates, locks or fails; n at most 0 does
// nothing. All may be called from any thread.

// Turns n signed samples into floats, each divided by 2^nScaleFactor: at scale factor 0 the raw values,
// -32768.0 to 32767.0. nWordBits is the width of a sample; 16 is the only one, another leaves pfDest alone.
void nspsbIntToFloat(const std::int16_t* pnSource, float* pfDest, int n, int nWordBits, int nScaleFactor);

// Multiplies pfVector by the symmetric Blackman window 0.42 - 0.5 cos(2 pi i / (n - 1)) + 0.08 cos(4 pi i /
// (n - 1)). A single point has the weight 1. (Blackman and Tukey, The Measurement of Power Spectra, 1958.)
void nspsWinBlackmanStd(float* pfVector, int n);

// pfSourceDest[i] = pfSourceDest[i] * pfSource[i]
void nspsbMpy2(const float* pfSource, float* pfSourceDest, int n);
// pfDest[i] = pfSource1[i] * pfSource2[i]
void nspsbMpy3(const float* pfSource1, const float* pfSource2, float* pfDest, int n);

void nspsbCopy(const float* pfSource, float* pfDest, int n);

// The largest and smallest value; 0 for an empty vector.
float nspsMax(const float* pfVector, int n);
float nspsMin(const float* pfVector, int n);
// The same with the index of the value, of several equal ones the first.
float nspsMaxExt(const float* pfVector, int n, int* pnIndex);
float nspsMinExt(const float* pfVector, int n, int* pnIndex);
