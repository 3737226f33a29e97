// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

namespace orvane
{

/// Where a white key is cut out for the black keys beside it: on its right (C, F), on both sides
/// (D, G, A) or on its left (E, B).
enum class KeyShape
{
    kCutRight,
    kCutBoth,
    kCutLeft
};

/// How a key is shown.
enum class KeyState
{
    kRest,
    kScale,  // marked as a note of the scale
    kDown    // pressed, or the note being sung
};

inline constexpr int kWhiteKeyWidth = 41;
inline constexpr int kWhiteKeyHeight = 147;
inline constexpr int kBlackKeyWidth = 25;
inline constexpr int kBlackKeyHeight = 90;

/// Paints a white key. Its last column and its cuts stay transparent, so that the background shows
/// between keys.
void paintWhiteKey(cairo_t* context, KeyShape shape, KeyState state);

/// Paints a black key with the gap around it. A key that is down is bright enough for a name in
/// black.
void paintBlackKey(cairo_t* context, KeyState state);

}  // namespace orvane
