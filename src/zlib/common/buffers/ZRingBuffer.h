// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvane
{

/// A byte FIFO between one producer thread and one consumer thread, without a lock: each index is
/// written by one side alone. Indices run modulo twice the size, which tells full from empty with
/// no byte to spare.
class ZRingBuffer
{
public:
    /// size in bytes, a power of two; else throws ZException code -1, and code 2 when there is no
    /// memory. [setup]
    explicit ZRingBuffer(std::uint32_t size);
    ZRingBuffer(const ZRingBuffer&) = delete;
    ZRingBuffer& operator=(const ZRingBuffer&) = delete;

    [[nodiscard]] std::uint32_t Size() const noexcept { return mSize; }
    /// Bytes that can be written. Only ever grows under the producer's eyes. [producer, consumer]
    [[nodiscard]] std::uint32_t Free() const noexcept { return mSize - Available(); }
    /// Bytes that can be read. Only ever grows under the consumer's eyes. A third thread could
    /// catch the two indices at moments that do not belong together. [producer, consumer]
    [[nodiscard]] std::uint32_t Available() const noexcept;

    /// Takes all the bytes, or none and gives false when there is no room. [producer]
    [[nodiscard]] bool Write(const void* bytes, std::uint32_t count) noexcept;
    /// Gives all the bytes, or none and false when there are fewer. [consumer]
    [[nodiscard]] bool Read(void* bytes, std::uint32_t count) noexcept;
    /// Empties it, both indices 0. [setup]
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
    // Apart in memory, so that the two threads do not take the line from each other.
    alignas(kCacheLine) std::atomic<std::uint32_t> mWriteIndex = 0;  // written by the producer
    alignas(kCacheLine) std::atomic<std::uint32_t> mReadIndex = 0;   // written by the consumer
};

}  // namespace orvane
