// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cairo.h>

namespace orvane
{

inline constexpr int kBackgroundWidth = 456;
inline constexpr int kBackgroundHeight = 432;

/// Paints what lies behind all views of the window: a black header, a red body lit from above, the
/// dark panel of the work area, and the beds that keyboard and meter are let into. The picture
/// reaches two pixels over each edge of the window.
void paintBackground(cairo_t* context);

}  // namespace orvane
