// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane
{

// The user's choices of transposition and the shifts that they stand for. In both lists a higher
// index means lower: a lower pitch, or lower formants as of a larger singer.

/// Element `pitchTranspose`: from an octave up to an octave down, in semitones.
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

/// Element `formantTranspose`: sizes of the singer, in semitones of formants.
inline constexpr std::array<std::string_view, 11> kFormantTransposeNames{
    "Smallest", "Smaller4", "Smaller3", "Smaller2", "Smaller1", "Natural",
    "Bigger1",  "Bigger2",  "Bigger3",  "Bigger4",  "Biggest"};
inline constexpr std::int32_t kNaturalFormants = 5;

/// Pitch shift of a choice of `pitchTranspose`, in cents. [any thread]
[[nodiscard]] float pitchShiftCents(std::int32_t pitchTranspose) noexcept;

/// Formant shift of a choice of `formantTranspose`, in cents. Half of the pitch shift is added,
/// because a higher voice sounds natural with somewhat higher formants. [any thread]
[[nodiscard]] float formantShiftCents(std::int32_t formantTranspose,
                                      float pitchShiftCents) noexcept;

}  // namespace orvane
