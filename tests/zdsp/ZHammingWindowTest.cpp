#include "zdsp/common/ZHammingWindow.h"

#include "support/RealtimeGuard.h"
#include "zdsp/Noise.h"
#include "zlib/common/ZException.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(ZHammingWindowTest, IsSymmetricFromItsFirstSampleToItsLast)
{
    const auto window = ZHammingWindow::Create(9);
    const float* const samples = window->Window().Data();
    const double expected[] = {0.08, 0.2147308807, 0.54, 0.8652691193, 1.0};
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_NEAR(samples[i], expected[i], 1e-6) << i;
        EXPECT_NEAR(samples[8 - i], expected[i], 1e-6) << 8 - i;
    }
    EXPECT_EQ(ZHammingWindow::Create(1)->Window().Data()[0], 1.0f);
    EXPECT_THROW(ZHammingWindow::Create(0), ZException);
}

TEST(ZHammingWindowTest, NormalizingDividesTheWindowBySumAndPowerOfItsDivisions)
{
    const auto bySum = ZHammingWindow::Create(16);
    const auto byPower = ZHammingWindow::Create(16);
    const auto plain = ZHammingWindow::Create(16);
    bySum->NormalizeSum(4);
    byPower->NormalizePower(4);
    double sum = 0.0;
    double power = 0.0;
    for (const int i : {0, 4, 8, 12}) {
        sum += plain->Window().Data()[i];
        power += plain->Window().Data()[i] * plain->Window().Data()[i];
    }
    for (std::uint32_t i = 0; i < 16; ++i) {
        const double sample = plain->Window().Data()[i];
        EXPECT_NEAR(bySum->Window().Data()[i], sample / sum, 1e-6);
        EXPECT_NEAR(byPower->Window().Data()[i], sample / power, 1e-6);
    }
}

TEST(ZHammingWindowTest, UnapplyTakesBackWhatApplyDid)
{
    const auto window = ZHammingWindow::Create(100);
    window->NormalizePower(4);
    ZBuffer signal(100, "ZBuffer");
    fillWithNoise(signal, 1);
    ZBuffer windowed(100, "ZBuffer");
    ZBuffer back(100, "ZBuffer");
    window->ApplyTo(signal, windowed);
    EXPECT_EQ(windowed.Data()[10], signal.Data()[10] * window->Window().Data()[10]);
    window->UnapplyTo(windowed, back);
    for (std::uint32_t i = 0; i < 100; ++i)
        EXPECT_NEAR(back.Data()[i], signal.Data()[i], 1e-6) << i;
    window->Apply(signal);
    EXPECT_EQ(signal.Data()[10], windowed.Data()[10]);
}

TEST(ZHammingWindowTest, NeitherAllocatesNorWaits)
{
    const auto window = ZHammingWindow::Create(100);
    ZBuffer signal(100, "ZBuffer");
    const RealtimeGuard guard;
    window->Apply(signal);
    window->ApplyTo(signal, signal);
    window->UnapplyTo(signal, signal);
    EXPECT_EQ(guard.violations(), 0u) << guard.firstViolation();
}

}  // namespace orvane
