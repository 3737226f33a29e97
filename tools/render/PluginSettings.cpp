// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/PluginSettings.h"

#include "tools/render/PluginInstance.h"
#include "zlib/common/objects/ZException.h"
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

/// Of the way from one position to the next: a plug-in may cut the product that gives its index as
/// well as round it, and in floating point the exact quotient may come out short.
constexpr float kSafePart = 0.25f;

float hostValue(const SettingRule& rule, float value)
{
    const float range = rule.high - rule.low;
    if (rule.texts.empty())
        return (value - rule.low) / range;
    return std::min((value + kSafePart) / range, 1.0f);
}

float settingValue(const SettingRule& rule, float host)
{
    const float value = rule.low + (rule.high - rule.low) * host;
    // Kept to the digits that a user gives, which the way through 0 to 1 blurs.
    const float digits = rule.texts.empty() ? 1e3f : 1.0f;
    return std::clamp(std::round(value * digits) / digits, rule.low, rule.high);
}

/// The plug-in sets both shifts when a transposition is chosen.
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

/// Takes a value over as the plug-in has it in force: kept within the rule, as its engine does. A
/// choice beyond those that every plug-in has is one of the user's own, and passed over.
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
        if (canBe(setting, kept))
            settings.Set(setting, kept);
    }
}

/// What a state holds in the place of the scale, whose menu goes on with the user's own.
void takeScale(RenderSettings& settings, const ZXMLElement& element)
{
    if (!element.AttributeIs("name", "currentScaleIndex") || !element.HasAttribute("floatvalue"))
        return;
    if (const float index = element.GetFloat("floatvalue"); canBe(Setting::kScale, index))
        settings.Set(Setting::kScale, index);
}

/// Takes the values of all elements in a text over, the last one where there are many.
void takeElements(RenderSettings& settings, const ZXMLDocument& text, int depth)
{
    constexpr int kDeepest = 64;  // far below what a stack bears, should the text be anything
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
    throw ZException(
        fmt::format("{} cannot be set: the plug-in {} has no parameter '{}'; it has {}", rule.name,
                    mPlugin.Name(), rule.label,
                    names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "))));
}

PluginSettings::HostValue PluginSettings::Placed(const SettingValue& given) const
{
    return {IndexOf(given.setting), hostValue(settingRule(given.setting), given.value)};
}

void PluginSettings::Give(const RenderSettings& settings) const
{
    for (std::size_t s = 0; s < kSettingCount; ++s) {
        const auto setting = static_cast<Setting>(s);
        if (!settings.IsAssigned(setting))
            continue;
        const HostValue placed = Placed({setting, settings.Value(setting)});
        mPlugin.SetParameter(placed.index, placed.value);
    }
}

RenderSettings PluginSettings::InForce(const RenderSettings& given) const
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
