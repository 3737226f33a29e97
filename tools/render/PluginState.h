// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orvane
{

class PluginInstance;

/// A state of a plug-in that a user asks for. What is empty is not asked for.
struct StateRequest
{
    std::string program;              // its number, from 0, or its name in letters of either case
    std::filesystem::path loadChunk;  // of a bank, as writeBankChunk writes it
    std::filesystem::path preset;
};

/// Brings the plug-in into the state: first its program, then the chunk, then the preset, which
/// goes into the current program. Throws ZException that says what would be right, for what the
/// plug-in does not have or refuses.
void bringIntoState(PluginInstance& plugin, const StateRequest& request);

/// The program chunk that holds the text of a preset file. name is what errors call the file.
/// Throws ZException where the text is no preset, or one that no plug-in of ours would take.
[[nodiscard]] std::string programChunkOf(std::string_view preset, const std::string& name);

/// Writes the plug-in's state, all programs, to a file. Throws ZException where it gives none, or
/// where the file cannot be written; name is what errors call it.
void writeBankChunk(const PluginInstance& plugin, const std::filesystem::path& path,
                    const std::string& name);

}  // namespace orvane
