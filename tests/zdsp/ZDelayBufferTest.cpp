#include "zdsp/common/ZDelayBuffer.h"

#include "support/RealtimeGuard.h"
#include "zlib/common/ZException.h"

#include <cstdint>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

/// Writes samples that count on from next.
void writeCounting(ZDelayBuffer& delay, std::uint32_t samples, float& next)
{
    ZBuffer block(samples, "ZBuffer");
    for (std::uint32_t i = 0; i < samples; ++i)
        block.Data()[i] = next++;
    delay.Write(block);
}

}  // namespace

TEST(ZDelayBufferTest, LineIsTheNextPowerOfTwo)
{
    EXPECT_EQ(ZDelayBuffer::Create(0)->Size(), 1u);
    EXPECT_EQ(ZDelayBuffer::Create(1000)->Size(), 1024u);
    EXPECT_EQ(ZDelayBuffer::Create(1024)->Size(), 1024u);
    EXPECT_THROW(ZDelayBuffer::Create(0xFFFFFFFFu), ZException);
}

TEST(ZDelayBufferTest, GivesEachSampleAfterTheDelayAndSilenceBefore)
{
    for (const std::uint32_t blockSize : {1u, 100u, 256u, 300u}) {
        for (const std::uint32_t delaySamples : {0u, 1u, 512u, 1024u - blockSize}) {
            SCOPED_TRACE(testing::Message() << blockSize << " by " << delaySamples);
            const auto delay = ZDelayBuffer::Create(1024);
            ZBuffer out(blockSize, "ZBuffer");
            float next = 1.0f;
            std::int64_t position = 1 - static_cast<std::int64_t>(delaySamples);
            for (int block = 0; block < 20; ++block) {
                writeCounting(*delay, blockSize, next);
                delay->Read(out, delaySamples);
                for (std::uint32_t i = 0; i < blockSize; ++i, ++position)
                    ASSERT_EQ(out.Data()[i], position > 0 ? static_cast<float>(position) : 0.0f);
            }
        }
    }
}

TEST(ZDelayBufferTest, ClearLeavesNoEcho)
{
    const auto delay = ZDelayBuffer::Create(64);
    float next = 1.0f;
    writeCounting(*delay, 50, next);
    delay->Clear();
    ZBuffer out(64, "ZBuffer");
    delay->Read(out, 0);
    EXPECT_EQ(out.Peak(), 0.0f);
}

TEST(ZDelayBufferTest, NeitherAllocatesNorWaits)
{
    const auto delay = ZDelayBuffer::Create(64);
    ZBuffer block(48, "ZBuffer");
    const RealtimeGuard guard;
    for (int i = 0; i < 4; ++i) {
        delay->Write(block);
        delay->Read(block, 16);
    }
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

}  // namespace orvane
