// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneTransposition.h"

namespace orvane
{

namespace
{

constexpr double kCentsPerStep = 100.0;
constexpr double kFormantsPerPitch = 0.5;

// Computed in double, because an index may be any integer.
double centsAbove(std::int32_t choice, std::int32_t neutralChoice)
{
    return (static_cast<double>(neutralChoice) - choice) * kCentsPerStep;
}

}  // namespace

float pitchShiftCents(std::int32_t pitchTranspose) noexcept
{
    return static_cast<float>(centsAbove(pitchTranspose, kNoPitchTranspose));
}

float formantShiftCents(std::int32_t formantTranspose, float pitchShiftCents) noexcept
{
    return static_cast<float>(centsAbove(formantTranspose, kNaturalFormants) +
                              static_cast<double>(pitchShiftCents) * kFormantsPerPitch);
}

}  // namespace orvane
