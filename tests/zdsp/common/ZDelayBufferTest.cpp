// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZDelayBuffer.h"

#include "support/Test.h"
#include "zlib/common/objects/ZException.h"

using namespace orvane;

TEST(ZDelayBufferTest, DelaysEachSampleInTheNextPowerOfTwo)
{
    for (const std::uint32_t blockSize : {1u, 100u, 256u, 300u}) {
        for (const std::uint32_t delaySamples : {0u, 1u, 512u, 1024u - blockSize}) {
            SCOPED_TRACE(testing::Message() << blockSize << " by " << delaySamples);
            const auto delay = ZDelayBuffer::Create(1024);
            ZBuffer block(blockSize, "ZBuffer");
            for (int round = 0; round < 2; ++round) {
                float written = 0.0f;
                float read = -static_cast<float>(delaySamples);
                for (int turn = 0; turn < 20; ++turn) {
                    for (std::uint32_t i = 0; i < blockSize; ++i)
                        block.Data()[i] = ++written;
                    delay->Write(block);
                    delay->Read(block, delaySamples);
                    for (std::uint32_t i = 0; i < blockSize; ++i)
                        ASSERT_EQ(block.Data()[i], ++read > 0.0f ? read : 0.0f);
                }
                delay->Clear();
            }
        }
    }
    EXPECT_EQ(ZDelayBuffer::Create(0)->Size(), 1u);
    EXPECT_EQ(ZDelayBuffer::Create(1000)->Size(), 1024u);
    EXPECT_EQ(ZDelayBuffer::Create(1024)->Size(), 1024u);
    EXPECT_THROW(std::ignore = ZDelayBuffer::Create(0xFFFFFFFFu), ZException);
}
