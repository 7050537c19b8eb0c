#pragma once

// Operations on spectra, in the manner of the vector operations beside: none allocates, locks or fails.

// pfPower[i] = re^2 + im^2 of the complex number i of pfBins (re, im pairs), worked out in double precision
// and rounded once.
void PowerSpectrum(const float* pfBins, float* pfPower, int n);

// Writes to pnPlaces, in rising order, the places i from 1 to n - 2 where pfVector[i] is greater than both
// neighbours, and gives their number, which is at most (n - 1) / 2: pnPlaces has room for one more than that.
int FindLocalMaxima(const float* pfVector, int n, int* pnPlaces);

// A limit that nRank of the n values reach, or more only where several equal the limit. The values are not
// negative; nRank lies between 1 and n.
float NthLargest(const float* pfValues, int n, int nRank);
