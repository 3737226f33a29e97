// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane
{

/// The user's choices of transposition, and the shifts that they mean. Both lists fall: the higher
/// the index, the lower the pitch, the larger the singer.

/// Element `pitchTranspose`: semitones from an octave up to an octave down.
inline constexpr std::array<std::string_view, 25> kPitchTransposeNames{"Up Octave",
                                                                       "Up 7th",
                                                                       "Up Minor 7th",
                                                                       "Up 6th",
                                                                       "Up Minor 6th",
                                                                       "Up 5th",
                                                                       "Up Augmented 4th",
                                                                       "Up 4th",
                                                                       "Up 3rd",
                                                                       "Up Minor 3rd",
                                                                       "Up 2nd",
                                                                       "Up Minor 2nd",
                                                                       "None",
                                                                       "Down Minor 2nd",
                                                                       "Down 2nd",
                                                                       "Down Minor 3rd",
                                                                       "Down 3rd",
                                                                       "Down 4th",
                                                                       "Down Augmented 4th",
                                                                       "Down 5th",
                                                                       "Down Minor 6th",
                                                                       "Down 6th",
                                                                       "Down Minor 7th",
                                                                       "Down 7th",
                                                                       "Down Octave"};
inline constexpr std::int32_t kNoPitchTranspose = 12;

/// Element `formantTranspose`: sizes of the singer.
inline constexpr std::array<std::string_view, 11> kFormantTransposeNames{
    "Smallest", "Smaller4", "Smaller3", "Smaller2", "Smaller1", "Natural",
    "Bigger1",  "Bigger2",  "Bigger3",  "Bigger4",  "Biggest"};
inline constexpr std::int32_t kNaturalFormants = 5;

/// Cents of a choice of `pitchTranspose`. [any thread]
[[nodiscard]] float pitchShiftCents(std::int32_t pitchTranspose) noexcept;

/// Cents of a choice of `formantTranspose` for a voice that is shifted in pitch: half of that shift
/// goes along, as a voice that sings higher sounds natural from a somewhat smaller singer.
/// [any thread]
[[nodiscard]] float formantShiftCents(std::int32_t formantTranspose,
                                      float pitchShiftCents) noexcept;

}  // namespace orvane
