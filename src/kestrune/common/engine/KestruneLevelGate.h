// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace orvane
{

/// How far a sound of a level in dB re full scale is taken for a voice, 0 .. 1: what is under -60
/// dB is noise, and from -50 dB on the level says nothing against a voice. Both trackings ask it of
/// the mean square of what they listen to. [audio thread]
inline float kestruneLevelGate(float decibels) noexcept
{
    constexpr float kClosedDecibels = -60.0f;
    constexpr float kSpanDecibels = 10.0f;
    return std::clamp((decibels - kClosedDecibels) / kSpanDecibels, 0.0f, 1.0f);
}

}  // namespace orvane
