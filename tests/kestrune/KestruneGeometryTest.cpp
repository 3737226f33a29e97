#include "kestrune/common/KestruneGeometry.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace orvane
{

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
    for (const auto& [rate, block] : {std::pair{0.0f, 512},
                                      {-44100.0f, 512},
                                      {4000.0f, 46},
                                      {1.0e6f, 512},
                                      {std::numeric_limits<float>::quiet_NaN(), 512},
                                      {44100.0f, 0},
                                      {44100.0f, 100000}})
        EXPECT_FALSE(KestruneGeometry::Supports(rate, block)) << rate << ", " << block;
}

}  // namespace orvane
