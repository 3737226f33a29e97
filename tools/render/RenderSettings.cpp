#include "tools/render/RenderSettings.h"

#include "kestrune/common/KestruneScales.h"
#include "zlib/common/ZException.h"

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

constexpr SettingRule choice(std::string_view name, std::span<const std::string_view> texts,
                             float initial)
{
    return {name, texts, 0.0f, static_cast<float>(texts.size() - 1), initial, ""};
}

constexpr SettingRule number(std::string_view name, float low, float high, float initial,
                             std::string_view unit)
{
    return {name, {}, low, high, initial, unit};
}

constexpr std::array<SettingRule, kSettingCount> kRules{
    choice("pitchCorrectionOnOff", kOnOffNames, 0),
    choice("transposeOnOff", kOnOffNames, 0),
    choice("key", kKeyNames, 3),
    choice("scale", kBuiltInScaleNames, 1),
    choice("intonation", kIntonationNames, 0),
    choice("sourceType", kSourceTypeNames, 0),
    number("detune", -50, 50, 0, "cents"),
    number("pitchCorrectionTime", 0, 400, 50, "ms"),
    choice("pitchReference", kPitchReferenceNames, 2),
    number("PitchShift", -1200, 1200, 0, "cents"),
    number("FormantShift", -1200, 1200, 0, "cents"),
};

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalWithoutCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

/// The number that the whole text stands for, in the "C" form.
std::optional<float> numberIn(std::string_view text)
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

bool isWithin(const SettingRule& rule, float value)
{
    const bool inRange = value >= rule.low && value <= rule.high;  // false for what is no number
    return inRange && (rule.texts.empty() || value == std::floor(value));
}

[[noreturn]] void refuseValue(const SettingRule& rule, std::string_view value)
{
    throw ZException(
        -1, fmt::format("{} cannot be '{}': it takes {}", rule.name, value, rangeText(rule)));
}

std::optional<float> valueOf(const SettingRule& rule, std::string_view text)
{
    const auto found =
        std::find_if(rule.texts.begin(), rule.texts.end(),
                     [text](std::string_view name) { return equalWithoutCase(name, text); });
    if (found != rule.texts.end())
        return static_cast<float>(found - rule.texts.begin());
    return numberIn(text);
}

}  // namespace

const SettingRule& settingRule(Setting setting)
{
    return kRules[static_cast<std::size_t>(setting)];
}

Setting settingNamed(std::string_view name)
{
    std::vector<std::string_view> names;
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        if (equalWithoutCase(kRules[i].name, name))
            return static_cast<Setting>(i);
        names.push_back(kRules[i].name);
    }
    throw ZException(-1, fmt::format("there is no setting '{}': the settings are {}", name,
                                     fmt::join(names, ", ")));
}

std::string settingsHelp()
{
    std::string help;
    for (const SettingRule& rule : kRules)
        help += fmt::format("  {:<21} {}\n", rule.name, rangeText(rule));
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
        throw ZException(
            -1, fmt::format("'{}' is no setting: write NAME=VALUE, such as key=C", assignment));
    const Setting setting = settingNamed(assignment.substr(0, equals));
    const SettingRule& rule = settingRule(setting);
    const std::string_view text = assignment.substr(equals + 1);
    const std::optional<float> value = valueOf(rule, text);
    if (!value || !isWithin(rule, *value))
        refuseValue(rule, text);
    Set(setting, *value);
}

void RenderSettings::Set(Setting setting, float value)
{
    const SettingRule& rule = settingRule(setting);
    if (!isWithin(rule, value))
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
