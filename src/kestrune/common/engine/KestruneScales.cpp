// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneScales.h"

#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr float kConcertPitch = 440.0f;
constexpr float kSemitonesPerCent = 0.01f;

constexpr std::array<std::int32_t, 11> kChromatic{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
constexpr std::array<std::int32_t, 6> kMajor{2, 4, 5, 7, 9, 11};
constexpr std::array<std::int32_t, 6> kMinor{2, 3, 5, 7, 8, 10};
constexpr std::array<std::int32_t, 5> kBlues{3, 5, 6, 7, 10};

constexpr std::array<std::span<const std::int32_t>, kBuiltInScaleNames.size()> kScales{
    kChromatic, kMajor, kMinor, kBlues};

using IntonationRow = std::array<std::int32_t, kDegrees>;
constexpr std::array<IntonationRow, kIntonationNames.size()> kIntonations{
    IntonationRow{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    IntonationRow{0, -29, 4, 16, -14, -2, -10, 2, 14, -16, 18, -12},
    IntonationRow{0, 5, 4, -2, -14, -29, -49, 2, 41, 6, -31, -12},
    IntonationRow{0, -10, 4, -6, -16, -2, -12, 2, -8, -18, -4, -14},
    IntonationRow{0, 30, -20, -50, -45, 2, 23, 6, -14, -43, -70, 10},
    IntonationRow{0, 27, -58, -42, -123, -130, -126, -211, 24, -61, -57, -142},
    IntonationRow{0, -42, 32, 10, -22, 22, 18, 25, -27, -4, 19, -14},
    IntonationRow{0, -12, -44, -66, -88, -110, -132, -164, -176, -198, -220, -242},
    IntonationRow{0, -10, 4, -6, 8, -2, 12, 2, -8, 6, -4, 10},
    IntonationRow{0, -24, -7, 10, -14, 3, -21, -3, -27, -10, 7, -17}};

constexpr std::array<KestruneSourceRange, kSourceTypeNames.size()> kSourceRanges{
    KestruneSourceRange{73.0f, 1318.0f}, KestruneSourceRange{73.0f, 494.0f},
    KestruneSourceRange{165.0f, 1318.0f}, KestruneSourceRange{20.0f, 330.0f},
    KestruneSourceRange{330.0f, 2489.0f}};

/// The entry at an index, which may come from a preset; the first entry for one out of range.
template <class Table>
const auto& entryOrFirst(const Table& table, int index)
{
    const bool inRange = index >= 0 && index < static_cast<int>(table.size());
    return table[inRange ? static_cast<std::size_t>(index) : 0];
}

}  // namespace

std::span<const std::int32_t> builtInScaleDegrees(int scale) noexcept
{
    return entryOrFirst(kScales, scale);
}

std::span<const std::int32_t, kDegrees> intonationCents(int intonation) noexcept
{
    return entryOrFirst(kIntonations, intonation);
}

KestruneTones tonesOf(std::span<const std::int32_t> degrees, int intonation) noexcept
{
    assert(degrees.size() <= kDegrees);
    const auto cents = intonationCents(intonation);
    KestruneTones tones;
    for (const std::int32_t degree : degrees) {
        assert(degree >= 0 && degree < kDegrees);
        const double tone = cents[static_cast<std::size_t>(degree)] / 100.0 + degree;
        tones.values[static_cast<std::size_t>(tones.count++)] = static_cast<float>(tone);
    }
    return tones;
}

KestruneTones tonesOf(int scale, int intonation) noexcept
{
    return tonesOf(builtInScaleDegrees(scale), intonation);
}

KestruneSourceRange sourceRange(int sourceType) noexcept
{
    return entryOrFirst(kSourceRanges, sourceType);
}

float referenceFrequency(int key, float detuneCents) noexcept
{
    const float semitones = static_cast<float>(key) + detuneCents * kSemitonesPerCent;
    return kConcertPitch * std::exp2(semitones / static_cast<float>(kDegrees));
}

}  // namespace orvane
