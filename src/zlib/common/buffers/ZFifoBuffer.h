// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZRingBuffer.h"

#include <cstdint>
#include <span>

namespace orvane
{

class ZBuffer;

/// A FIFO of samples between one producer thread and one consumer thread, without a lock. Both ends
/// of a network have one per channel.
class ZFifoBuffer
{
public:
    /// capacity: in samples. Throws ZException unless it is a power of two up to 2^29, and
    /// kOutOfMemory when there is no memory. [setup]
    explicit ZFifoBuffer(std::uint32_t capacity);

    [[nodiscard]] std::uint32_t Capacity() const noexcept { return mCapacity; }
    /// The number of samples that can be written. [producer, consumer]
    [[nodiscard]] std::uint32_t Free() const noexcept;
    /// The number of samples that can be read. [producer, consumer]
    [[nodiscard]] std::uint32_t Available() const noexcept;

    /// Appends the first count samples of buffer; count <= its length. Throws ZException, with
    /// nothing written, when count is above Free(); callers check that first. [producer]
    void Write(const ZBuffer& buffer, std::uint32_t count);
    /// Removes the next count samples and copies them to the start of buffer; count <= its length.
    /// Throws ZException, with nothing read, when count is above Available(); callers check that
    /// first. [consumer]
    void Read(ZBuffer& buffer, std::uint32_t count);
    /// The same for all of a span of samples. [producer; consumer]
    void Write(std::span<const float> samples);
    void Read(std::span<float> samples);
    /// Empties the FIFO. [setup]
    void Reset() noexcept { mRing.Reset(); }

private:
    std::uint32_t mCapacity;
    ZRingBuffer mRing;
};

}  // namespace orvane
