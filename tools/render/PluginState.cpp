// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginState.h"

#include "tools/render/Failure.h"
#include "tools/render/InputFile.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PresetCheck.h"
#include "tools/render/RenderSettings.h"
#include "tools/render/StateText.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <fstream>

namespace orvane
{

namespace
{

using Extent = PluginInstance::Extent;

constexpr std::string_view kPresetVersion = "1.0";
constexpr std::string_view kPresetEnd = "</preset>";
// The comment behind a saved bank: these two with the number of the current program between.
constexpr std::string_view kProgramMarkStart = "<!-- kestrune-render program ";
constexpr std::string_view kProgramMarkEnd = " -->\n";

std::optional<int> parseWholeNumber(std::string_view text)
{
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

int findProgram(const PluginInstance& plugin, std::string_view asked)
{
    const std::optional<int> number = parseWholeNumber(asked);
    std::vector<std::string> programs;
    for (int i = 0; i < plugin.ProgramCount(); ++i) {
        const std::string name = plugin.ProgramName(i);
        if (number ? i == *number : equalWithoutCase(name, asked))
            return i;
        programs.push_back(fmt::format("{} ({})", name, i));
    }
    fail("the plug-in {} has no program '{}'; it has {}", plugin.Name(), asked,
         fmt::join(programs, ", "));
}

void requireChunks(const PluginInstance& plugin)
{
    if (!plugin.HasChunks())
        fail("the plug-in {} stores no chunks: neither a chunk nor a preset can be given to it or "
             "taken from it",
             plugin.Name());
}

void requireBanks(const PluginInstance& plugin)
{
    requireChunks(plugin);
    if (!plugin.HasBanks())
        fail("the {} plug-in {} keeps one program and no bank: --preset and --save-preset take it",
             plugin.Format(), plugin.Name());
}

void giveChunk(PluginInstance& plugin, std::string chunk, Extent extent, const std::string& name)
{
    if (!plugin.SetChunk(std::move(chunk), extent))
        fail("the plug-in {} refuses what {} holds", plugin.Name(), name);
}

/// Throws ZException unless the text is a bank chunk for a plug-in whose chunks are XML text.
void requireBank(const StateText& state, const PluginInstance& plugin, const std::string& name)
{
    if (state.IsPreset())
        fail("{} is a preset: give it by --preset", name);
    if (state.ProgramCount() == 0)
        fail("{} is not a chunk of {}: it holds no program", name, plugin.Name());
    if (state.ProgramCount() == 1 && plugin.ProgramCount() > 1)
        fail("{} is the chunk of one program: give it by --preset", name);
}

/// Removes the mark that writeBankChunk added and returns the program in it.
std::optional<int> takeProgramMark(std::string& chunk)
{
    const std::size_t start = chunk.rfind(kProgramMarkStart);
    if (start == std::string::npos || !chunk.ends_with(kProgramMarkEnd))
        return std::nullopt;
    const std::size_t digits = start + kProgramMarkStart.size();
    if (digits + kProgramMarkEnd.size() > chunk.size())
        return std::nullopt;
    const std::optional<int> program = parseWholeNumber(
        std::string_view(chunk).substr(digits, chunk.size() - kProgramMarkEnd.size() - digits));
    chunk.resize(start);
    return program;
}

bool acceptsMidi(const StateText& state)
{
    const StateElement* const element = state.Find("AcceptMIDI");
    return element && element->index.value_or(0) != 0;
}

void loadBank(PluginInstance& plugin, const StateRequest& request, AppliedState& applied)
{
    requireBanks(plugin);
    const std::string name = request.loadChunk.string();
    std::string chunk = readInputFile(request.loadChunk);
    if (plugin.HasTextState()) {
        const std::optional<int> program = takeProgramMark(chunk);
        const StateText state(chunk);
        requireBank(state, plugin, name);
        applied.acceptsMidi = acceptsMidi(state);
        if (program && request.program.empty() && *program >= 0 && *program < plugin.ProgramCount())
            plugin.SetProgram(*program);
    }
    giveChunk(plugin, std::move(chunk), Extent::kBank, name);
}

void loadPreset(PluginInstance& plugin, const StateRequest& request, AppliedState& applied)
{
    requireChunks(plugin);
    const std::string name = request.preset.string();
    const std::string chunk = programChunkFrom(readInputFile(request.preset), name);
    giveChunk(plugin, chunk, Extent::kProgram, name);
    if (!plugin.HasTextState())
        return;
    const StateText preset(chunk);
    for (const std::string& note : checkPreset(preset, StateText(plugin.Chunk(Extent::kProgram))))
        applied.notes.push_back(fmt::format("{}: {}", name, note));
    if (preset.Find("AcceptMIDI"))
        applied.acceptsMidi = acceptsMidi(preset);
}

int findScale(const StateText& state, const std::string& asked)
{
    const std::vector<std::string> names = scaleNames(state);
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return equalWithoutCase(name, asked);
    });
    if (found == names.end())
        fail("there is no scale '{}': the scales are {}", asked, fmt::join(names, ", "));
    return static_cast<int>(found - names.begin());
}

/// Elements that set the tuning when a preset ends with them.
std::string tuningElements(const StateRequest& request, const StateText& state)
{
    constexpr auto kChoice = "<element name=\"{}\" int32value=\"{}\"></element>\n";
    constexpr auto kNumber = "<element name=\"{}\" floatvalue=\"{}\"></element>\n";
    std::string text;
    if (!request.scale.empty()) {
        const int scale = findScale(state, request.scale);
        text += fmt::format(kChoice, "currentScaleModified", 0);
        text += fmt::format(kNumber, "currentScaleIndex", scale);
        text += fmt::format(kChoice, "scale", scale);
    }
    if (request.intonation)
        text += fmt::format(kChoice, "intonation", *request.intonation);
    if (request.detuneCents)
        text += fmt::format(kNumber, "detune", *request.detuneCents);
    if (request.reference)
        text += fmt::format(kChoice, "pitchReference", *request.reference);
    if (request.tracking)
        text += fmt::format(kChoice, "tracking", *request.tracking);
    return text;
}

/// Loads the current program's own state again with other elements behind it: what a chunk does not
/// hold might be reset by the plug-in.
void setTuning(PluginInstance& plugin, const StateRequest& request)
{
    if (!plugin.HasTextState())
        fail("the plug-in {} has no tuning that --scale, --intonation, --detune, --reference and "
             "--tracking could set",
             plugin.Name());
    std::string chunk = plugin.Chunk(Extent::kProgram);
    const std::size_t end = chunk.rfind(kPresetEnd);
    if (end == std::string::npos)
        fail("the plug-in {} gives no preset", plugin.Name());
    chunk.insert(end, tuningElements(request, StateText(chunk)));
    giveChunk(plugin, std::move(chunk), Extent::kProgram, "the tuning");
}

void writeText(const std::string& text, const std::filesystem::path& path, const std::string& name)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        fail("cannot write {}: the disk may be full", name);
}

}  // namespace

