#include "zlib/common/ZBuffer.h"

#include "support/ExpectZException.h"
#include "support/RealtimeGuard.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

void set(ZBuffer& buffer, const std::vector<float>& samples)
{
    std::copy(samples.begin(), samples.end(), buffer.Data());
}

std::vector<float> samplesOf(const ZBuffer& buffer)
{
    return {buffer.Data(), buffer.Data() + buffer.Length()};
}

/// The samples as Format, stored one after the other.
template <typename Format>
std::vector<Format> stored(const std::vector<float>& samples)
{
    ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "ZBuffer");
    set(buffer, samples);
    std::vector<Format> target(samples.size());
    buffer.Store(target.data(), 1, 0, buffer.Length());
    return target;
}

/// The samples that a buffer has after it loaded values.
template <typename Format>
std::vector<float> loaded(const std::vector<Format>& values)
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
        EXPECT_EQ(buffer.Length(), length);
        EXPECT_EQ(buffer.Allocated(), (length + 3) / 4 * 4);
        EXPECT_EQ(std::bit_cast<std::uintptr_t>(buffer.Data()) % ZBuffer::kAlignment, 0u);
        for (std::uint32_t i = 0; i < buffer.Allocated(); ++i)
            EXPECT_EQ(buffer.Data()[i], 0.0f);
    }
}

TEST(ZBufferTest, RefusesALengthItCannotHaveAndStaysAsItWas)
{
    const char* const improper = "Error Trying to create a buffer of improper size.";
    expectZException(-1, improper, [] { ZBuffer buffer(0, "ZBuffer"); });
    expectZException(2, "Unable to allocate zfloat buffer.",
                     [] { ZBuffer buffer(std::numeric_limits<std::uint32_t>::max(), "ZBuffer"); });
    ZBuffer buffer(3, "ZBuffer");
    set(buffer, {1, 2, 3});
    expectZException(-1, improper, [&] { buffer.Resize(0); });
    EXPECT_EQ(samplesOf(buffer), (std::vector<float>{1, 2, 3}));
    buffer.Resize(5);
    EXPECT_EQ(buffer.Length(), 5u);
    EXPECT_EQ(buffer.Data()[7], 0.0f);
}

TEST(ZBufferTest, CopyRangeMovesWhatBothBuffersReach)
{
    ZBuffer source(5, "ZBuffer");
    set(source, {1, 2, 3, 4, 5});
    const struct
    {
        ZRange range;
        std::int64_t offset;
        std::vector<float> result;
    } cases[] = {
        {{1, 3}, 0, {2, 3, 4, 0}},  {{0, 5}, 2, {0, 0, 1, 2}}, {{-1, 3}, 0, {0, 1, 2, 0}},
        {{1, 3}, -1, {3, 4, 0, 0}}, {{3, 9}, 1, {0, 4, 5, 0}}, {{-3, 9}, -4, {2, 3, 4, 5}},
    };
    for (const auto& [range, offset, result] : cases) {
        ZBuffer buffer(4, "ZBuffer");
        buffer.CopyRange(source, range, offset);
        EXPECT_EQ(samplesOf(buffer), result) << range.mStart << " to " << offset;
    }
    source.CopyRange(source, {0, 4}, 1);
    EXPECT_EQ(samplesOf(source), (std::vector<float>{1, 1, 2, 3, 4}));
}

TEST(ZBufferTest, IntegersHaveTheirScalesAndComeBackAsTheyWere)
{
    EXPECT_EQ(loaded<std::int8_t>({-128, 0, 64}), (std::vector<float>{-1.0f, 0.0f, 0.5f}));
    EXPECT_EQ(loaded<std::int16_t>({-32767, 0, 32767}), (std::vector<float>{-1, 0, 1}));
    EXPECT_EQ(loaded<std::int32_t>({-2147483647, 0, 2147483647}), (std::vector<float>{-1, 0, 1}));

    std::vector<std::int16_t> all;
    for (int value = -32767; value <= 32767; ++value)
        all.push_back(static_cast<std::int16_t>(value));
    EXPECT_EQ(stored<std::int16_t>(loaded(all)), all);
}

TEST(ZBufferTest, IntegersStopAtTheirEndsAndTakeNoNumberForSilence)
{
    const std::vector<float> samples{1.0f, -1.0f, 2.0f, -2.0f, kInfinity, -kInfinity, kNan, 1e30f};
    EXPECT_EQ(stored<std::int16_t>(samples),
              (std::vector<std::int16_t>{32767, -32767, 32767, -32768, 32767, -32768, 0, 32767}));
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(stored<std::int32_t>(samples),
              (std::vector<std::int32_t>{kMax, -kMax, kMax, kMin, kMax, kMin, 0, kMax}));
    std::vector<int> bytes;
    for (const std::int8_t byte : stored<std::int8_t>(samples))
        bytes.push_back(std::bit_cast<std::uint8_t>(byte));
    EXPECT_EQ(bytes, (std::vector<int>{255, 0, 255, 0, 255, 0, 128, 255}));
}

TEST(ZBufferTest, RefusesMoreThanItHolds)
{
    ZBuffer buffer(2, "ZBuffer");
    std::array<float, 3> block{1.0f, 2.0f, 3.0f};
    expectZException(-1, "Trying to load a Zbuffer with too much data.",
                     [&] { buffer.Load(block.data(), 1, 0, 3); });
    EXPECT_EQ(samplesOf(buffer), (std::vector<float>{0, 0}));
    expectZException(-1, "Trying to store more data than a Zbuffer holds.",
                     [&] { buffer.Store(block.data(), 1, 0, 3); });
    EXPECT_EQ(block[0], 1.0f);
}

TEST(ZBufferTest, WorkOnSamplesNeitherAllocatesNorWaits)
{
    ZBuffer buffer(64, "ZBuffer");
    ZBuffer other(64, "ZBuffer");
    std::array<float, 64> block{};
    const RealtimeGuard guard;
    buffer.Load(block.data(), 1, 0, 64);
    buffer.Store(block.data(), 1, 0, 64);
    other.CopyFrom(buffer);
    other.CopyRange(buffer, {0, 8}, 4);
    other.Clamp(-1.0f, 1.0f);
    other.ClearRange({0, 8});
    other.Clear();
    EXPECT_EQ(other.Peak(), 0.0f);
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

}  // namespace orvane
