#include "zlib/common/ZFifoBuffer.h"

#include "support/ExpectZException.h"
#include "support/RealtimeGuard.h"
#include "zlib/common/ZBuffer.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <thread>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

/// Gives buffer count samples that go on counting from next.
void count(ZBuffer& buffer, std::uint32_t samples, float& next)
{
    for (std::uint32_t i = 0; i < samples; ++i)
        buffer.Data()[i] = next++;
}

}  // namespace

TEST(ZFifoBufferTest, FullAndEmptyAreToldApartAtEveryPosition)
{
    ZFifoBuffer fifo(8);
    ZBuffer block(8, "ZBuffer");
    for (int turn = 0; turn < 20; ++turn) {
        fifo.Write(block, 8);
        EXPECT_EQ(fifo.Free(), 0u);
        EXPECT_EQ(fifo.Available(), 8u);
        fifo.Read(block, 8);
        EXPECT_EQ(fifo.Free(), 8u);
        EXPECT_EQ(fifo.Available(), 0u);
        fifo.Write(block, 3);  // the next turn begins elsewhere
        fifo.Read(block, 3);
    }
}

TEST(ZFifoBufferTest, RefusesWhatDoesNotFitAndStaysAsItWas)
{
    ZFifoBuffer fifo(4);
    ZBuffer block(8, "ZBuffer");
    float next = 1.0f;
    count(block, 3, next);
    fifo.Write(block, 3);
    expectZException(-1, "Read first", [&] { fifo.Write(block, 2); });
    expectZException(-1, "Write first", [&] { fifo.Read(block, 4); });
    block.Clear();
    fifo.Read(block, 3);
    EXPECT_EQ(block.Data()[0], 1.0f);
    EXPECT_EQ(block.Data()[2], 3.0f);
    fifo.Write(block, 3);
    fifo.Reset();
    EXPECT_EQ(fifo.Available(), 0u);
    EXPECT_EQ(fifo.Free(), 4u);
}

TEST(ZFifoBufferTest, TakesPowersOfTwoOnly)
{
    for (const std::uint32_t capacity :
         {0u, 3u, 12u, 1u << 30, std::numeric_limits<std::uint32_t>::max()})
    {
        expectZException(-1, "Fifo Buffer must have power of 2 size",
                         [=] { ZFifoBuffer fifo(capacity); });
    }
    ZFifoBuffer fifo(1);
}

TEST(ZFifoBufferTest, ProducerAndConsumerMeetWithoutALock)
{
    constexpr std::uint32_t kTotal = 200000;
    ZFifoBuffer fifo(64);
    std::thread producer([&] {
        ZBuffer block(64, "ZBuffer");
        float next = 0.0f;
        for (std::uint32_t sent = 0, size = 1; sent < kTotal; size = size % 37 + 1) {
            const std::uint32_t samples = std::min(size, kTotal - sent);
            if (fifo.Free() < samples) {
                std::this_thread::yield();
                continue;
            }
            count(block, samples, next);
            fifo.Write(block, samples);
            sent += samples;
        }
    });
    ZBuffer block(64, "ZBuffer");
    std::uint32_t received = 0;
    std::uint32_t wrong = 0;
    while (received < kTotal) {
        const std::uint32_t samples = std::min(fifo.Available(), 29u);
        fifo.Read(block, samples);
        for (std::uint32_t i = 0; i < samples; ++i)
            wrong += block.Data()[i] != static_cast<float>(received + i);
        received += samples;
        if (samples == 0)
            std::this_thread::yield();
    }
    producer.join();
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(fifo.Available(), 0u);
}

TEST(ZFifoBufferTest, TransfersNeitherAllocateNorWait)
{
    ZFifoBuffer fifo(64);
    ZBuffer block(64, "ZBuffer");
    const RealtimeGuard guard;
    fifo.Write(block, 48);
    fifo.Read(block, 40);
    fifo.Write(block, 48);
    EXPECT_EQ(fifo.Available(), 56u);
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

}  // namespace orvane
