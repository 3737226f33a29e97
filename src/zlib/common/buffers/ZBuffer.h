// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZRange.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvane
{

/// One channel of 32-bit float samples, full scale at 1.0. Engine, bays, elements and the host path
/// all use it. Vector code may run over the padded length. One thread at a time uses a buffer,
/// unless its owner says how threads share the samples.
class ZBuffer
{
public:
    /// In bytes: a cache line, which is enough for every vector unit and is never shared by two
    /// buffers.
    static constexpr std::size_t kAlignment = 64;

    /// A buffer of length samples, all 0. Throws ZException for a length of 0 and kOutOfMemory when
    /// there is no memory. [setup]
    ZBuffer(std::uint32_t length, const char* name);
    ZBuffer(const ZBuffer&) = delete;
    ZBuffer& operator=(const ZBuffer&) = delete;

    /// Changes the length. The samples are undefined afterwards, the padding is 0. Throws as the
    /// constructor does, with the buffer unchanged. [setup]
    void Resize(std::uint32_t length);

    /// The number of samples in use.
    [[nodiscard]] std::uint32_t Length() const noexcept { return mLength; }
    /// Length rounded up to a multiple of 4: the number of samples that may be read and written.
    [[nodiscard]] std::uint32_t Allocated() const noexcept { return mAllocated; }
    [[nodiscard]] float* Data() noexcept { return mData.get(); }
    [[nodiscard]] const float* Data() const noexcept { return mData.get(); }
    [[nodiscard]] const char* Name() const noexcept { return mName.c_str(); }
    void SetName(const char* name) { mName = name; }
    /// In Hz, 0 when unknown. Archives store it; no operation here uses it.
    [[nodiscard]] float SampleRate() const noexcept { return mSampleRate; }
    void SetSampleRate(float sampleRate) noexcept { mSampleRate = sampleRate; }

    /// Sets all samples to 0, also the padding. [audio thread]
    void Clear() noexcept;
    /// Sets the part of the range that lies in the buffer to 0. [audio thread]
    void ClearRange(const ZRange& range) noexcept;
    /// Copies as many samples as the shorter buffer has. [audio thread]
    void CopyFrom(const ZBuffer& other) noexcept;
    /// Copies the range of source to offset in this buffer; samples outside either buffer are left
    /// out. source may be this buffer. [audio thread]
    void CopyRange(const ZBuffer& source, const ZRange& range, std::int64_t offset) noexcept;
    /// The largest absolute value of a sample. [audio thread]
    [[nodiscard]] float Peak() const noexcept;
    /// Limits every sample to [min, max]; min <= max. [audio thread]
    void Clamp(float min, float max) noexcept;

    /// Reads count samples from the elements offset + i x stride of source, for example one channel
    /// of an interleaved block. Integers are scaled to full scale 1.0. stride >= 1. Throws
    /// ZException, with nothing loaded, when count is above Length(). [audio thread, with a count
    /// that fits]
    void Load(const float* source, std::size_t stride, std::size_t offset, std::uint32_t count);
    void Load(const std::int8_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);
    void Load(const std::int16_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);
    void Load(const std::int32_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);

    /// Writes the first count samples to the elements offset + i x stride of target. Integers are
    /// rounded to the nearest and clamped to their range; NaN is stored as silence. Bytes are in
    /// offset binary, with silence at 128, as in sound files. stride >= 1. Throws ZException, with
    /// nothing stored, when count is above Length(). [audio thread, with a count that fits]
    void Store(float* target, std::size_t stride, std::size_t offset, std::uint32_t count) const;
    void Store(std::int8_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;
    void Store(std::int16_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;
    void Store(std::int32_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;

    /// The samples' bits for an archive: 8 lower-case hex digits each, without separators.
    [[nodiscard]] std::string EncodeValues() const;
    /// Reads the text of EncodeValues, bit by bit. Throws ZException, with the samples unchanged,
    /// when the text is not 8 x Length() hex digits. [setup]
    void DecodeValues(std::string_view values);

private:
    struct Release
    {
        void operator()(float* data) const noexcept;
    };
    using Samples = std::unique_ptr<float[], Release>;

    static Samples Allocate(std::uint32_t length);
    template <typename Format>
    void LoadAs(const Format* source, std::size_t stride, std::size_t offset, std::uint32_t count);
    template <typename Format>
    void StoreAs(Format* target, std::size_t stride, std::size_t offset, std::uint32_t count) const;

    std::uint32_t mLength;
    std::uint32_t mAllocated;
    Samples mData;
    std::string mName;
    float mSampleRate = 0.0f;
};

}  // namespace orvane
