// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginSettings.h"

#include "tools/render/Failure.h"
#include "tools/render/PluginInstance.h"
#include "zlib/common/objects/ZXMLElement.h"

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
    const auto stepsUp = [&settings](Setting setting) {
        return settingRule(setting).initial - settings.Value(setting);
    };
    const float pitch = 100.0f * stepsUp(Setting::kPitchTranspose);
    settings.Set(Setting::kPitchShift, pitch);
    settings.Set(Setting::kFormantShift,
                 100.0f * stepsUp(Setting::kFormantTranspose) + 0.5f * pitch);
}

/// Takes the value of a setting from an element of the state. Numbers are clamped to the setting's
/// range, as the engine does. Indices past the built-in choices are skipped.
void takeElement(RenderSettings& settings, const ZXMLElement& element)
{
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        const SettingRule& rule = settingRule(setting);
        const char* const attribute = rule.texts.empty() ? "floatvalue" : "int32value";
        if (!element.AttributeIs("name", rule.name) || !element.HasAttribute(attribute))
            continue;
        const float value = element.GetFloat(attribute);
        const float kept = rule.texts.empty() ? std::clamp(value, rule.low, rule.high) : value;
        if (isAllowed(setting, kept))
            settings.Set(setting, kept);
    }
}

/// The state stores the scale's index under another name than that of the setting.
void takeScale(RenderSettings& settings, const ZXMLElement& element)
{
    if (!element.AttributeIs("name", "currentScaleIndex") || !element.HasAttribute("floatvalue"))
        return;
    if (const float index = element.GetFloat("floatvalue"); isAllowed(Setting::kScale, index))
        settings.Set(Setting::kScale, index);
}

/// Takes the values of all elements in a text, at any depth. The last of several wins, as in the
/// plug-in.
void takeElements(RenderSettings& settings, const ZXMLDocument& text, int depth)
{
    constexpr int kDeepest = 64;  // bounds the recursion for any text
    for (std::int32_t i = 0; depth < kDeepest && i < text.GetChildCount(); ++i) {
        const auto child = text.GetChild(i);
        if (child->IsNamed("element")) {
            takeElement(settings, *child);
            takeScale(settings, *child);
        }
        takeElements(settings, *child, depth + 1);
    }
}

}  // namespace

PluginSettings::PluginSettings(PluginInstance& plugin)
    : mPlugin(plugin)
{
    for (int i = 0; i < plugin.ParameterCount(); ++i) {
        const std::string name = plugin.ParameterName(i);
        for (std::size_t s = 0; s < kSettingCount; ++s) {
            if (!name.empty() && settingRule(static_cast<Setting>(s)).label == name)
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

RenderSettings PluginSettings::Current(const RenderSettings& given) const
{
    RenderSettings settings;
    if (mPlugin.HasChunks()) {
        const std::string chunk = mPlugin.Chunk(PluginInstance::Extent::kProgram);
        const auto length = static_cast<std::int32_t>(chunk.size());
        takeElements(settings, ZXMLDocument(chunk.data(), length), 0);
    }
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        if (const std::optional<int> index = mIndices[s])
            settings.Set(setting, settingValue(settingRule(setting), mPlugin.Parameter(*index)));
    }
    if (!mPlugin.HasChunks() || given.IsAssigned(Setting::kPitchTranspose) ||
        given.IsAssigned(Setting::kFormantTranspose))
        deriveShifts(settings);
    return settings;
}

}  // namespace orvane
