// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/buffers/ZFifoBuffer.h"

#include "zlib/common/buffers/ZBuffer.h"
#include "zlib/common/objects/ZException.h"

#include <cassert>

namespace orvane
{

namespace
{

constexpr std::uint32_t kSampleBytes = sizeof(float);
constexpr std::uint32_t kMaxCapacity =
    1u << 29;  // more samples have more bytes than 32 bits can count

/// The size of the ring; 0, which it refuses, for a capacity above the maximum.
std::uint32_t bytesFor(std::uint32_t capacity)
{
    return capacity <= kMaxCapacity ? capacity * kSampleBytes : 0;
}

/// samples: at most kMaxCapacity.
std::uint32_t bytesOf(std::span<const float> samples)
{
    return static_cast<std::uint32_t>(samples.size_bytes());
}

}  // namespace

ZFifoBuffer::ZFifoBuffer(std::uint32_t capacity)
    : mCapacity(capacity)
    , mRing(bytesFor(capacity))
{
}

std::uint32_t ZFifoBuffer::Free() const noexcept
{
    return mRing.Free() / kSampleBytes;
}

std::uint32_t ZFifoBuffer::Available() const noexcept
{
    return mRing.Available() / kSampleBytes;
}

void ZFifoBuffer::Write(const ZBuffer& buffer, std::uint32_t count)
{
    assert(count <= buffer.Length());
    Write({buffer.Data(), count});
}

void ZFifoBuffer::Read(ZBuffer& buffer, std::uint32_t count)
{
    assert(count <= buffer.Length());
    Read({buffer.Data(), count});
}

void ZFifoBuffer::Write(std::span<const float> samples)
{
    if (samples.size() > mCapacity || !mRing.Write(samples.data(), bytesOf(samples)))
        throw ZException("Read first");
}

void ZFifoBuffer::Read(std::span<float> samples)
{
    if (samples.size() > mCapacity || !mRing.Read(samples.data(), bytesOf(samples)))
        throw ZException("Write first");
}

}  // namespace orvane
