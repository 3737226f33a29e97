// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <vector>

namespace orvane
{

/// Pitch of a voice over time, by the method of A. de Cheveigne and H. Kawahara, "YIN, a
/// fundamental frequency estimator for speech and music", Journal of the Acoustical Society of
/// America 111, 2002: steps 2 to 5 there. Finds 130 to 1000 Hz.
class PitchTracker
{
public:
    /// Keeps a smoothed copy of the samples; sampleRate in Hz.
    PitchTracker(std::span<const float> samples, double sampleRate);

    /// The pitch in Hz of the 30 ms around a time; none where the sound is not periodic or too
    /// close to its start or end.
    [[nodiscard]] std::optional<double> at(double seconds) const;

private:
    [[nodiscard]] std::vector<double> normalizedDifferences(std::size_t centre) const;
    [[nodiscard]] double difference(std::size_t centre, std::size_t lag) const;

    double mSampleRate;
    std::size_t mWindow;  // samples that are compared with those one period later
    std::size_t mShortestLag;
    std::size_t mLongestLag;
    std::vector<float> mSmoothed;
};

}  // namespace orvane
