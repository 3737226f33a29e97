// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderSettings.h"

#include "kestrune/common/engine/KestruneScales.h"
#include "kestrune/common/engine/KestruneTracking.h"
#include "kestrune/common/engine/KestruneTransposition.h"
#include "tools/render/Failure.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

namespace orvane
{

namespace
{

constexpr SettingRule choice(std::string_view name, std::string_view label,
                             std::span<const std::string_view> texts, float initial)
{
    return {name, label, "", texts, 0.0f, static_cast<float>(texts.size() - 1), initial, ""};
}

constexpr SettingRule option(std::string_view name, std::string_view option,
                             std::span<const std::string_view> texts, float initial)
{
    return {name, "", option, texts, 0.0f, static_cast<float>(texts.size() - 1), initial, ""};
}

constexpr SettingRule cents(std::string_view name, std::string_view instead, float furthest)
{
    return {name, "", instead, {}, -furthest, furthest, 0.0f, "cents"};
}

constexpr std::array<SettingRule, kSettingCount> kRules{
    choice("pitchCorrectionOnOff", "Correct Pitch", kOnOffNames, 0),
    choice("transposeOnOff", "Transpose", kOnOffNames, 0),
    choice("key", "Key", kKeyNames, 3),
    option("scale", "--scale", kBuiltInScaleNames, 1),
    option("intonation", "--intonation", kIntonationNames, 0),
    choice("sourceType", "Pitch Range", kSourceTypeNames, 0),
    cents("detune", "--detune", 50),
    SettingRule{"pitchCorrectionTime", "Pitch Correcton Time", "", {}, 0, 400, 50, "ms"},
    option("pitchReference", "--reference", kPitchReferenceNames, 2),
    option("tracking", "--tracking", kTrackingNames, 0),
    cents("PitchShift", "pitchTranspose", 1200),
    cents("FormantShift", "formantTranspose", 1200),
    choice("pitchTranspose", "Pitch Transposition", kPitchTransposeNames, 12),
    choice("formantTranspose", "Formant Transposition", kFormantTransposeNames, 5),
};

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Parses the whole text as a number with a decimal point, whatever the locale.
std::optional<float> parseNumber(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return static_cast<float>(value);
}

std::string rangeText(const SettingRule& rule)
{
    if (rule.texts.empty())
        return fmt::format("a number from {} to {} ({})", rule.low, rule.high, rule.unit);
    std::vector<std::string> choices;
    for (std::size_t i = 0; i < rule.texts.size(); ++i)
        choices.push_back(fmt::format("{} ({})", rule.texts[i], i));
    return fmt::format("one of: {}", fmt::join(choices, ", "));
}

std::vector<std::string_view> parameterNames()
{
    std::vector<std::string_view> names;
    for (const SettingRule& rule : kRules) {
        if (!rule.label.empty())
            names.push_back(rule.name);
    }
    return names;
}

/// Throws ZException for a setting that is not a parameter: a host cannot set it.
void requireParameter(Setting setting)
{
    const SettingRule& rule = settingRule(setting);
    if (!rule.label.empty())
        return;
    fail("{} is no parameter of the plug-in: use {} instead", rule.name, rule.instead);
}

bool isInRange(const SettingRule& rule, float value)
{
    const bool isBetween = value >= rule.low && value <= rule.high;  // false for NaN
    return isBetween && (rule.texts.empty() || value == std::floor(value));
}

[[noreturn]] void refuseValue(const SettingRule& rule, std::string_view value)
{
    fail("{} cannot be '{}': it takes {}", rule.name, value, rangeText(rule));
}

/// The name of a flat among the key names, which are sharps; any other text as it is.
std::string_view withoutFlat(std::string_view key)
{
    constexpr std::array<std::array<std::string_view, 2>, 7> kFlats{{{"Ab", "G#"},
                                                                     {"Bb", "A#"},
                                                                     {"Cb", "B"},
                                                                     {"Db", "C#"},
                                                                     {"Eb", "D#"},
                                                                     {"Fb", "E"},
                                                                     {"Gb", "F#"}}};
    for (const auto& [flat, name] : kFlats) {
        if (equalWithoutCase(flat, key))
            return name;
    }
    return key;
}

std::optional<float> valueOf(const SettingRule& rule, std::string_view text)
{
    if (rule.texts.data() == kKeyNames.data())
        text = withoutFlat(text);
    const auto found =
        std::find_if(rule.texts.begin(), rule.texts.end(),
                     [text](std::string_view name) { return equalWithoutCase(name, text); });
    if (found != rule.texts.end())
        return static_cast<float>(found - rule.texts.begin());
    return parseNumber(text);
}

}  // namespace

bool equalWithoutCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

const SettingRule& settingRule(Setting setting)
{
    assert(static_cast<std::size_t>(setting) < kSettingCount);
    return kRules[static_cast<std::size_t>(setting)];
}

Setting settingNamed(std::string_view name)
{
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const SettingRule& rule = kRules[i];
        if (equalWithoutCase(rule.name, name) ||
            (!rule.label.empty() && equalWithoutCase(rule.label, name)))
            return static_cast<Setting>(i);
    }
    fail("there is no setting '{}': the settings are {}", name, fmt::join(parameterNames(), ", "));
}

