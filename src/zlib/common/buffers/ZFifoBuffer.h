// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZRingBuffer.h"

#include <cstdint>
#include <span>

namespace orvane
{

class ZBuffer;

/// A sample FIFO between one producer thread and one consumer thread, without a lock. It stands at
/// the two ends of a network.
class ZFifoBuffer
{
public:
    /// capacity in samples, a power of two up to 2^29; else throws ZException code -1. [setup]
    explicit ZFifoBuffer(std::uint32_t capacity);

    [[nodiscard]] std::uint32_t Capacity() const noexcept { return mCapacity; }
    /// Samples that can be written. [producer, consumer]
    [[nodiscard]] std::uint32_t Free() const noexcept;
    /// Samples that can be read. [producer, consumer]
    [[nodiscard]] std::uint32_t Available() const noexcept;

    /// Takes the first count samples of buffer, which holds as many. Throws ZException code -1, and
    /// takes none, when count is above Free(); callers look first. [producer]
    void Write(const ZBuffer& buffer, std::uint32_t count);
    /// Gives the next count samples to the start of buffer, which has room for as many. Throws
    /// ZException code -1, and gives none, when count is above Available(); callers look first.
    /// [consumer]
    void Read(ZBuffer& buffer, std::uint32_t count);
    /// The same two with samples that stand in no buffer: all of the run. [producer; consumer]
    void Write(std::span<const float> samples);
    void Read(std::span<float> samples);
    /// Empties it. [setup]
    void Reset() noexcept { mRing.Reset(); }

private:
    std::uint32_t mCapacity;
    ZRingBuffer mRing;
};

}  // namespace orvane
