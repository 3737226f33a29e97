// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace orvane
{

/// The settings of the plug-in, in the order in which reports list them.
enum class Setting : std::size_t
{
    kPitchCorrectionOnOff,
    kTransposeOnOff,
    kKey,
    kScale,
    kIntonation,
    kSourceType,
    kDetune,
    kPitchCorrectionTime,
    kPitchReference,
    kTracking,
    kPitchShift,
    kFormantShift,
    kPitchTranspose,
    kFormantTranspose,
};
inline constexpr std::size_t kSettingCount = 14;

/// The range of a setting: an index into texts, or, without texts, a number from low to high in a
/// unit. name is that of the plug-in's element.
struct SettingRule
{
    std::string_view name;
    std::string_view label;    // of the host parameter; empty when there is no such parameter
    std::string_view instead;  // what sets it when it is not a parameter: a parameter or an option
    std::span<const std::string_view> texts;
    float low;
    float high;
    float initial;
    std::string_view unit;
};

[[nodiscard]] const SettingRule& settingRule(Setting setting);
/// The rule of the setting with exactly that name; null without such a setting.
[[nodiscard]] const SettingRule* findSettingRule(std::string_view name);
/// Finds a setting by name or label, ignoring case. Throws ZException that lists the valid names.
[[nodiscard]] Setting settingNamed(std::string_view name);

/// A setting and a value within its range.
struct SettingValue
{
    Setting setting;
    float value;
};
/// Parses the name or label of a parameter and its value as parseValue does. Throws ZException that
/// tells the valid names or values.
[[nodiscard]] SettingValue parseSetting(std::string_view name, std::string_view text);

/// Parses a value of a setting, parameter or not. Case is ignored, and keys may be named as flats,
/// such as Db. Throws ZException that tells the valid values.
[[nodiscard]] float parseValue(Setting setting, std::string_view text);

/// Whether a value is within the setting's range.
[[nodiscard]] bool isAllowed(Setting setting, float value);
/// Compares names; ASCII letters match in either case.
[[nodiscard]] bool equalWithoutCase(std::string_view a, std::string_view b);

/// One line for each parameter with its name and valid values, for --help.
[[nodiscard]] std::string settingsHelp();

/// A value for each setting, always within its range.
class RenderSettings
{
public:
    RenderSettings();

    /// Parses "NAME=VALUE" as parseSetting does, and throws as it does.
    void Assign(std::string_view assignment);
    [[nodiscard]] bool IsAssigned(Setting setting) const
    {
        return mIsAssigned[static_cast<std::size_t>(setting)];
    }
    [[nodiscard]] bool IsAnyAssigned() const;
    /// Throws ZException for a value outside the setting's range.
    void Set(Setting setting, float value);

    [[nodiscard]] float Value(Setting setting) const;
    /// The value as an index into the texts.
    [[nodiscard]] int Index(Setting setting) const { return static_cast<int>(Value(setting)); }
    [[nodiscard]] bool IsOn(Setting setting) const { return Value(setting) != 0.0f; }
    /// The value for display: its text, or the number with its unit.
    [[nodiscard]] std::string Text(Setting setting) const;

private:
    std::array<float, kSettingCount> mValues;
    std::array<bool, kSettingCount> mIsAssigned{};
};

}  // namespace orvane
