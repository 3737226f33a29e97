#include "kestrune/common/KestruneGrain.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace orvane
{

namespace
{

constexpr int kInputLength = 3000;
constexpr int kOutputLength = 2500;

/// The window as its definition reads, one library cosine a term.
float plainWindow(int i, int length, float fraction)
{
    const float pi = std::numbers::pi_v<float>;
    const float u =
        2.0f * (static_cast<float>(i + 1) - fraction) / static_cast<float>(length + 1) - 1.0f;
    return 0.5f * (1.0f + 1.125f * std::cos(pi * u) - 0.125f * std::cos(3.0f * pi * u));
}

class KestruneGrainTest : public testing::Test
{
protected:
    KestruneGrainTest()
        : left(whiteNoise(0.5f, kInputLength, 1))
        , right(whiteNoise(0.5f, kInputLength, 2))
    {
        input.Allocate(kInputLength);
        output.Allocate(kOutputLength);
        grain.Allocate(1002, 2005);
        const float* const channels[] = {left.data(), right.data()};
        input.Write(channels, 0, kInputLength);
    }

    /// Cut, resample and add, one sample at a time with a modulo each.
    std::vector<float> plainGrain(const std::vector<float>& source, double inputMark,
                                  double outputMark, int length, float b) const
    {
        const auto i0 = static_cast<long long>(inputMark);
        const auto o0 = static_cast<long long>(outputMark);
        const auto fi = static_cast<float>(inputMark - static_cast<double>(i0));
        const auto fo = static_cast<float>(outputMark - static_cast<double>(o0));
        std::vector<float> cut(static_cast<std::size_t>(length) + 2, 0.0f);
        for (int i = 0; i < length; ++i) {
            const auto at = (i0 - length / 2 + i + kInputLength) % kInputLength;
            cut[static_cast<std::size_t>(i)] =
                plainWindow(i, length, fi) * source[static_cast<std::size_t>(at)];
        }
        std::vector<float> result(kOutputLength, 0.0f);
        const int resampled = static_cast<int>(static_cast<float>(length) / b);
        for (int k = 0; k < resampled; ++k) {
            const double x = (k - resampled * 0.5) * b + (length * 0.5 + fi) - fo;
            const int j = std::max(static_cast<int>(x), 0);
            const auto r = static_cast<float>(x - j);
            const auto index = static_cast<std::size_t>(j);
            const auto at = (o0 - resampled / 2 + k + kOutputLength) % kOutputLength;
            result[static_cast<std::size_t>(at)] += cut[index] + r * (cut[index + 1] - cut[index]);
        }
        return result;
    }

    std::vector<float> left;
    std::vector<float> right;
    KestruneStereoRing input;
    KestruneStereoRing output;
    KestruneGrain grain;
};

}  // namespace

TEST_F(KestruneGrainTest, WindowIsTheRaisedCosineOfItsDefinition)
{
    for (const int length : {58, 201, 1000, 8820}) {
        for (const float fraction : {0.0f, 0.5f, 0.999f}) {
            std::vector<float> window(static_cast<std::size_t>(length));
            KestruneGrain::FillWindow(window.data(), length, fraction);
            for (int i = 0; i < length; ++i)
                ASSERT_NEAR(window[static_cast<std::size_t>(i)], plainWindow(i, length, fraction),
                            1e-6f)
                    << length << " at " << i;
        }
    }
}

TEST_F(KestruneGrainTest, WindowsAPeriodApartAddUpToOne)
{
    const int period = 200;
    std::vector<float> window(2 * period - 1);  // odd, so that its halves meet on a sample
    KestruneGrain::FillWindow(window.data(), 2 * period - 1, 0.0f);
    for (std::size_t i = 0; i + period < window.size(); ++i)
        EXPECT_NEAR(window[i] + window[i + period], 1.0f, 1e-6f);
}

TEST_F(KestruneGrainTest, LandsWhereTheMarksSayAcrossTheEndsOfBothRings)
{
    struct Case
    {
        double inputMark;
        double outputMark;
        int length;
        float formantFactor;
    };
    for (const Case& row : {Case{1500.25, 1200.75, 300, 1.0f}, Case{20.5, 10.125, 401, 1.0f},
                            Case{2990.0, 2499.5, 400, 0.5f}, Case{40.9, 30.0, 333, 2.0f},
                            Case{1000.0, 1000.99, 1000, 0.5f}, Case{700.0, 800.3, 77, 1.37f}})
    {
        SCOPED_TRACE(row.inputMark);
        output.Clear();
        grain.Cut(input, row.inputMark, row.length);
        grain.AddTo(output, row.outputMark, row.formantFactor);
        const auto expectedLeft =
            plainGrain(left, row.inputMark, row.outputMark, row.length, row.formantFactor);
        const auto expectedRight =
            plainGrain(right, row.inputMark, row.outputMark, row.length, row.formantFactor);
        for (std::size_t i = 0; i < kOutputLength; ++i) {
            ASSERT_NEAR(output.Channel(0)[i], expectedLeft[i], 1e-4f) << i;
            ASSERT_NEAR(output.Channel(1)[i], expectedRight[i], 1e-4f) << i;
        }
    }
}

TEST_F(KestruneGrainTest, FormantsUpHalveTheGrainAndDownDoubleIt)
{
    const auto extent = [this](float formantFactor) {
        output.Clear();
        grain.Cut(input, 1500.0, 400);
        grain.AddTo(output, 1200.0, formantFactor);
        int samples = 0;
        for (int i = 0; i < kOutputLength; ++i)
            samples += output.Channel(0)[i] != 0.0f ? 1 : 0;
        return samples;
    };
    EXPECT_NEAR(extent(1.0f), 400, 4);
    EXPECT_NEAR(extent(2.0f), 200, 4);
    EXPECT_NEAR(extent(0.5f), 800, 4);
}

}  // namespace orvane
