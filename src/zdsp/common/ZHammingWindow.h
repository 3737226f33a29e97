// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zdsp/common/ZGain.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// A Hamming window in its symmetric form, and its inverse.
class ZHammingWindow : public ZDSPObject
{
public:
    /// A window of length samples. Throws as SetLength does. [setup]
    [[nodiscard]] static std::unique_ptr<ZHammingWindow> Create(std::uint32_t length);

    /// Makes a window of length samples with 0.08 at the ends and 1 in the middle; a single sample
    /// is 1. Throws ZException for a length of 0 and kOutOfMemory when there is no memory. [setup]
    virtual void SetLength(std::uint32_t length);
    /// Divides the window by the sum of the squares of every (length / divisions)-th sample, from
    /// the first sample on, and multiplies the inverse by that sum. Frames that are windowed twice
    /// and overlap that many times then keep their level. divisions: 0 counts as 1, and more than
    /// the length takes every sample. [setup]
    virtual void NormalizePower(std::uint32_t divisions) noexcept;
    /// The same by the sum of the samples themselves. [setup]
    virtual void NormalizeSum(std::uint32_t divisions) noexcept;
    /// out = source x window, over the length of the window. [audio thread]
    virtual void ApplyTo(const ZBuffer& source, ZBuffer& out) noexcept;
    /// buffer x window, over the length of the buffer, at most that of the window. [audio thread]
    virtual void Apply(ZBuffer& buffer) noexcept;
    /// out = source / window, over the length of source, at most that of the window. [audio thread]
    virtual void UnapplyTo(const ZBuffer& source, ZBuffer& out) noexcept;

    /// The samples of the window. [any thread]
    [[nodiscard]] const ZBuffer& Window() const noexcept { return *mWindow; }

private:
    ZHammingWindow();
    void Normalize(float sum) noexcept;

    std::unique_ptr<ZGain> mGain;
    std::unique_ptr<ZBuffer> mWindow;
    std::unique_ptr<ZBuffer> mInverseWindow;
};

}  // namespace orvane
