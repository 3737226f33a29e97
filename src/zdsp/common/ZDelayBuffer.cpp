// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDelayBuffer.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <new>

namespace orvane
{

namespace
{

constexpr std::uint32_t kMaxSize = 1u << 31;

}  // namespace

std::unique_ptr<ZDelayBuffer> ZDelayBuffer::Create(std::uint32_t samples)
{
    if (samples > kMaxSize)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate zfloat buffer.");
    std::unique_ptr<ZDelayBuffer> delay(new (std::nothrow) ZDelayBuffer(std::bit_ceil(samples)));
    if (!delay)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate a ZDelayBuffer.");
    return delay;
}

ZDelayBuffer::ZDelayBuffer(std::uint32_t size)
    : ZDSPObject("ZDelayBuffer")
    , mBuffer(size, "ZBuffer")
    , mMask(size - 1)
{
}

void ZDelayBuffer::Write(const ZBuffer& input) noexcept
{
    assert(input.Length() <= Size());
    const std::uint32_t start = (mWriteIndex + 1) & mMask;
    const std::uint32_t first = std::min(input.Length(), Size() - start);
    std::copy_n(input.Data(), first, mBuffer.Data() + start);
    std::copy_n(input.Data() + first, input.Length() - first, mBuffer.Data());
    mWriteIndex += input.Length();
}

void ZDelayBuffer::Read(ZBuffer& output, std::uint32_t delay) const noexcept
{
    assert(output.Length() <= Size());
    const std::uint32_t start = (mWriteIndex - output.Length() - delay + 1) & mMask;
    const std::uint32_t first = std::min(output.Length(), Size() - start);
    std::copy_n(mBuffer.Data() + start, first, output.Data());
    std::copy_n(mBuffer.Data(), output.Length() - first, output.Data() + first);
}

void ZDelayBuffer::Clear() noexcept
{
    mBuffer.Clear();
    mWriteIndex = 0;
}

}  // namespace orvane
