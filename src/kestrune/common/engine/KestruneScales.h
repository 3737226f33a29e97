// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvane
{

/// The musical data of the engine: keys, scales, intonations and ranges of voices, with the names
/// that menus, presets and programs know them by. Indices are the values of the elements of the
/// same name; the key, and every degree, counts semitones.

inline constexpr int kDegrees = 12;

/// Element `key`: 0 is A.
inline constexpr std::array<std::string_view, kDegrees> kKeyNames{
    "A", "A#", "B", "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#"};

/// Element `scale`: the built-in scales, which custom scales follow. Their degrees leave out the
/// root, which is a target in every scale.
inline constexpr std::array<std::string_view, 4> kBuiltInScaleNames{"Chromatic", "Major", "Minor",
                                                                    "Blues"};

/// Element `intonation`.
inline constexpr std::array<std::string_view, 10> kIntonationNames{
    "Equal",     "Classic Just", "Harmonic",     "Indian Raga", "Arabic",
    "Bali/Java", "Tibetan",      "Carlos Alpha", "Pythagorean", "Mean"};

/// Element `sourceType`.
inline constexpr std::array<std::string_view, 5> kSourceTypeNames{
    "Normal (D2 - E6)", "Male (D2 - B4)", "Female (E3 - E6)", "Lower Register (E0 - E4)",
    "Upper Register (E4 - D#7)"};

/// Element `pitchReference`: what the detector hears.
inline constexpr std::array<std::string_view, 3> kPitchReferenceNames{"Left", "Right", "Stereo"};

/// Elements `pitchCorrectionOnOff` and `transposeOnOff`.
inline constexpr std::array<std::string_view, 2> kOnOffNames{"Bypass", "On"};

/// Range of voices to look for, in Hz.
struct KestruneSourceRange
{
    float lowHz;
    float highHz;

    [[nodiscard]] bool operator==(const KestruneSourceRange&) const = default;
};

/// Target tones in semitones above the root, rising with the degree; without the root unless the
/// degrees name it.
struct KestruneTones
{
    std::array<float, kDegrees> values{};
    int count = 0;

    [[nodiscard]] bool operator==(const KestruneTones&) const = default;
};

/// Degrees of a built-in scale; any other index gives "Chromatic". [any thread]
[[nodiscard]] std::span<const std::int32_t> builtInScaleDegrees(int scale) noexcept;

/// Cents by which each degree above the root departs from equal temperament; any index out of range
/// gives "Equal". [any thread]
[[nodiscard]] std::span<const std::int32_t, kDegrees> intonationCents(int intonation) noexcept;

/// Tones of degrees, each in 0 .. 11 and at most twelve of them, in their order. [any thread]
[[nodiscard]] KestruneTones tonesOf(std::span<const std::int32_t> degrees, int intonation) noexcept;
/// Tones of a built-in scale. [any thread]
[[nodiscard]] KestruneTones tonesOf(int scale, int intonation) noexcept;

/// Any index out of range gives that of "Normal". [any thread]
[[nodiscard]] KestruneSourceRange sourceRange(int sourceType) noexcept;

/// Frequency, in Hz, of the key's root in the octave that starts at A 440. [any thread]
[[nodiscard]] float referenceFrequency(int key, float detuneCents) noexcept;

}  // namespace orvane
