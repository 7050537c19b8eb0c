#pragma once

#include <span>
#include <vector>

// Seconds between the values of a track.
inline constexpr double PITCH_TRACK_STEP = 0.02;

// How far the pitch of a plucked note lies above `dExpected` as time goes on, in cents: one value for each
// step from the first sample on. From the advance of the phases of its first harmonics from window to window,
// weighted by their amplitudes, so that for a note within twenty cents the sum over any stretch is as good
// as one measurement over it. At both ends, where no window lies, the nearest values go on: the first, and
// the mean of the last few. Empty where the sound is too short or there is none. (Flanagan and Golden, Phase
// Vocoder, Bell System Technical Journal 45, 1966.)
std::vector<float> TrackPitch(std::span<const float> samples, int nRate, double dExpected);
