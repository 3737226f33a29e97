// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Degrees whose flag is exactly 1, in rising order. flags: at most twelve, by degree.
[[nodiscard]] std::vector<std::int32_t> degreesOf(std::span<const float> flags);
/// Sets the flags of the root and of the degrees to 1 and all others to 0. flags: twelve.
void flagDegrees(std::span<float> flags, std::span<const std::int32_t> degrees);

/// The scales that can be chosen by index: the built-in ones, then the user's. A scale is a list of
/// degrees, each of 0 .. 11 once, in the order in which they were given.
///
/// The archived form of the custom scales is kCustomRows rows of twelve flags, by degree. What is
/// beyond these rows lives as long as the table.
class KestruneScaleTable
{
public:
    static constexpr int kCustomRows = 16;
    static constexpr int kArchivedFlags = kCustomRows * kDegrees;

    /// Appends the built-in scales to an empty table.
    void AddBuiltInScales();
    /// Appends a custom scale. Numbers that are no degrees, and repeated ones, are left out.
    void Add(std::span<const std::int32_t> degrees);

    [[nodiscard]] int Count() const { return static_cast<int>(mScales.size()); }
    /// Scales behind the built-in ones.
    [[nodiscard]] int CustomCount() const;
    /// Degrees of the scale; of the first for an index that is not in the table.
    [[nodiscard]] std::span<const std::int32_t> Degrees(int index) const;

    /// Replaces the custom scales by the first rows of an archive of kArchivedFlags; rows: at most
    /// kCustomRows are there to take.
    void Unpack(std::span<const float> archive, int rows);
    /// Writes the first custom scales, as many as there are but at most rows and kCustomRows. The
    /// other rows of the archive stay as they are.
    void Pack(std::span<float> archive, int rows) const;

private:
    std::vector<std::vector<std::int32_t>> mScales;
};

}  // namespace orvane
