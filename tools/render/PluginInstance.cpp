// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginInstance.h"

#include "tools/render/VstPluginInstance.h"

namespace orvane
{

bool PluginInstance::HasTextState() const
{
    return HasChunks() && Chunk(Extent::kProgram).starts_with("<VST_Program");
}

std::unique_ptr<PluginInstance> openPlugin(const std::filesystem::path& file)
{
    return std::make_unique<VstPluginInstance>(file);
}

}  // namespace orvane
