// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane
{

/// A pitch ratio that follows a wanted one, by a one-pole low pass.
class KestruneGlide
{
public:
    /// Sets the speed: with one step a block a quarter of an error is left after seconds; 0 and
    /// below follow at once. [audio thread]
    void SetTime(float seconds, float sampleRate, int blockSize) noexcept;
    /// Sets the ratio. [audio thread]
    void Start(float ratio) noexcept { mRatio = ratio; }
    /// Moves the ratio towards the wanted one and returns it. [audio thread]
    float Step(float wanted) noexcept;

    [[nodiscard]] float Ratio() const noexcept { return mRatio; }
    /// Whether steps take time. [audio thread]
    [[nodiscard]] bool IsGradual() const noexcept { return mSmoothing > 0.0f; }

private:
    float mSmoothing = 0.0f;  // share of the old ratio that a step keeps, in [0, 1)
    float mRatio = 1.0f;
};

}  // namespace orvane
