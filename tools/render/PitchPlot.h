// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

struct RenderRequest;
struct RenderResult;

inline constexpr int kPlotWidth = 1600;  // pixels
inline constexpr int kPlotHeight = 800;

/// Colours of the two curves, as 0xRRGGBB.
inline constexpr unsigned kInputCurveColour = 0xF39A3B;
inline constexpr unsigned kOutputCurveColour = 0x1558B0;

/// Writes a PNG that shows the pitch before and after over time, on the notes of the scale. Needs
/// no display. Throws ZException where the file cannot be written; name is what an error calls it.
/// No other text may be drawn in the process meanwhile: unless the plug-in's window was asked for,
/// all fonts are given back at the end.
void writePitchPlot(const std::filesystem::path& path, const std::string& name,
                    const RenderRequest& request, const RenderResult& result);

}  // namespace orvane
