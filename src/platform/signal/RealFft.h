#pragma once

// The Fourier transform of 2^order real values, in place, in single precision. What the library needs for an
// order (its plan) is made once and kept until the two free operations.

// The orders at hand.
inline constexpr int MAX_FFT_ORDER = 24;

// The flag of a forward transform.
inline constexpr int NSP_FORWARD = 1;

// Makes ready what nspsRealFft needs for buffers of 2^nOrder values, so that the transform itself neither
// allocates nor locks. The same plan is chosen in every run: equal samples give equal spectra. False for an
// order outside 0 to MAX_FFT_ORDER or when there is no memory. Any thread; takes a lock.
bool nspsPrepareRealFft(int nOrder);

// Forward transform of the 2^nOrder real values in pfBuffer, without scaling, the exponent's sign negative.
// The result stands in pfBuffer as re[0], im[0], re[1], im[1], ... re[N/2], im[N/2]: N/2 + 1 complex numbers,
// so that the buffer has N + 2 floats. nFlags is NSP_FORWARD. An order that was not made ready is made ready
// here; one that cannot be leaves the buffer as it is. Any thread, several at once on buffers of their own.
void nspsRealFft(float* pfBuffer, int nOrder, int nFlags);

// Together these release all that is kept: the first the plans, the second what the planner remembers. No
// transform may run meanwhile; one that comes later makes its plan anew. Safe when nothing is kept.
void nspFreeBitRevTbls();
void nspcFreeTwdTbls();
