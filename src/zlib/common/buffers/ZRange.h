// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// A run of samples: where it starts and how many it holds.
struct ZRange
{
    std::int64_t mStart = 0;
    std::int64_t mLength = 0;

    /// The run from start to end, both inside it; empty when end + 1 lies before start.
    [[nodiscard]] static constexpr ZRange Between(std::int64_t start, std::int64_t end) noexcept
    {
        return {start, end + 1 < start ? 0 : end + 1 - start};
    }
};

}  // namespace orvane
