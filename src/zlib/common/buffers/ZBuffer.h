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

/// One channel of 32-bit float samples, full scale at 1.0: the one block of samples that engine,
/// bays, elements and host path pass around. Vector code may run over the padded length.
/// Used from one thread at a time, unless a user of it says how it shares the samples.
class ZBuffer
{
public:
    /// Bytes. A cache line, which serves every vector unit and keeps two buffers' samples apart.
    static constexpr std::size_t kAlignment = 64;

    /// All samples are 0. Throws ZException: code -1 for a length of 0, code 2 when there is no
    /// memory. [setup]
    ZBuffer(std::uint32_t length, const char* name);
    ZBuffer(const ZBuffer&) = delete;
    ZBuffer& operator=(const ZBuffer&) = delete;

    /// Samples of another count, their values not defined; padding is 0. Throws as the
    /// constructor does, with the buffer left as it was. [setup]
    void Resize(std::uint32_t length);

    /// Samples in use.
    [[nodiscard]] std::uint32_t Length() const noexcept { return mLength; }
    /// Length rounded up to a multiple of 4: samples that may be read and written.
    [[nodiscard]] std::uint32_t Allocated() const noexcept { return mAllocated; }
    [[nodiscard]] float* Data() noexcept { return mData.get(); }
    [[nodiscard]] const float* Data() const noexcept { return mData.get(); }
    [[nodiscard]] const char* Name() const noexcept { return mName.c_str(); }
    void SetName(const char* name) { mName = name; }
    /// In Hz; 0 where nobody has told. Only carried along.
    [[nodiscard]] float SampleRate() const noexcept { return mSampleRate; }
    void SetSampleRate(float sampleRate) noexcept { mSampleRate = sampleRate; }

    /// Zeroes all samples, padding included. [audio thread]
    void Clear() noexcept;
    /// Zeroes the part of the range that lies in the buffer. [audio thread]
    void ClearRange(const ZRange& range) noexcept;
    /// Copies as many samples as the shorter of the two holds. [audio thread]
    void CopyFrom(const ZBuffer& other) noexcept;
    /// Copies range of source to offset here, as far as both reach. source may be this buffer.
    /// [audio thread]
    void CopyRange(const ZBuffer& source, const ZRange& range, std::int64_t offset) noexcept;
    /// The largest absolute sample. [audio thread]
    [[nodiscard]] float Peak() const noexcept;
    /// Limits every sample to min .. max, min <= max. [audio thread]
    void Clamp(float min, float max) noexcept;

    /// Takes count samples from elements offset + i x stride of source, so one channel out of an
    /// interleaved block. Integers are scaled to full scale 1.0. Throws ZException code -1 when
    /// count is above Length(), with nothing loaded. [audio thread, with a count that fits]
    void Load(const float* source, std::size_t stride, std::size_t offset, std::uint32_t count);
    void Load(const std::int8_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);
    void Load(const std::int16_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);
    void Load(const std::int32_t* source, std::size_t stride, std::size_t offset,
              std::uint32_t count);

    /// Writes the first count samples to elements offset + i x stride of target. Integers are
    /// rounded to the nearest, and beyond full scale they stop at the ends of their range; what
    /// is not a number is stored as silence. Bytes go out in offset binary, silence at 128, as
    /// 8-bit sound is kept in files. Throws ZException code -1 when count is above Length(), with
    /// nothing stored. [audio thread, with a count that fits]
    void Store(float* target, std::size_t stride, std::size_t offset, std::uint32_t count) const;
    void Store(std::int8_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;
    void Store(std::int16_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;
    void Store(std::int32_t* target, std::size_t stride, std::size_t offset,
               std::uint32_t count) const;

    /// The samples' bits, 8 lower-case hex digits each, without separators: what an archive keeps.
    [[nodiscard]] std::string EncodeValues() const;
    /// Reads what EncodeValues wrote, bit by bit. Throws ZException code -1 when the text is not
    /// 8 x Length() hex digits, with the samples as they were. [setup]
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
