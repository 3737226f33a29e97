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

/// The four characters of a unique id, quoted; empty unless all four are printable.
std::string characters(std::uint32_t id)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto c = static_cast<unsigned char>(id >> shift & 0xFFu);
        if (c < ' ' || c > '~')
            return {};
        text += static_cast<char>(c);
    }
    return " '" + text + "'";
}

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
    text += fmt::format("unique id   {:08X}{}\n", plugin.UniqueId(), characters(plugin.UniqueId()));
    text += fmt::format("inputs      {}\n", plugin.Inputs());
    text += fmt::format("outputs     {}\n", plugin.Outputs());
    text += fmt::format("latency     {} samples at {} Hz\n", plugin.Latency(), kRate);
    return text + parameterLines(plugin) + programLines(plugin);
}

}  // namespace orvane
