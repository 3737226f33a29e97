// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/RenderSettings.h"
#include "tools/render/StateText.h"

#include <array>
#include <optional>

namespace orvane
{

class PluginInstance;

/// Converts between settings, which are indices or numbers in a unit, and the plug-in's parameters,
/// which go from 0 to 1. Parameters are found by their symbols where the interface has such, else
/// by their labels.
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
    /// program chunk. Without a chunk of XML text the others have their initial values, except that
    /// the shifts follow from the transpositions. Call after Start: the plug-in moves its shifts
    /// after a transposition only then.
    [[nodiscard]] RenderSettings Current() const;
    /// Reads the scale in force from the plug-in's program chunk; "Major" without one of XML text.
    [[nodiscard]] CurrentScale Scale() const;

private:
    [[nodiscard]] int IndexOf(Setting setting) const;

    PluginInstance& mPlugin;
    std::array<std::optional<int>, kSettingCount> mIndices;
};

}  // namespace orvane
