// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneScales.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane
{

/// Returns the degrees whose flag is exactly 1, in rising order. flags: at most twelve, by degree.
/// [any thread]
[[nodiscard]] std::vector<std::int32_t> degreesOf(std::span<const float> flags);
/// Sets the flags of the root and of the degrees to 1 and all others to 0. flags: twelve, by
/// degree; degrees: each in 0 .. 11. [any thread]
void flagDegrees(std::span<float> flags, std::span<const std::int32_t> degrees);

/// The scales by index: the built-in ones, then the user's custom scales. A scale is a list of
/// different degrees in 0 .. 11, in the order in which they were given.
///
/// Custom scales are archived as kCustomRows rows of twelve flags, by degree. Scales beyond these
/// rows are not archived. [any thread but the audio thread, under the interface lock]
class KestruneScaleTable
{
public:
    static constexpr int kCustomRows = 16;
    static constexpr int kArchivedFlags = kCustomRows * kDegrees;

    /// Appends the built-in scales; the table must be empty.
    void AddBuiltInScales();
    /// Appends a custom scale, without repeated degrees and numbers outside 0 .. 11.
    void Add(std::span<const std::int32_t> degrees);

    [[nodiscard]] int Count() const { return static_cast<int>(mScales.size()); }
    /// Number of custom scales.
    [[nodiscard]] int CustomCount() const;
    /// Degrees of a scale; of the first scale if the index is not in the table.
    [[nodiscard]] std::span<const std::int32_t> Degrees(int index) const;

    /// Replaces the custom scales by the first rows of an archive of kArchivedFlags flags; at most
    /// kCustomRows rows are read.
    void Unpack(std::span<const float> archive, int rows);
    /// Writes custom scales to the first rows of an archive, at most rows and kCustomRows of them.
    /// Further rows stay as they are.
    void Pack(std::span<float> archive, int rows) const;

private:
    std::vector<std::vector<std::int32_t>> mScales;
};

}  // namespace orvane
