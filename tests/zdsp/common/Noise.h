// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Signals.h"
#include "zlib/common/buffers/ZBuffer.h"

namespace orvane
{

/// Fills the samples in use with noise in [-1, 1], which is the same on every run for a seed.
inline void fillWithNoise(ZBuffer& buffer, std::uint32_t seed)
{
    const auto noise = whiteNoise(1.0f, static_cast<int>(buffer.Length()), seed);
    std::copy(noise.begin(), noise.end(), buffer.Data());
}

}  // namespace orvane
