// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/buffers/ZBuffer.h"

#include "zlib/common/objects/ZException.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

namespace orvane
{

namespace
{

constexpr std::size_t kDigitsPerSample = 8;

std::uint32_t padded(std::uint32_t length)
{
    return (length + 3u) & ~3u;
}

float toSample(float value)
{
    return value;
}
float toSample(std::int8_t value)
{
    return static_cast<float>(value) * 0.0078125f;
}
float toSample(std::int16_t value)
{
    return static_cast<float>(value / 32767.0);
}
float toSample(std::int32_t value)
{
    return static_cast<float>(value / 2147483647.0);
}

/// The nearest number in the range of Integer. An integer that was loaded is stored unchanged.
template <typename Integer>
Integer toInteger(double value)
{
    constexpr double kMin = std::numeric_limits<Integer>::min();
    constexpr double kMax = std::numeric_limits<Integer>::max();
    return static_cast<Integer>(std::nearbyint(std::clamp(value, kMin, kMax)));
}

/// The sample, or 0 for NaN.
double orSilence(float sample)
{
    return std::isnan(sample) ? 0.0 : static_cast<double>(sample);
}

void fromSample(float sample, float& out)
{
    out = sample;
}
void fromSample(float sample, std::int8_t& out)
{
    out = std::bit_cast<std::int8_t>(toInteger<std::uint8_t>((orSilence(sample) + 1.0) * 128.0));
}
void fromSample(float sample, std::int16_t& out)
{
    out = toInteger<std::int16_t>(orSilence(sample) * 32767.0);
}
void fromSample(float sample, std::int32_t& out)
{
    out = toInteger<std::int32_t>(orSilence(sample) * 2147483647.0);
}

/// The part of range that lies in [0, length).
ZRange inside(const ZRange& range, std::int64_t length)
{
    const std::int64_t start = std::clamp<std::int64_t>(range.mStart, 0, length);
    const std::int64_t skipped = start - std::min(range.mStart, start);
    const std::int64_t wanted = std::max<std::int64_t>(range.mLength - skipped, 0);
    return {start, std::min(wanted, length - start)};
}

}  // namespace

void ZBuffer::Release::operator()(float* data) const noexcept
{
    ::operator delete(data, std::align_val_t(kAlignment));
}

ZBuffer::Samples ZBuffer::Allocate(std::uint32_t length)
{
    if (length == 0)
        throw ZException("Error Trying to create a buffer of improper size.");
    constexpr std::uint32_t kMaxLength = std::numeric_limits<std::uint32_t>::max() - 3;
    void* memory = nullptr;
    if (length <= kMaxLength)
        memory = ::operator new(padded(length) * sizeof(float), std::align_val_t(kAlignment),
                                std::nothrow);
    if (!memory)
        throw ZException(ZException::kOutOfMemory, "Unable to allocate zfloat buffer.");
    Samples data(static_cast<float*>(memory));
    std::fill(data.get() + length, data.get() + padded(length), 0.0f);
    return data;
}

ZBuffer::ZBuffer(std::uint32_t length, const char* name)
    : mLength(length)
    , mAllocated(padded(length))
    , mData(Allocate(length))
    , mName(name)
{
    Clear();
}

void ZBuffer::Resize(std::uint32_t length)
{
    mData = Allocate(length);
    mLength = length;
    mAllocated = padded(length);
}

void ZBuffer::Clear() noexcept
{
    std::fill_n(mData.get(), mAllocated, 0.0f);
}

void ZBuffer::ClearRange(const ZRange& range) noexcept
{
    const ZRange part = inside(range, mLength);
    std::fill_n(mData.get() + part.mStart, part.mLength, 0.0f);
}

void ZBuffer::CopyFrom(const ZBuffer& other) noexcept
{
    if (&other != this)
        std::copy_n(other.mData.get(), std::min(mLength, other.mLength), mData.get());
}

void ZBuffer::CopyRange(const ZBuffer& source, const ZRange& range, std::int64_t offset) noexcept
{
    const ZRange from = inside(range, source.mLength);
    const std::int64_t target = offset + (from.mStart - range.mStart);
    const ZRange to = inside({target, from.mLength}, mLength);
    assert(to.mLength <= from.mLength && to.mStart >= target);
    const float* first = source.mData.get() + from.mStart + (to.mStart - target);
    std::memmove(mData.get() + to.mStart, first,
                 static_cast<std::size_t>(to.mLength) * sizeof(float));
}

float ZBuffer::Peak() const noexcept
{
    float peak = 0.0f;
    for (std::uint32_t i = 0; i < mLength; ++i)
        peak = std::max(peak, std::abs(mData[i]));
    return peak;
}

void ZBuffer::Clamp(float min, float max) noexcept
{
    assert(min <= max);
    for (std::uint32_t i = 0; i < mLength; ++i)
        mData[i] = std::clamp(mData[i], min, max);
}

template <typename Format>
void ZBuffer::LoadAs(const Format* source, std::size_t stride, std::size_t offset,
                     std::uint32_t count)
{
    assert(stride >= 1 && (source || count == 0));
    if (count > mLength)
        throw ZException("Trying to load a Zbuffer with too much data.");
    for (std::uint32_t i = 0; i < count; ++i)
        mData[i] = toSample(source[offset + i * stride]);
}

template <typename Format>
void ZBuffer::StoreAs(Format* target, std::size_t stride, std::size_t offset,
                      std::uint32_t count) const
{
    assert(stride >= 1 && (target || count == 0));
    if (count > mLength)
        throw ZException("Trying to store more data than a Zbuffer holds.");
    for (std::uint32_t i = 0; i < count; ++i)
        fromSample(mData[i], target[offset + i * stride]);
}

void ZBuffer::Load(const float* source, std::size_t stride, std::size_t offset, std::uint32_t count)
{
    if (stride == 1 && count <= mLength) {
        std::copy_n(source + offset, count, mData.get());
        return;
    }
    LoadAs(source, stride, offset, count);
}
void ZBuffer::Load(const std::int8_t* source, std::size_t stride, std::size_t offset,
                   std::uint32_t count)
{
    LoadAs(source, stride, offset, count);
}
void ZBuffer::Load(const std::int16_t* source, std::size_t stride, std::size_t offset,
                   std::uint32_t count)
{
    LoadAs(source, stride, offset, count);
}
void ZBuffer::Load(const std::int32_t* source, std::size_t stride, std::size_t offset,
                   std::uint32_t count)
{
    LoadAs(source, stride, offset, count);
}

void ZBuffer::Store(float* target, std::size_t stride, std::size_t offset,
                    std::uint32_t count) const
{
    // A whole channel, as in every block of a host.
    if (stride == 1 && count <= mLength) {
        std::copy_n(mData.get(), count, target + offset);
        return;
    }
    StoreAs(target, stride, offset, count);
}
void ZBuffer::Store(std::int8_t* target, std::size_t stride, std::size_t offset,
                    std::uint32_t count) const
{
    StoreAs(target, stride, offset, count);
}
void ZBuffer::Store(std::int16_t* target, std::size_t stride, std::size_t offset,
                    std::uint32_t count) const
{
    StoreAs(target, stride, offset, count);
}
void ZBuffer::Store(std::int32_t* target, std::size_t stride, std::size_t offset,
                    std::uint32_t count) const
{
    StoreAs(target, stride, offset, count);
}

std::string ZBuffer::EncodeValues() const
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string values;
    values.reserve(mLength * kDigitsPerSample);
    for (std::uint32_t i = 0; i < mLength; ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(mData[i]);
        for (int shift = 28; shift >= 0; shift -= 4)
            values += kDigits[bits >> shift & 15u];
    }
    return values;
}

void ZBuffer::DecodeValues(std::string_view values)
{
    if (values.size() != mLength * kDigitsPerSample)
        throw ZException("Buffer values do not have 8 digits for each sample.");
    std::vector<float> decoded;
    decoded.reserve(mLength);
    for (std::uint32_t i = 0; i < mLength; ++i) {
        const char* first = values.data() + i * kDigitsPerSample;
        std::uint32_t bits = 0;
        const auto result = std::from_chars(first, first + kDigitsPerSample, bits, 16);
        if (result.ec != std::errc() || result.ptr != first + kDigitsPerSample)
            throw ZException("Buffer values hold something else than hex digits.");
        decoded.push_back(std::bit_cast<float>(bits));
    }
    std::copy(decoded.begin(), decoded.end(), mData.get());
}

}  // namespace orvane
