// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/buffers/ZRingBuffer.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <new>

namespace orvane
{

namespace
{

std::uint32_t checkedSize(std::uint32_t size)
{
    if (!std::has_single_bit(size))
        throw ZException("Fifo Buffer must have power of 2 size");
    return size;
}

}  // namespace

ZRingBuffer::ZRingBuffer(std::uint32_t size)
    : mSize(checkedSize(size))
    , mBigMask(2 * size - 1)
    , mSmallMask(size - 1)
    , mBuffer(new (std::align_val_t(kCacheLine), std::nothrow) std::byte[size]())
{
    if (!mBuffer)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate a ring buffer.");
}

std::uint32_t ZRingBuffer::Available() const noexcept
{
    // Acquire: the bytes that belong to an index are visible once the index is.
    const std::uint32_t write = mWriteIndex.load(std::memory_order_acquire);
    const std::uint32_t read = mReadIndex.load(std::memory_order_acquire);
    const std::uint32_t filled = (write - read) & mBigMask;
    assert(filled <= mSize);
    return filled;
}

void ZRingBuffer::Release::operator()(std::byte* bytes) const noexcept
{
    ::operator delete[](bytes, std::align_val_t(kCacheLine));
}

bool ZRingBuffer::Write(const void* bytes, std::uint32_t count) noexcept
{
    assert(bytes || count == 0);
    if (count > Free())
        return false;
    const std::uint32_t index = mWriteIndex.load(std::memory_order_relaxed);
    const std::uint32_t start = index & mSmallMask;
    const std::uint32_t first = std::min(count, mSize - start);
    const auto* const source = static_cast<const std::byte*>(bytes);
    std::memcpy(mBuffer.get() + start, source, first);
    std::memcpy(mBuffer.get(), source + first, count - first);
    mWriteIndex.store((index + count) & mBigMask, std::memory_order_release);
    return true;
}

bool ZRingBuffer::Read(void* bytes, std::uint32_t count) noexcept
{
    assert(bytes || count == 0);
    if (count > Available())
        return false;
    const std::uint32_t index = mReadIndex.load(std::memory_order_relaxed);
    const std::uint32_t start = index & mSmallMask;
    const std::uint32_t first = std::min(count, mSize - start);
    auto* const target = static_cast<std::byte*>(bytes);
    std::memcpy(target, mBuffer.get() + start, first);
    std::memcpy(target + first, mBuffer.get(), count - first);
    mReadIndex.store((index + count) & mBigMask, std::memory_order_release);
    return true;
}

void ZRingBuffer::Reset() noexcept
{
    mWriteIndex.store(0, std::memory_order_relaxed);
    mReadIndex.store(0, std::memory_order_relaxed);
}

}  // namespace orvane
