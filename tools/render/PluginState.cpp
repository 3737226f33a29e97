// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginState.h"

#include "tools/render/Failure.h"
#include "tools/render/InputFile.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/RenderSettings.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <charconv>
#include <fstream>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::string_view kPresetVersion = "1.0";

int programNamed(const PluginInstance& plugin, std::string_view asked)
{
    int number = -1;
    const auto [end, error] = std::from_chars(asked.data(), asked.data() + asked.size(), number);
    const bool isNumber = error == std::errc() && end == asked.data() + asked.size();
    std::vector<std::string> programs;
    for (int i = 0; i < plugin.ProgramCount(); ++i) {
        const std::string name = plugin.ProgramName(i);
        if (isNumber ? i == number : equalWithoutCase(name, asked))
            return i;
        programs.push_back(fmt::format("{} ({})", name, i));
    }
    fail("the plug-in {} has no program '{}'; it has {}", plugin.Name(), asked,
         fmt::join(programs, ", "));
}

void requireChunks(const PluginInstance& plugin)
{
    if (!plugin.HasChunks())
        fail("the plug-in {} stores no chunks: neither a chunk nor a "
             "preset can be given to it or taken from it",
             plugin.Name());
}

void giveChunk(PluginInstance& plugin, std::string chunk, PluginInstance::Extent extent,
               const std::filesystem::path& path)
{
    requireChunks(plugin);
    if (!plugin.SetChunk(std::move(chunk), extent))
        fail("the plug-in {} refuses what {} holds", plugin.Name(), path.string());
}

}  // namespace

std::string programChunkFrom(std::string_view preset, const std::string& name)
{
    const ZXMLDocument text(preset.data(), static_cast<std::int32_t>(preset.size()));
    const auto element = text.GetChild("preset");
    if (!element)
        fail("{} is no preset: it has no element 'preset'", name);
    const char* const version = element->GetAttribute("version");
    if (!version || version != kPresetVersion)
        fail("{} is a preset of version {}: {} is needed", name, version ? version : "none",
             kPresetVersion);
    std::string chunk = "<VST_Program Number=\"0\">\n";
    chunk += preset;
    return chunk += "\n</VST_Program>\n";
}

void applyState(PluginInstance& plugin, const StateRequest& request)
{
    using Extent = PluginInstance::Extent;
    if (!request.program.empty())
        plugin.SetProgram(programNamed(plugin, request.program));
    if (!request.loadChunk.empty())
        giveChunk(plugin, readInputFile(request.loadChunk), Extent::kBank, request.loadChunk);
    if (!request.preset.empty())
        giveChunk(plugin, programChunkFrom(readInputFile(request.preset), request.preset.string()),
                  Extent::kProgram, request.preset);
}

void writeBankChunk(const PluginInstance& plugin, const std::filesystem::path& path,
                    const std::string& name)
{
    requireChunks(plugin);
    const std::string chunk = plugin.Chunk(PluginInstance::Extent::kBank);
    if (chunk.empty())
        fail("the plug-in {} gives no chunk", plugin.Name());
    std::ofstream file(path, std::ios::binary);
    file << chunk;
    file.close();
    if (!file)
        fail("cannot write {}: the disk may be full", name);
}

}  // namespace orvane
