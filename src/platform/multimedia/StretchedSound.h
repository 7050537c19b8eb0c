#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

// Sound from a source at a rate close to the source's own, which may change all the time: by fractions of a
// cent or by some cents. Pairs of left and right everywhere. Cubic interpolation through four frames (Catmull
// and Rom, A Class of Local Interpolating Splines, 1974).
class CStretchedSound {
public:
    // The source fills what it is given. It is called from AddTo alone.
    explicit CStretchedSound(std::function<void(std::span<float>)> source) : m_source(std::move(source)) {}

    // Adds the next sound to what is in the span, at dRatio source frames a frame, which is near 1.
    void AddTo(std::span<float> stereo, double dRatio);
    // What was asked for and not yet heard becomes silence.
    void Forget() { std::fill(m_frames.begin(), m_frames.end(), 0.0F); }
    // Source frames asked for so far: what the source does now is heard from this frame on.
    std::uint64_t GetAskedFor() const { return m_nAskedFor; }
    // The source frame that is heard next, between frames as a rule.
    double GetPosition() const;

private:
    std::size_t FramesHeld() const { return m_frames.size() / 2; }

    std::function<void(std::span<float>)> m_source;
    std::vector<float> m_frames =
        std::vector<float>(2);  // asked for and still needed; before the first, silence
    double m_dPosition = 1.0;   // in m_frames, at least 1
    std::uint64_t m_nAskedFor = 0;
};
