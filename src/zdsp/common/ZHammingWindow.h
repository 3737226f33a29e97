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
    /// Throws as SetLength does. [setup]
    [[nodiscard]] static std::unique_ptr<ZHammingWindow> Create(std::uint32_t length);

    /// A window of length samples, its ends at 0.08 and its middle at 1; a single sample is 1.
    /// Throws ZException: code -1 for a length of 0, code 2 when there is no memory. [setup]
    virtual void SetLength(std::uint32_t length);
    /// Divides the window by the sum of the squares of every (length / divisions)-th sample, from
    /// the first on, so that frames windowed twice and overlapped that often keep their level.
    /// Multiplies the inverse. divisions from 1 to the length. [setup]
    virtual void NormalizePower(std::uint32_t divisions) noexcept;
    /// The same by the plain sum. [setup]
    virtual void NormalizeSum(std::uint32_t divisions) noexcept;
    /// out = source x window, as many samples as the window has. [audio thread]
    virtual void ApplyTo(const ZBuffer& source, ZBuffer& out) noexcept;
    /// buffer x window, over the buffer, which is no longer than the window. [audio thread]
    virtual void Apply(ZBuffer& buffer) noexcept;
    /// out = source / window, over the source, which is no longer than the window. [audio thread]
    virtual void UnapplyTo(const ZBuffer& source, ZBuffer& out) noexcept;

    [[nodiscard]] const ZBuffer& Window() const noexcept { return *mWindow; }

private:
    ZHammingWindow();
    void Normalize(float sum) noexcept;

    std::unique_ptr<ZGain> mGain;
    std::unique_ptr<ZBuffer> mWindow;
    std::unique_ptr<ZBuffer> mInverseWindow;
};

}  // namespace orvane
