// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tools/render/RenderSettings.h"

#include <array>
#include <optional>

namespace orvane
{

class PluginInstance;

/// Brings settings and a plug-in's parameters together, which are found by their labels: settings
/// are indices and numbers in a unit, parameters go from 0 to 1.
class PluginSettings
{
public:
    explicit PluginSettings(PluginInstance& plugin);

    /// A value of a parameter, as hosts give it.
    struct HostValue
    {
        int index;
        float value;  // 0 to 1
    };
    /// Throws ZException where the plug-in has no such parameter.
    [[nodiscard]] HostValue Placed(const SettingValue& given) const;
    /// Sets what is assigned. Throws ZException where the plug-in has no such parameter.
    void Give(const RenderSettings& settings) const;
    /// What the plug-in says is in force. What is no parameter is as its chunk tells; without one
    /// it is at its initial value, but the shifts, which follow from the transpositions.
    /// given: what Give has set; the plug-in follows a transposition chosen there a moment later.
    [[nodiscard]] RenderSettings InForce(const RenderSettings& given) const;

private:
    [[nodiscard]] int IndexOf(Setting setting) const;

    PluginInstance& mPlugin;
    std::array<std::optional<int>, kSettingCount> mIndices;
};

}  // namespace orvane
