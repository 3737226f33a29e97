// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zdsp/common/ZDSPObject.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <cstdint>
#include <memory>

namespace orvane
{

/// A delay line whose length is a power of two. Read gives the samples that were written if the
/// line is at least as long as delay and block together.
class ZDelayBuffer : public ZDSPObject
{
public:
    /// A silent line of at least that many samples. Throws ZException kOutOfMemory when there is no
    /// memory. [setup]
    [[nodiscard]] static std::unique_ptr<ZDelayBuffer> Create(std::uint32_t samples);

    /// The length of the line in samples.
    [[nodiscard]] std::uint32_t Size() const noexcept { return mBuffer.Length(); }

    /// Appends the samples of input; input.Length() <= Size(). [audio thread]
    void Write(const ZBuffer& input) noexcept;
    /// Fills output so that its last sample is the one that was written delay samples before the
    /// newest; output.Length() <= Size(). [audio thread]
    void Read(ZBuffer& output, std::uint32_t delay) const noexcept;
    /// Makes the line silent. [audio thread]
    void Clear() noexcept;

private:
    explicit ZDelayBuffer(std::uint32_t size);

    ZBuffer mBuffer;
    std::uint32_t mWriteIndex = 0;  // of the newest sample; masked where it is used
    std::uint32_t mMask;            // size - 1
};

}  // namespace orvane
