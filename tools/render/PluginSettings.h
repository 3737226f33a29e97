// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/RenderSettings.h"

#include <array>
#include <optional>

namespace orvane
{

class PluginInstance;

/// Converts between settings, which are indices or numbers in a unit, and the plug-in's parameters,
/// which go from 0 to 1. Parameters are found by their labels.
class PluginSettings
{
public:
    explicit PluginSettings(PluginInstance& plugin);

    /// A parameter and its value as hosts set it.
    struct HostValue
    {
        int index;
        float value;  // 0 to 1
    };
    /// Throws ZException when the plug-in has no such parameter.
    [[nodiscard]] HostValue ToHost(const SettingValue& given) const;
    /// Sets the parameters of the assigned settings. Throws ZException when the plug-in lacks one.
    void Apply(const RenderSettings& settings) const;
    /// Reads the current settings from the plug-in: parameters by their values, others from its
    /// program chunk. Without chunks the others have their initial values, except that the shifts
    /// follow from the transpositions. given holds the settings that Apply has set: the plug-in
    /// updates its shifts after a transposition only at its next tick.
    [[nodiscard]] RenderSettings Current(const RenderSettings& given) const;

private:
    [[nodiscard]] int IndexOf(Setting setting) const;

    PluginInstance& mPlugin;
    std::array<std::optional<int>, kSettingCount> mIndices;
};

}  // namespace orvane
