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

/// Writes a PNG of the input's and the output's pitch over time, with the notes of the scale as
/// lines. More than about 70 s are drawn as bands that show how often each pitch occurs. Needs no
/// display. Errors name the file by name. Throws ZException when the file cannot be written. Unless
/// the plug-in's window was drawn too, the process-wide font data is released at the end, so no
/// other thread may draw text meanwhile.
void writePitchPlot(const std::filesystem::path& path, const std::string& name,
                    const RenderRequest& request, const RenderResult& result);

}  // namespace orvane
