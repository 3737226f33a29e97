// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/OfflineRender.h"

#include <filesystem>
#include <vector>

namespace orvane
{

/// Renders each input to a file of the same name in a folder, which is made if its parent exists.
/// The ending changes when request.format is set. As many inputs as the machine has cores are
/// rendered at a time, each in a process of its own, so that a plug-in that crashes spoils one
/// output only. Prints the report of each input as it is finished, one progress bar for all, and
/// the failures at the end. request holds the options that all inputs share; its input and output
/// are not used. Returns the number of inputs that failed. Throws ZException when the outputs
/// cannot be distinguished or written, and Interruption when the user interrupts.
[[nodiscard]] std::size_t renderBatch(const RenderRequest& request,
                                      const std::vector<std::filesystem::path>& inputs,
                                      const std::filesystem::path& folder,
                                      const std::filesystem::path& library);

}  // namespace orvane
