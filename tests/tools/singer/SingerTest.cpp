// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/Singer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvane
{

namespace
{

constexpr int kRate = 44100;

/// The largest second difference in each stretch of stretch samples.
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

TEST(SingerTest, ASteadyVowelIsPeriodicOnceSettled)
{
    for (const Vowel vowel : {Vowel::kA, Vowel::kE, Vowel::kI, Vowel::kO, Vowel::kU}) {
        const auto signal = steadyVowel(vowel, 220.5, kRate, 0.5);  // 200 samples a period
        for (std::size_t i = 8820; i < signal.size(); ++i)
            ASSERT_NEAR(signal[i], signal[i - 200], 1e-5) << i;
    }
}

TEST(SingerTest, TheSongHasNoClick)
{
    // A click bends the curve more than glottal pulses do; every 10 ms hold a pulse.
    const auto bends = sharpestBends(renderSong(demoSong(), kRate), kRate / 100);
    for (std::size_t i = 1; i + 1 < bends.size(); ++i)
        EXPECT_LT(bends[i], 2.0 * std::max({bends[i - 1], bends[i + 1], 0.004})) << i << " / 100 s";
}

}  // namespace orvane
