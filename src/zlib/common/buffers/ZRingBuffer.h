// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvane
{

/// A FIFO of bytes between one producer thread and one consumer thread, without a lock: each thread
/// writes one of the two indices. Indices run modulo twice the size, so that a full ring differs
/// from an empty one and all bytes can be used.
class ZRingBuffer
{
public:
    /// size: in bytes. Throws ZException unless it is a power of two, and kOutOfMemory when there
    /// is no memory. [setup]
    explicit ZRingBuffer(std::uint32_t size);
    ZRingBuffer(const ZRingBuffer&) = delete;
    ZRingBuffer& operator=(const ZRingBuffer&) = delete;

    /// The number of bytes that can be written. Between two writes of the producer it can only
    /// grow. [producer, consumer]
    [[nodiscard]] std::uint32_t Free() const noexcept { return mSize - Available(); }
    /// The number of bytes that can be read. Between two reads of the consumer it can only grow. A
    /// third thread could read two indices that do not belong together. [producer, consumer]
    [[nodiscard]] std::uint32_t Available() const noexcept;

    /// Appends count bytes. Returns false, with nothing written, when there is no room. [producer]
    [[nodiscard]] bool Write(const void* bytes, std::uint32_t count) noexcept;
    /// Removes count bytes and copies them. Returns false, with nothing read, when there are fewer.
    /// [consumer]
    [[nodiscard]] bool Read(void* bytes, std::uint32_t count) noexcept;
    /// Empties the ring and sets both indices to 0. [setup]
    void Reset() noexcept;

private:
    static constexpr std::size_t kCacheLine = 64;

    struct Release
    {
        void operator()(std::byte* bytes) const noexcept;
    };

    std::uint32_t mSize;
    std::uint32_t mBigMask;                         // 2 x size - 1
    std::uint32_t mSmallMask;                       // size - 1
    std::unique_ptr<std::byte[], Release> mBuffer;  // begins at a cache line
    // On different cache lines, so that the threads do not slow each other down.
    alignas(kCacheLine) std::atomic<std::uint32_t> mWriteIndex = 0;  // written by the producer
    alignas(kCacheLine) std::atomic<std::uint32_t> mReadIndex = 0;   // written by the consumer
};

}  // namespace orvane