SettingValue parseSetting(std::string_view name, std::string_view text)
{
    const Setting setting = settingNamed(name);
    requireParameter(setting);
    return {setting, parseValue(setting, text)};
}

float parseValue(Setting setting, std::string_view text)
{
    const SettingRule& rule = settingRule(setting);
    const std::optional<float> value = valueOf(rule, text);
    if (!value || !isInRange(rule, *value))
        refuseValue(rule, text);
    return *value;
}

const SettingRule* findSettingRule(std::string_view name)
{
    const auto found = std::find_if(kRules.begin(), kRules.end(),
                                    [name](const SettingRule& rule) { return rule.name == name; });
    return found == kRules.end() ? nullptr : &*found;
}

bool isAllowed(Setting setting, float value)
{
    return isInRange(settingRule(setting), value);
}

std::string settingsHelp()
{
    std::string help;
    for (const SettingRule& rule : kRules) {
        if (!rule.label.empty())
            help += fmt::format("  {:<21} {}\n", rule.name, rangeText(rule));
    }
    return help;
}

RenderSettings::RenderSettings()
{
    for (std::size_t i = 0; i < kSettingCount; ++i)
        mValues[i] = kRules[i].initial;
}

void RenderSettings::Assign(std::string_view assignment)
{
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos)
        fail("'{}' is no setting: write NAME=VALUE, such as key=C", assignment);
    const SettingValue given =
        parseSetting(assignment.substr(0, equals), assignment.substr(equals + 1));
    Set(given.setting, given.value);
    mIsAssigned[static_cast<std::size_t>(given.setting)] = true;
}

bool RenderSettings::IsAnyAssigned() const
{
    return std::find(mIsAssigned.begin(), mIsAssigned.end(), true) != mIsAssigned.end();
}

void RenderSettings::Set(Setting setting, float value)
{
    const SettingRule& rule = settingRule(setting);
    if (!isInRange(rule, value))
        refuseValue(rule, fmt::format("{}", value));
    mValues[static_cast<std::size_t>(setting)] = value;
}

float RenderSettings::Value(Setting setting) const
{
    return mValues[static_cast<std::size_t>(setting)];
}

std::string RenderSettings::Text(Setting setting) const
{
    const SettingRule& rule = settingRule(setting);
    if (rule.texts.empty())
        return fmt::format("{} {}", Value(setting), rule.unit);
    return std::string(rule.texts[static_cast<std::size_t>(Index(setting))]);
}

}  // namespace orvane
