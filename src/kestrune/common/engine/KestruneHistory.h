// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

namespace orvane
{

/// The last samples of a signal, each with its index, in one run of memory: sums over a stretch
/// need no wrap.
class KestruneHistory
{
public:
    /// Keeps length samples. [setup]
    void Allocate(int length);
    /// Sets all samples to 0; the next one to come has this index. [audio thread]
    void Restart(std::int64_t nextIndex) noexcept;
    /// [audio thread]
    void Append(float sample) noexcept
    {
        if (mEnd == 2 * mLength)
            MakeRoom();
        mSamples[static_cast<std::size_t>(mEnd++)] = sample;
        ++mNext;
    }

    /// Index of the newest sample. [audio thread]
    [[nodiscard]] std::int64_t Newest() const noexcept { return mNext - 1; }
    [[nodiscard]] int Length() const noexcept { return mLength; }
    /// Points to the sample with the given index, which must be one of the last Length(); those
    /// after it up to the newest follow. [audio thread]
    [[nodiscard]] const float* From(std::int64_t index) const noexcept;

private:
    void MakeRoom() noexcept;

    int mLength = 0;
    int mEnd = 0;  // of what is filled in mSamples, which is twice as long as what is kept
    std::int64_t mNext = 0;
    std::vector<float> mSamples;
};

}  // namespace orvane
