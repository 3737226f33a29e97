// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/VocalTract.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

constexpr double kPi = std::numbers::pi;
constexpr std::array<double, kMovingFormants> kBandwidths{85.0, 90.0, 120.0, 150.0, 180.0};
constexpr double kFirstOverPitch = 1.12;
constexpr double kUpperFrom = 4700.0;
constexpr double kUpperSpacing = 1000.0;
constexpr double kUpperTo = 16500.0;
constexpr double kUpperBandwidth = 0.06;  // of the frequency
constexpr double kHighestOfSampleRate = 0.45;

}  // namespace

void Resonator::set(double hz, double bandwidthHz, double sampleRate)
{
    assert(bandwidthHz > 0.0 && hz > 0.0 && hz < 0.5 * sampleRate);
    const double radius = std::exp(-kPi * bandwidthHz / sampleRate);
    mFirst = 2.0 * radius * std::cos(2.0 * kPi * hz / sampleRate);
    mSecond = -radius * radius;
    mGain = 1.0 - mFirst - mSecond;
}

double Resonator::next(double input)
{
    const double output = mGain * input + mFirst * mLast + mSecond * mBeforeLast;
    mBeforeLast = mLast;
    mLast = output;
    return output;
}

Formants formantsOf(Vowel vowel)
{
    // The third to fifth are close together: the singer's formant near 3 kHz.
    switch (vowel) {
    case Vowel::kA:
        return {680.0, 1120.0, 2600.0, 2950.0, 3500.0};
    case Vowel::kE:
        return {430.0, 1750.0, 2600.0, 3050.0, 3600.0};
    case Vowel::kI:
        return {300.0, 2050.0, 2750.0, 3200.0, 3650.0};
    case Vowel::kO:
        return {450.0, 830.0, 2550.0, 2850.0, 3350.0};
    case Vowel::kU:
        return {340.0, 680.0, 2500.0, 2800.0, 3300.0};
    }
    return {500.0, 1500.0, 2500.0, 3500.0, 4500.0};
}

Formants murmurFormants()
{
    return {270.0, 1150.0, 2300.0, 3000.0, 3600.0};
}

VocalTract::VocalTract(double sampleRate)
    : mSampleRate(sampleRate)
{
    const double top = std::min(kUpperTo, kHighestOfSampleRate * sampleRate);
    for (int i = 0; kUpperFrom + i * kUpperSpacing <= top; ++i) {
        const double hz = kUpperFrom + i * kUpperSpacing;
        mUpper.emplace_back();
        mUpper.back().set(hz, kUpperBandwidth * hz, sampleRate);
    }
}

void VocalTract::set(const Formants& formants, double pitchHz)
{
    double lowest = kFirstOverPitch * pitchHz;
    for (std::size_t i = 0; i < kMovingFormants; ++i) {
        const double hz = std::max(formants[i], lowest);
        mMoving[i].set(std::min(hz, kHighestOfSampleRate * mSampleRate), kBandwidths[i],
                       mSampleRate);
        lowest = 0.0;
    }
}

double VocalTract::next(double input)
{
    for (Resonator& resonator : mMoving)
        input = resonator.next(input);
    for (Resonator& resonator : mUpper)
        input = resonator.next(input);
    return input;
}

}  // namespace orvane
