// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace orvane
{

/// The settings that a user can give, in the order in which they are listed.
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
    kPitchShift,
    kFormantShift,
    kPitchTranspose,
    kFormantTranspose,
};
inline constexpr std::size_t kSettingCount = 13;

/// What a setting may be: one of texts, its value then being the index, or, where there are none, a
/// number from low to high in a unit. It has the name of the plug-in's element.
struct SettingRule
{
    std::string_view name;
    std::string_view label;    // of the host parameter; empty where it is none
    std::string_view instead;  // what can be set where it is none; empty where nothing does it
    std::span<const std::string_view> texts;
    float low;
    float high;
    float initial;
    std::string_view unit;
};

[[nodiscard]] const SettingRule& settingRule(Setting setting);
/// The setting with a name or a label. Throws ZException, with the names there are, for any other.
/// Letters may be of either case.
[[nodiscard]] Setting settingNamed(std::string_view name);

/// A setting and what it is to be, within its rule.
struct SettingValue
{
    Setting setting;
    float value;
};
/// Reads the name or label of a setting, and one of its texts, in letters of either case, or a
/// number. Throws ZException that says what would be right, also for what is no parameter of the
/// plug-in.
[[nodiscard]] SettingValue settingValueIn(std::string_view name, std::string_view text);

/// Whether a value is within the rule.
[[nodiscard]] bool canBe(Setting setting, float value);
/// How names of all kinds are compared.
[[nodiscard]] bool equalWithoutCase(std::string_view a, std::string_view b);

/// All names that can be set, with what they take, a line each: for the help.
[[nodiscard]] std::string settingsHelp();

/// One value for each setting, always within its rule.
class RenderSettings
{
public:
    RenderSettings();

    /// Takes "NAME=VALUE", each as settingValueIn does, and throws as it does.
    void Assign(std::string_view assignment);
    [[nodiscard]] bool IsAssigned(Setting setting) const
    {
        return mIsAssigned[static_cast<std::size_t>(setting)];
    }
    /// Throws ZException for a value outside the setting's rule.
    void Set(Setting setting, float value);

    [[nodiscard]] float Value(Setting setting) const;
    /// The value as an index or a switch.
    [[nodiscard]] int Index(Setting setting) const { return static_cast<int>(Value(setting)); }
    [[nodiscard]] bool IsOn(Setting setting) const { return Value(setting) != 0.0f; }
    /// The value as a user reads it: its text, or the number with its unit.
    [[nodiscard]] std::string Text(Setting setting) const;

private:
    std::array<float, kSettingCount> mValues;
    std::array<bool, kSettingCount> mIsAssigned{};
};

}  // namespace orvane
