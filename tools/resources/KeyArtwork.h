// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

namespace orvane
{

/// Where a white key is cut out for black ones: to its right (C, F), on both sides (D, G, A), or to
/// its left (E, B).
enum class KeyShape
{
    kCutRight,
    kCutBoth,
    kCutLeft
};

enum class KeyState
{
    kRest,
    kScale,  // marked as a note of the scale
    kDown    // held, or the note that sounds
};

inline constexpr int kWhiteKeyWidth = 41;
inline constexpr int kWhiteKeyHeight = 147;
inline constexpr int kBlackKeyWidth = 25;
inline constexpr int kBlackKeyHeight = 90;

/// Paints an ivory key. Its last column and its cuts stay clear: there the bed shows between keys.
void paintWhiteKey(cairo_t* context, KeyShape shape, KeyState state);

/// Paints an ebony key with the gap around it. A key that is down shines bright enough for the
/// black name that is written on it.
void paintBlackKey(cairo_t* context, KeyState state);

}  // namespace orvane
