#include "zlib/common/ZFifoBuffer.h"

#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZException.h"

#include <cassert>

namespace orvane
{

namespace
{

constexpr std::uint32_t kSampleBytes = sizeof(float);
constexpr std::uint32_t kMaxCapacity = 1u << 29;  // the bytes of more are not counted in 32 bits

/// 0, which no ring takes, for a capacity that cannot be.
std::uint32_t bytesFor(std::uint32_t capacity)
{
    return capacity <= kMaxCapacity ? capacity * kSampleBytes : 0;
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
    if (count > Free() || !mRing.Write(buffer.Data(), count * kSampleBytes))
        throw ZException(-1, "Read first");
}

void ZFifoBuffer::Read(ZBuffer& buffer, std::uint32_t count)
{
    assert(count <= buffer.Length());
    if (count > Available() || !mRing.Read(buffer.Data(), count * kSampleBytes))
        throw ZException(-1, "Write first");
}

}  // namespace orvane
