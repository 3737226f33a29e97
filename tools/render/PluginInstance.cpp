// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginInstance.h"

#include "tools/render/Lv2PluginInstance.h"
#include "tools/render/VstPluginInstance.h"

#include <system_error>

namespace orvane
{

bool PluginInstance::HasTextState() const
{
    return HasChunks() && Chunk(Extent::kProgram).starts_with("<VST_Program");
}

std::unique_ptr<PluginInstance> openPlugin(const std::filesystem::path& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        return std::make_unique<Lv2PluginInstance>(file);
    return std::make_unique<VstPluginInstance>(file);
}

}  // namespace orvane
