// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/buffers/ZBuffer.h"

#include "support/ExpectZException.h"

#include <bit>

using namespace orvane;

namespace
{

using Samples = std::vector<float>;

void set(ZBuffer& buffer, const Samples& samples)
{
    std::copy(samples.begin(), samples.end(), buffer.Data());
}

Samples samplesOf(const ZBuffer& buffer)
{
    return {buffer.Data(), buffer.Data() + buffer.Length()};
}

/// The samples as Format, stored one after the other.
template <typename Format>
std::vector<Format> stored(const Samples& samples)
{
    ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "ZBuffer");
    set(buffer, samples);
    std::vector<Format> target(samples.size());
    buffer.Store(target.data(), 1, 0, buffer.Length());
    return target;
}

/// The samples that a buffer has after it loaded values.
template <typename Format>
Samples loaded(const std::vector<Format>& values)
{
    ZBuffer buffer(static_cast<std::uint32_t>(values.size()), "ZBuffer");
    buffer.Load(values.data(), 1, 0, buffer.Length());
    return samplesOf(buffer);
}

}  // namespace

TEST(ZBufferTest, IsSilentAlignedAndPadded)
{
    for (const std::uint32_t length : {1u, 4u, 5u, 1023u}) {
        const ZBuffer buffer(length, "ZBuffer");
        EXPECT_EQ(buffer.Allocated(), (length + 3) / 4 * 4);
        EXPECT_EQ(std::bit_cast<std::uintptr_t>(buffer.Data()) % ZBuffer::kAlignment, 0u);
        EXPECT_EQ(std::count(buffer.Data(), buffer.Data() + buffer.Allocated(), 0.0f),
                  buffer.Allocated());
    }
}

TEST(ZBufferTest, RefusesImproperLengthsAndCounts)
{
    const char* const improper = "Error Trying to create a buffer of improper size.";
    expectZException(improper, [] { ZBuffer buffer(0, "ZBuffer"); });
    expectZException(ZException::kOutOfMemory, "Unable to allocate zfloat buffer.",
                     [] { ZBuffer buffer(std::numeric_limits<std::uint32_t>::max(), "ZBuffer"); });
    ZBuffer buffer(3, "ZBuffer");
    set(buffer, {1, 2, 3});
    Samples block(4, 9.0f);
    expectZException(improper, [&] { buffer.Resize(0); });
    expectZException("Trying to load a Zbuffer with too much data.",
                     [&] { buffer.Load(block.data(), 1, 0, 4); });
    expectZException("Trying to store more data than a Zbuffer holds.",
                     [&] { buffer.Store(block.data(), 1, 0, 4); });
    EXPECT_EQ(samplesOf(buffer), (Samples{1, 2, 3}));
    EXPECT_EQ(block, Samples(4, 9.0f));
    buffer.Resize(5);
    EXPECT_EQ(buffer.Data()[7], 0.0f);
}

TEST(ZBufferTest, CopyRangeStaysInsideBothBuffers)
{
    ZBuffer source(5, "ZBuffer");
    set(source, {1, 2, 3, 4, 5});
    const std::tuple<ZRange, std::int64_t, Samples> cases[] = {
        {{1, 3}, 0, {2, 3, 4, 0}},  {{0, 5}, 2, {0, 0, 1, 2}}, {{-1, 3}, 0, {0, 1, 2, 0}},
        {{1, 3}, -1, {3, 4, 0, 0}}, {{3, 9}, 1, {0, 4, 5, 0}}, {{-3, 9}, -4, {2, 3, 4, 5}},
    };
    for (const auto& [range, offset, result] : cases) {
        ZBuffer buffer(4, "ZBuffer");
        buffer.CopyRange(source, range, offset);
        EXPECT_EQ(samplesOf(buffer), result) << range.mStart << " to " << offset;
    }
    source.CopyRange(source, {0, 4}, 1);
    EXPECT_EQ(samplesOf(source), (Samples{1, 1, 2, 3, 4}));
}

TEST(ZBufferTest, IntegersReadBackAndAreClamped)
{
    EXPECT_EQ(loaded<std::int8_t>({-128, 0, 64}), (Samples{-1.0f, 0.0f, 0.5f}));
    EXPECT_EQ(loaded<std::int32_t>({-2147483647, 0, 2147483647}), (Samples{-1, 0, 1}));
    std::vector<std::int16_t> all(65535);
    std::iota(all.begin(), all.end(), std::int16_t{-32767});
    EXPECT_EQ(loaded(all).back(), 1.0f);
    EXPECT_EQ(stored<std::int16_t>(loaded(all)), all);

    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const Samples beyond{2.0f, -kInfinity, std::numeric_limits<float>::quiet_NaN(), 1e30f};
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(stored<std::int16_t>(beyond), (std::vector<std::int16_t>{32767, -32768, 0, 32767}));
    EXPECT_EQ(stored<std::int32_t>(beyond), (std::vector<std::int32_t>{kMax, kMin, 0, kMax}));
    // Offset binary: 255, 0, 128, 255.
    EXPECT_EQ(stored<std::int8_t>(beyond), (std::vector<std::int8_t>{-1, 0, -128, -1}));
}
