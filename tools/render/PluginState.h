// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class PluginInstance;

/// The plug-in state that the user asked for; empty members were not given.
struct StateRequest
{
    std::string program;              // number from 0, or name in either case
    std::filesystem::path loadChunk;  // a bank chunk as writeBankChunk writes it
    std::filesystem::path preset;     // a preset file or a chunk of one program
    std::string scale;              // name of a built-in scale or one of the state, in either case
    std::optional<int> intonation;  // index of the intonation
    std::optional<float> detuneCents;
    std::optional<int> reference;  // 0 left, 1 right, 2 stereo
    std::optional<int> tracking;   // 0 classic, 1 fine

    [[nodiscard]] bool IsEmpty() const
    {
        return program.empty() && loadChunk.empty() && preset.empty() && !HasTuning();
    }
    /// Whether something is asked for that goes into the current program beside a preset.
    [[nodiscard]] bool HasTuning() const
    {
        return !scale.empty() || intonation || detuneCents || reference || tracking;
    }
};

/// What applyState found out.
struct AppliedState
{
    bool acceptsMidi = true;         // false when the plug-in ignores MIDI in this state
    std::vector<std::string> notes;  // about parts of the request that had no effect
};

/// Selects the program, loads the chunk, loads the preset into the current program and sets the
/// tuning there. A chunk that writeBankChunk wrote selects the program that was current then,
/// unless the request names one. Throws ZException for a program that the plug-in does not have and
/// for data that are not what the option takes or that the plug-in refuses.
[[nodiscard]] AppliedState applyState(PluginInstance& plugin, const StateRequest& request);

/// Makes a program chunk from a preset file or a chunk of one program. Errors name the file by
/// name. Throws ZException when the text is neither, or a preset of another version.
[[nodiscard]] std::string programChunkFrom(std::string_view preset, const std::string& name);

/// Writes the plug-in's bank chunk to a file. The plug-in's own bytes do not tell the current
/// program; when that is not the first one, a comment that plug-ins of this kind skip is added and
/// tells it. Errors name the file by name. Throws ZException when the plug-in gives no chunk or the
/// file cannot be written.
void writeBankChunk(const PluginInstance& plugin, const std::filesystem::path& path,
                    const std::string& name);

/// Writes the current program as a preset file. Throws as writeBankChunk does.
void writePreset(const PluginInstance& plugin, const std::filesystem::path& path,
                 const std::string& name);

}  // namespace orvane
