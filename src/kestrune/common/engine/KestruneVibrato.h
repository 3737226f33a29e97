// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>

namespace orvane
{

/// The middle of a wide vibrato, in semitones: of pitches that swing evenly, as a sine of 4 to 8 Hz
/// does, by more than half a semitone to either side. A trill rests on its two notes, and a step
/// ends on one: neither has a middle. A trill that is sung as evenly as a vibrato counts as one.
///
/// pitches: one a record, in semitones, with so many records a second. The vibrato may have begun
/// with any of the first mayBegin + 1 of them and lasts up to the last. Sines are fitted by least
/// squares.
/// [audio thread]
[[nodiscard]] std::optional<double> vibratoMiddle(std::span<const double> pitches, int mayBegin,
                                                  double recordsPerSecond) noexcept;

}  // namespace orvane
