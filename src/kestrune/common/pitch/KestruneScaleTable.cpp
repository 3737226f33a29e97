// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneScaleTable.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace orvane
{

namespace
{

constexpr float kSet = 1.0f;
constexpr int kBuiltInScales = static_cast<int>(kBuiltInScaleNames.size());

template <class Flag>
std::span<Flag> rowOf(std::span<Flag> archive, int row)
{
    assert(row >= 0 && std::ssize(archive) >= (row + 1) * kDegrees);
    return archive.subspan(static_cast<std::size_t>(row * kDegrees), kDegrees);
}

bool isDegree(std::int32_t number)
{
    return number >= 0 && number < kDegrees;
}

}  // namespace

std::vector<std::int32_t> degreesOf(std::span<const float> flags)
{
    assert(flags.size() <= kDegrees);
    std::vector<std::int32_t> degrees;
    for (std::size_t degree = 0; degree < flags.size(); ++degree)
        if (flags[degree] == kSet)
            degrees.push_back(static_cast<std::int32_t>(degree));
    return degrees;
}

void flagDegrees(std::span<float> flags, std::span<const std::int32_t> degrees)
{
    assert(flags.size() == kDegrees);
    std::fill(flags.begin(), flags.end(), 0.0f);
    flags[0] = kSet;
    for (const std::int32_t degree : degrees) {
        assert(isDegree(degree));
        flags[static_cast<std::size_t>(degree)] = kSet;
    }
}

void KestruneScaleTable::AddBuiltInScales()
{
    assert(mScales.empty());
    for (int scale = 0; scale < kBuiltInScales; ++scale)
        Add(builtInScaleDegrees(scale));
}

void KestruneScaleTable::Add(std::span<const std::int32_t> degrees)
{
    std::vector<std::int32_t>& scale = mScales.emplace_back();
    for (const std::int32_t degree : degrees)
        if (isDegree(degree) && std::find(scale.begin(), scale.end(), degree) == scale.end())
            scale.push_back(degree);
}

int KestruneScaleTable::CustomCount() const
{
    return std::max(Count() - kBuiltInScales, 0);
}

std::span<const std::int32_t> KestruneScaleTable::Degrees(int index) const
{
    assert(!mScales.empty());
    const bool isThere = index >= 0 && index < Count();
    return mScales[isThere ? static_cast<std::size_t>(index) : 0];
}

void KestruneScaleTable::Unpack(std::span<const float> archive, int rows)
{
    assert(archive.size() == kArchivedFlags);
    mScales.resize(std::min<std::size_t>(mScales.size(), kBuiltInScales));
    for (int row = 0; row < std::min(rows, kCustomRows); ++row)
        Add(degreesOf(rowOf(archive, row)));
}

void KestruneScaleTable::Pack(std::span<float> archive, int rows) const
{
    assert(archive.size() == kArchivedFlags);
    const int written = std::min({rows, kCustomRows, CustomCount()});
    for (int row = 0; row < written; ++row)
        flagDegrees(rowOf(archive, row), Degrees(kBuiltInScales + row));
}

}  // namespace orvane
