#include "kestrune/common/KestruneGeometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane
{

namespace
{

struct GeometryRow
{
    float rate;
    int block;
    int maxPeriod;
    int longestFrame;
    int fftSize;
    int inputRing;
    int outputRing;
    int records;
    int latency;
};

constexpr GeometryRow kRows[] = {
    {44100.0f, 512, 2206, 4412, 8192, 18871, 18678, 37, 18359},
    {48000.0f, 557, 2401, 4802, 8192, 20536, 20328, 37, 19979},
    {88200.0f, 1023, 4411, 8822, 16384, 37722, 37340, 37, 36699},
    {96000.0f, 1114, 4801, 9602, 16384, 41063, 40642, 37, 39949},
};

}  // namespace

TEST(KestruneGeometryTest, SizesScaleWithTheRate)
{
    for (const GeometryRow& row : kRows) {
        SCOPED_TRACE(row.rate);
        const auto geometry = KestruneGeometry::For(row.rate, row.block);
        EXPECT_EQ(geometry.maxPeriod, row.maxPeriod);
        EXPECT_EQ(geometry.maxWindowLength, row.longestFrame);
        EXPECT_EQ(geometry.fftSize, row.fftSize);
        EXPECT_EQ(geometry.inputRingLength, row.inputRing);
        EXPECT_EQ(geometry.outputRingLength, row.outputRing);
        EXPECT_EQ(geometry.recordCount, row.records);
        EXPECT_EQ(geometry.latency, row.latency);
    }
}

TEST(KestruneGeometryTest, EveryGrainAndBinFitsAtEveryRate)
{
    for (const float rate : {8000.0f, 11025.0f, 44100.0f, 192000.0f, 384000.0f, 768000.0f}) {
        SCOPED_TRACE(rate);
        const int block = static_cast<int>(rate * 0.0116f + 0.5f);
        ASSERT_TRUE(KestruneGeometry::Supports(rate, block));
        const auto geometry = KestruneGeometry::For(rate, block);
        // A grain of two longest periods, stretched to twice that, with two closing zeros.
        EXPECT_LE(4 * geometry.maxPeriod + 2, geometry.grainCapacity);
        EXPECT_LE(8 * geometry.maxPeriod, geometry.resampledCapacity);
        EXPECT_GE(geometry.fftSize, geometry.maxWindowLength);
        EXPECT_LE(geometry.spectrumBins, geometry.fftSize / 2 + 1);
        // Uncut input for the oldest grain, and room for the newest in the output.
        EXPECT_GE(geometry.inputRingLength, geometry.latency + block);
        EXPECT_GE(geometry.outputRingLength, geometry.resampledCapacity + 2 * block);
    }
}

TEST(KestruneGeometryTest, RatesAndBlocksThatCannotWorkAreRefused)
{
    EXPECT_FALSE(KestruneGeometry::Supports(0.0f, 512));
    EXPECT_FALSE(KestruneGeometry::Supports(-44100.0f, 512));
    EXPECT_FALSE(KestruneGeometry::Supports(4000.0f, 46));
    EXPECT_FALSE(KestruneGeometry::Supports(1.0e6f, 512));
    EXPECT_FALSE(KestruneGeometry::Supports(std::numeric_limits<float>::quiet_NaN(), 512));
    EXPECT_FALSE(KestruneGeometry::Supports(44100.0f, 0));
    EXPECT_FALSE(KestruneGeometry::Supports(44100.0f, 100000));
}

}  // namespace orvane
