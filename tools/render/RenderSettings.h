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
};
inline constexpr std::size_t kSettingCount = 11;

/// What a setting may be: one of texts, its value then being the index, or, where there are none, a
/// number from low to high in a unit.
struct SettingRule
{
    std::string_view name;
    std::span<const std::string_view> texts;
    float low;
    float high;
    float initial;
    std::string_view unit;
};

[[nodiscard]] const SettingRule& settingRule(Setting setting);
/// Throws ZException, with the names there are, for any other name. Letters may be of either case.
[[nodiscard]] Setting settingNamed(std::string_view name);
/// All names with what they take, a line each: for the help.
[[nodiscard]] std::string settingsHelp();

/// One value for each setting, always within its rule.
class RenderSettings
{
public:
    RenderSettings();

    /// Takes "NAME=VALUE", where VALUE is a text of the setting, in letters of either case, or a
    /// number. Throws ZException that says what would be right.
    void Assign(std::string_view assignment);
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
};

}  // namespace orvane
