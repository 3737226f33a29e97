// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginListing.h"

#include "tools/render/PluginInstance.h"

#include <fmt/format.h>

namespace orvane
{

namespace
{

constexpr int kRate = 44100;  // Hz; the latency depends on it
constexpr int kBlockFrames = 512;

std::string parameterLines(const PluginInstance& plugin)
{
    std::string text = fmt::format("parameters  {}\n", plugin.ParameterCount());
    for (int i = 0; i < plugin.ParameterCount(); ++i)
        text += fmt::format("  {:>3}  {:<24} {:<26} {:.4f}\n", i, plugin.ParameterName(i),
                            plugin.ParameterText(i), plugin.Parameter(i));
    return text;
}

std::string programLines(const PluginInstance& plugin)
{
    std::string text = fmt::format("programs    {}\n", plugin.ProgramCount());
    for (int i = 0; i < plugin.ProgramCount(); ++i)
        text += fmt::format("  {:>3}  {}\n", i, plugin.ProgramName(i));
    return text;
}

}  // namespace

std::string describePlugin(PluginInstance& plugin)
{
    plugin.SetFormat(kRate, kBlockFrames);
    plugin.Start();
    std::string text = fmt::format("name        {}\n", plugin.Name());
    text += fmt::format("vendor      {}\n", plugin.Vendor());
    text += fmt::format("version     {}\n", plugin.Version());
    text += fmt::format("interface   {}\n", plugin.Format());
    text += fmt::format("unique id   {}\n", plugin.Identity());
    text += fmt::format("inputs      {}\n", PluginInstance::kChannels);
    text += fmt::format("outputs     {}\n", PluginInstance::kChannels);
    text += fmt::format("latency     {} samples at {} Hz\n", plugin.Latency(), kRate);
    return text + parameterLines(plugin) + programLines(plugin);
}

}  // namespace orvane
