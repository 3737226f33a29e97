// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvane
{

struct RenderRequest;
struct RenderResult;

/// The settings in force, by their names.
[[nodiscard]] std::vector<std::string> describeSettings(const RenderResult& result);

/// The report that is printed after a render.
[[nodiscard]] std::string textReport(const RenderRequest& request, const RenderResult& result);

/// Writes all figures and the pitch track as one JSON object. Errors name the file by name. Throws
/// ZException when the disk is full.
void writeJsonReport(const std::filesystem::path& path, const std::string& name,
                     const RenderRequest& request, const RenderResult& result);

}  // namespace orvane
