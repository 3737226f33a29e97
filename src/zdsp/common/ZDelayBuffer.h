// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// A delay line of a power-of-two length. Reading gives what was written as long as the line is at
/// least as long as the delay and the block together.
class ZDelayBuffer : public ZDSPObject
{
public:
    /// A silent line of at least that many samples. Throws ZException code 2 when there is no
    /// memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZDelayBuffer> Create(std::uint32_t samples);

    /// Length of the line in samples.
    [[nodiscard]] std::uint32_t Size() const noexcept { return mBuffer.Length(); }

    /// Takes the samples of input, at most Size() of them. [audio thread]
    void Write(const ZBuffer& input) noexcept;
    /// Fills output, of at most Size() samples, so that its last one is the sample written delay
    /// samples before the newest. [audio thread]
    void Read(ZBuffer& output, std::uint32_t delay) const noexcept;
    /// Back to silence. [audio thread]
    void Clear() noexcept;

private:
    explicit ZDelayBuffer(std::uint32_t size);

    ZBuffer mBuffer;
    std::uint32_t mWriteIndex = 0;  // of the newest sample, counting on without wrap
    std::uint32_t mMask;            // size - 1
};

}  // namespace orvane
