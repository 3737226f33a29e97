#include "tools/singer/Singer.h"
#include "tools/singer/GlottalSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>
#include <vector>

namespace orvane
{

namespace
{

constexpr double kPi = std::numbers::pi;
constexpr int kRate = 44100;

/// Amplitude in dB of the sinusoid at a frequency, in one second under a Blackman window.
double levelAt(const std::vector<float>& signal, double hz)
{
    std::complex<double> sum;
    for (int i = 0; i < kRate; ++i) {
        const double place = 2.0 * kPi * i / kRate;
        const double window = 0.42 - 0.5 * std::cos(place) + 0.08 * std::cos(2.0 * place);
        const double sample = signal[signal.size() - kRate + static_cast<std::size_t>(i)];
        sum += window * sample * std::polar(1.0, -hz * place);
    }
    return 20.0 * std::log10(2.0 * std::abs(sum) / (0.42 * kRate) + 1e-12);
}

float peakOf(const std::vector<float>& signal)
{
    return std::accumulate(signal.begin(), signal.end(), 0.0f,
                           [](float peak, float s) { return std::max(peak, std::fabs(s)); });
}

/// The largest second difference in each stretch of so many samples.
std::vector<double> sharpestBends(const std::vector<float>& signal, std::size_t stretch)
{
    std::vector<double> bends(signal.size() / stretch + 1, 0.0);
    for (std::size_t i = 2; i < signal.size(); ++i) {
        const double bend = std::fabs(signal[i] - 2.0 * signal[i - 1] + signal[i - 2]);
        bends[i / stretch] = std::max(bends[i / stretch], bend);
    }
    return bends;
}

}  // namespace

TEST(SingerTest, SteadyVowelRepeatsToTheLastBitOfSixteenOnceSettled)
{
    for (const Vowel vowel : {Vowel::kA, Vowel::kE, Vowel::kI, Vowel::kO, Vowel::kU}) {
        const auto signal = steadyVowel(vowel, 220.5, kRate, 0.5);  // 200 samples a period
        EXPECT_FLOAT_EQ(peakOf(signal), 0.5f);
        for (std::size_t i = 8820; i < signal.size(); ++i)
            ASSERT_NEAR(signal[i], signal[i - 200], 1e-5) << i;
    }
}

TEST(SingerTest, NothingFoldsBackBetweenOrAboveTheHarmonics)
{
    // Of the pulses themselves: the formants would hide most of it.
    GlottalSource source(kRate, 523.0);
    source.set(523.0, 1.0);
    std::vector<float> signal(kRate);
    for (float& sample : signal)
        sample = static_cast<float>(source.next());
    const double fundamental = levelAt(signal, 523.0);
    // A harmonic h that folds back lies at 523 h - 44100 or its mirror: 168 Hz above some other
    // harmonic, or below one.
    for (int h = 1; h <= 40; ++h) {
        const double harmonic = 523.0 * h;
        EXPECT_LT(levelAt(signal, harmonic + 168.0), fundamental - 110.0) << harmonic;
        EXPECT_LT(levelAt(signal, harmonic - 168.0), fundamental - 110.0) << harmonic;
    }
    EXPECT_LT(levelAt(signal, 523.0 * 33), fundamental - 110.0);
}

TEST(SingerTest, VowelsDifferByTheirFormants)
{
    // 100 Hz apart, so that the harmonics sample the formants: [a] has its second near 1.1 kHz,
    // [i] a dip there and its second near 2.1 kHz.
    const auto a = steadyVowel(Vowel::kA, 100.0, kRate, 1.5);
    const auto i = steadyVowel(Vowel::kI, 100.0, kRate, 1.5);
    EXPECT_GT(levelAt(a, 1100.0), levelAt(a, 2100.0) + 15.0);
    EXPECT_GT(levelAt(i, 2100.0), levelAt(i, 1100.0) + 10.0);
}

TEST(SingerTest, SongHasRoomBelowFullScaleAndNoClick)
{
    const auto song = renderSong(demoSong(), kRate);
    EXPECT_LE(peakOf(song), 0.7f);
    // A click bends the curve more than the pulses around it do, of which each 10 ms have one.
    const auto bends = sharpestBends(song, kRate / 100);
    for (std::size_t i = 1; i + 1 < bends.size(); ++i)
        EXPECT_LT(bends[i], 2.0 * std::max({bends[i - 1], bends[i + 1], 0.004})) << i << " / 100 s";
}

}  // namespace orvane
