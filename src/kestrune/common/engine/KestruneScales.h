// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvane
{

// The musical data of the engine: keys, scales, intonations and voice ranges, with their names in
// menus and presets. Indices are the values of the elements of the same name.

/// Degrees of an octave; a degree counts semitones above the root.
inline constexpr int kDegrees = 12;

/// Element `key`: semitones above A.
inline constexpr std::array<std::string_view, kDegrees> kKeyNames{
    "A", "A#", "B", "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#"};

/// Element `scale`: the built-in scales; custom scales follow them. Their degrees do not hold the
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

/// Element `pitchReference`: the input of the pitch detection.
inline constexpr std::array<std::string_view, 3> kPitchReferenceNames{"Left", "Right", "Stereo"};

/// Elements `pitchCorrectionOnOff` and `transposeOnOff`.
inline constexpr std::array<std::string_view, 2> kOnOffNames{"Bypass", "On"};

/// Range of the pitch detection, in Hz.
struct KestruneSourceRange
{
    float lowHz;
    float highHz;

    [[nodiscard]] bool operator==(const KestruneSourceRange&) const = default;
};

/// Target tones of a scale in semitones above the root, in the order of its degrees.
struct KestruneTones
{
    std::array<float, kDegrees> values{};
    int count = 0;

    [[nodiscard]] bool operator==(const KestruneTones&) const = default;
};

/// Degrees of a built-in scale; those of "Chromatic" for any other index. [any thread]
[[nodiscard]] std::span<const std::int32_t> builtInScaleDegrees(int scale) noexcept;

/// Deviation of each degree from equal temperament, in cents; that of "Equal" for an index out of
/// range. [any thread]
[[nodiscard]] std::span<const std::int32_t, kDegrees> intonationCents(int intonation) noexcept;

/// Tones of at most twelve degrees, each in 0 .. 11. An intonation out of range counts as "Equal".
/// [any thread]
[[nodiscard]] KestruneTones tonesOf(std::span<const std::int32_t> degrees, int intonation) noexcept;
/// Tones of a built-in scale; of "Chromatic" for any other index. [any thread]
[[nodiscard]] KestruneTones tonesOf(int scale, int intonation) noexcept;

/// Detection range of a source type; that of "Normal" for an index out of range. [any thread]
[[nodiscard]] KestruneSourceRange sourceRange(int sourceType) noexcept;

/// Frequency of a key's root in the octave from A 440 on, in Hz; key in semitones above A.
/// [any thread]
[[nodiscard]] float referenceFrequency(int key, float detuneCents) noexcept;

}  // namespace orvane
