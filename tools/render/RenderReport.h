// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

struct RenderRequest;
struct RenderResult;

/// The result in a few lines for a reader.
[[nodiscard]] std::string textReport(const RenderRequest& request, const RenderResult& result);

/// Writes everything that is known as one JSON object. Throws ZException where the disk is full;
/// name is what an error calls the file.
void writeJsonReport(const std::filesystem::path& path, const std::string& name,
                     const RenderRequest& request, const RenderResult& result);

}  // namespace orvane
