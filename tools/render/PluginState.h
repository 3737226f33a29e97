// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orvane
{

class PluginInstance;

/// The plug-in state that the user asked for; empty members were not given.
struct StateRequest
{
    std::string program;              // number from 0, or name in either case
    std::filesystem::path loadChunk;  // a bank chunk as writeBankChunk writes it
    std::filesystem::path preset;
};

/// Selects the program, then loads the chunk, then loads the preset into the current program.
/// Throws ZException for a program that the plug-in does not have and for data that it refuses.
void applyState(PluginInstance& plugin, const StateRequest& request);

/// Makes a program chunk from the text of a preset file. Errors name the file by name. Throws
/// ZException when the text is not a preset of a supported version.
[[nodiscard]] std::string programChunkFrom(std::string_view preset, const std::string& name);

/// Writes the plug-in's bank chunk to a file. Errors name the file by name. Throws ZException when
/// the plug-in gives no chunk or the file cannot be written.
void writeBankChunk(const PluginInstance& plugin, const std::filesystem::path& path,
                    const std::string& name);

}  // namespace orvane