std::string programChunkFrom(std::string_view preset, const std::string& name)
{
    const StateText state(preset);
    if (state.ProgramCount() > 1)
        fail("{} is a chunk of {} programs: give it by --load-chunk", name, state.ProgramCount());
    if (state.PresetVersion().empty())
        fail("{} is no preset: it has no element 'preset'", name);
    if (state.PresetVersion() != kPresetVersion)
        fail("{} is a preset of version {}: {} is needed", name, state.PresetVersion(),
             kPresetVersion);
    if (!state.IsPreset())
        return std::string(preset);
    return fmt::format("<VST_Program Number=\"0\">\n{}\n</VST_Program>\n", preset);
}

AppliedState applyState(PluginInstance& plugin, const StateRequest& request)
{
    AppliedState applied;
    applied.acceptsMidi = !plugin.HasTextState();
    if (!request.program.empty())
        plugin.SetProgram(findProgram(plugin, request.program));
    if (!request.loadChunk.empty())
        loadBank(plugin, request, applied);
    if (!request.preset.empty())
        loadPreset(plugin, request, applied);
    if (request.HasTuning())
        setTuning(plugin, request);
    return applied;
}

void writeBankChunk(const PluginInstance& plugin, const std::filesystem::path& path,
                    const std::string& name)
{
    requireBanks(plugin);
    std::string chunk = plugin.Chunk(Extent::kBank);
    if (chunk.empty())
        fail("the plug-in {} gives no chunk", plugin.Name());
    if (const int program = plugin.Program(); program > 0 && plugin.HasTextState())
        chunk += fmt::format("{}{}{}", kProgramMarkStart, program, kProgramMarkEnd);
    writeText(chunk, path, name);
}

void writePreset(const PluginInstance& plugin, const std::filesystem::path& path,
                 const std::string& name)
{
    requireChunks(plugin);
    const std::string chunk = plugin.Chunk(Extent::kProgram);
    const std::size_t start = chunk.find("<preset");
    const std::size_t end = chunk.rfind(kPresetEnd);
    if (start == std::string::npos || end == std::string::npos || end < start)
        fail("the plug-in {} gives no preset", plugin.Name());
    writeText(chunk.substr(start, end - start + kPresetEnd.size()) + "\n", path, name);
}

}  // namespace orvane
