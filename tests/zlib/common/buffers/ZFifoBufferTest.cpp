// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/buffers/ZFifoBuffer.h"

#include "support/ExpectZException.h"
#include "support/RealtimeGuard.h"
#include "zlib/common/buffers/ZBuffer.h"

using namespace orvane;

TEST(ZFifoBufferTest, DistinguishesFullFromEmptyAtEveryPosition)
{
    ZFifoBuffer fifo(8);
    ZBuffer block(8, "ZBuffer");
    const RealtimeGuard guard;
    for (int turn = 0; turn < 20; ++turn) {
        fifo.Write(block, 8);
        EXPECT_TRUE(fifo.Free() == 0 && fifo.Available() == 8);
        fifo.Read(block, 8);
        EXPECT_TRUE(fifo.Free() == 8 && fifo.Available() == 0);
        fifo.Write(block, 3);  // the next turn begins elsewhere
        fifo.Read(block, 3);
    }
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

TEST(ZFifoBufferTest, RefusesWhatDoesNotFit)
{
    ZFifoBuffer fifo(4);
    std::vector<float> samples{1, 2, 3, 4};
    const std::span<float> three(samples.data(), 3);
    fifo.Write(three);
    expectZException("Read first", [&] { fifo.Write({samples.data(), 2}); });
    expectZException("Write first", [&] { fifo.Read(samples); });
    three[0] = three[2] = 0.0f;
    fifo.Read(three);
    EXPECT_EQ(samples, (std::vector<float>{1, 2, 3, 4}));
    fifo.Write(three);
    fifo.Reset();
    EXPECT_EQ(fifo.Available(), 0u);
    EXPECT_EQ(fifo.Free(), 4u);

    constexpr std::uint32_t kMax = std::numeric_limits<std::uint32_t>::max();
    for (const std::uint32_t capacity : {0u, 3u, 12u, 1u << 30, kMax})
        expectZException("Fifo Buffer must have power of 2 size",
                         [=] { ZFifoBuffer refused(capacity); });
}

TEST(ZFifoBufferTest, PassesSamplesInOrderBetweenTwoThreads)
{
    constexpr std::uint32_t kTotal = 200000;
    ZFifoBuffer fifo(64);
    std::thread producer([&] {
        std::array<float, 37> block{};
        for (std::uint32_t sent = 0, size = 1; sent < kTotal; size = size % 37 + 1) {
            const std::uint32_t samples = std::min({size, kTotal - sent, fifo.Free()});
            std::iota(block.begin(), block.begin() + samples, static_cast<float>(sent));
            fifo.Write({block.data(), samples});
            sent += samples;
            if (samples == 0)
                std::this_thread::yield();
        }
    });
    std::array<float, 29> block{};
    std::uint32_t received = 0;
    std::uint32_t wrong = 0;
    while (received < kTotal) {
        const std::uint32_t samples = std::min(fifo.Available(), 29u);
        fifo.Read({block.data(), samples});
        for (std::uint32_t i = 0; i < samples; ++i)
            wrong += block[i] != static_cast<float>(received + i);
        received += samples;
        if (samples == 0)
            std::this_thread::yield();
    }
    producer.join();
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(fifo.Available(), 0u);
}
