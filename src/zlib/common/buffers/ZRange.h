// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane
{

/// A range of samples, by its first sample and its length.
struct ZRange
{
    std::int64_t mStart = 0;
    std::int64_t mLength = 0;

    /// The range from start to end, both included; empty when end + 1 lies before start.
    [[nodiscard]] static constexpr ZRange Between(std::int64_t start, std::int64_t end) noexcept
    {
        return {start, end + 1 < start ? 0 : end + 1 - start};
    }
};

}  // namespace orvane
