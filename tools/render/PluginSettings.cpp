// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginSettings.h"

#include "kestrune/common/engine/KestruneTransposition.h"
#include "tools/render/Failure.h"
#include "tools/render/PluginInstance.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace orvane
{

namespace
{

/// Share of the step between two choices that is added to a choice's host value. Plug-ins truncate
/// or round the host value to an index, and the exact quotient could be truncated to the choice
/// below.
constexpr float kStepMargin = 0.25f;

float hostValue(const SettingRule& rule, float value)
{
    const float range = rule.high - rule.low;
    if (rule.texts.empty())
        return (value - rule.low) / range;
    return std::min((value + kStepMargin) / range, 1.0f);
}

float settingValue(const SettingRule& rule, float host)
{
    const float value = rule.low + (rule.high - rule.low) * host;
    // Rounded to the digits that a user gives: the conversion to 0 .. 1 loses the others.
    const float digits = rule.texts.empty() ? 1e3f : 1.0f;
    return std::clamp(std::round(value * digits) / digits, rule.low, rule.high);
}

/// Sets the shifts as the plug-in does when a transposition is chosen.
void deriveShifts(RenderSettings& settings)
{
    const float pitch = pitchShiftCents(settings.Index(Setting::kPitchTranspose));
    settings.Set(Setting::kPitchShift, pitch);
    settings.Set(Setting::kFormantShift,
                 formantShiftCents(settings.Index(Setting::kFormantTranspose), pitch));
}

/// Takes the values of a state. Numbers are clamped to the setting's range, as the engine does.
/// Indices past the built-in choices are skipped.
void takeState(RenderSettings& settings, const StateText& state)
{
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        const SettingRule& rule = settingRule(setting);
        const StateElement* const element = state.Find(rule.name);
        if (!element) {
            // The one element that a state leaves out where it is the default.
            if (setting == Setting::kTracking)
                settings.Set(setting, rule.initial);
            continue;
        }
        if (rule.texts.empty() && element->number)
            settings.Set(setting, std::clamp(*element->number, rule.low, rule.high));
        if (const auto index = static_cast<float>(element->index.value_or(-1));
            !rule.texts.empty() && isAllowed(setting, index))
            settings.Set(setting, index);
    }
    // The state stores the scale's index as a number under another name.
    const StateElement* const scale = state.Find("currentScaleIndex");
    if (scale && scale->number && isAllowed(Setting::kScale, *scale->number))
        settings.Set(Setting::kScale, *scale->number);
}

}  // namespace

PluginSettings::PluginSettings(PluginInstance& plugin)
    : mPlugin(plugin)
{
    for (int i = 0; i < plugin.ParameterCount(); ++i) {
        const std::string name = plugin.ParameterName(i);
        const std::string symbol = plugin.ParameterSymbol(i);
        for (std::size_t s = 0; s < kSettingCount; ++s) {
            const SettingRule& rule = settingRule(static_cast<Setting>(s));
            if (symbol.empty() ? !name.empty() && rule.label == name : rule.name == symbol)
                mIndices[s] = i;
        }
    }
}

int PluginSettings::IndexOf(Setting setting) const
{
    if (const std::optional<int> index = mIndices[static_cast<std::size_t>(setting)])
        return *index;
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(std::max(mPlugin.ParameterCount(), 0)));
    for (int i = 0; i < mPlugin.ParameterCount(); ++i)
        names.push_back(mPlugin.ParameterName(i));
    const SettingRule& rule = settingRule(setting);
    fail("{} cannot be set: the plug-in {} has no parameter '{}'; it has {}", rule.name,
         mPlugin.Name(), rule.label,
         names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", ")));
}

PluginSettings::HostValue PluginSettings::ToHost(const SettingValue& given) const
{
    return {IndexOf(given.setting), hostValue(settingRule(given.setting), given.value)};
}

void PluginSettings::Apply(const RenderSettings& settings) const
{
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        if (!settings.IsAssigned(setting))
            continue;
        const HostValue host = ToHost({setting, settings.Value(setting)});
        mPlugin.SetParameter(host.index, host.value);
    }
}

RenderSettings PluginSettings::Current() const
{
    RenderSettings settings;
    const bool hasState = mPlugin.HasTextState();
    if (hasState)
        takeState(settings, StateText(mPlugin.Chunk(PluginInstance::Extent::kProgram)));
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        if (const std::optional<int> index = mIndices[s])
            settings.Set(setting, settingValue(settingRule(setting), mPlugin.Parameter(*index)));
    }
    if (!hasState)
        deriveShifts(settings);
    return settings;
}

CurrentScale PluginSettings::Scale() const
{
    if (!mPlugin.HasTextState())
        return builtInScale(static_cast<int>(settingRule(Setting::kScale).initial));
    return currentScale(StateText(mPlugin.Chunk(PluginInstance::Extent::kProgram)));
}

}  // namespace orvane
