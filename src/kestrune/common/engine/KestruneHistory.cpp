// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneHistory.h"

#include <algorithm>
#include <cassert>

namespace orvane
{

void KestruneHistory::Allocate(int length)
{
    assert(length > 0);
    mLength = length;
    mSamples.assign(2 * static_cast<std::size_t>(length), 0.0f);
    Restart(0);
}

void KestruneHistory::Restart(std::int64_t nextIndex) noexcept
{
    std::fill_n(mSamples.begin(), mLength, 0.0f);
    mEnd = mLength;
    mNext = nextIndex;
}

void KestruneHistory::MakeRoom() noexcept
{
    std::copy(mSamples.begin() + mLength, mSamples.end(), mSamples.begin());
    mEnd = mLength;
}

const float* KestruneHistory::From(std::int64_t index) const noexcept
{
    const auto age = static_cast<int>(mNext - index);
    assert(age >= 1 && age <= mLength);
    return mSamples.data() + (mEnd - age);
}

}  // namespace orvane
