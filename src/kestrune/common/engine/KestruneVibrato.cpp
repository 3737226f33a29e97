// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneVibrato.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

constexpr double kLowestHz = 4.0;
constexpr double kStepHz = 0.5;
constexpr int kRatesOfPart = 3;
static_assert(KestruneVibrato::kParts * kRatesOfPart == 9, "rates from 4 to 8 Hz");
/// Fewer cycles do not tell a swing from a step.
constexpr double kLeastCycles = 1.1;
/// The begin of a vibrato is looked for at every second record.
constexpr std::size_t kBeginStep = 2;
constexpr double kLeastExtent = 0.55;  // semitones to one side
constexpr double kMostExtent = 1.8;
/// Of the power of the swing that may be left unexplained. A trill of soft steps leaves 0.035.
constexpr double kMostUnexplained = 0.015;

/// A sine of one rate that is fitted to a stretch of pitches, which grows by one at a time.
class SineFit
{
public:
    /// turn: radians a record.
    explicit SineFit(double turn) noexcept
        : mStepCos(std::cos(turn))
        , mStepSin(std::sin(turn))
    {
    }

    void Add(double pitch) noexcept
    {
        const double c = mNextCos;
        const double s = mNextSin;
        mNextCos = c * mStepCos - s * mStepSin;
        mNextSin = s * mStepCos + c * mStepSin;
        mCount += 1.0;
        mCos += c;
        mSin += s;
        mCosCos += c * c;
        mCosSin += c * s;
        mSinSin += s * s;
        mPitch += pitch;
        mPitchPitch += pitch * pitch;
        mPitchCos += pitch * c;
        mPitchSin += pitch * s;
    }

    /// Solves the normal equations of middle + a cos + b sin. [audio thread]
    void Solve() noexcept
    {
        const auto about = [this](double product, double x, double y) {
            return product - x * y / mCount;
        };
        const double cc = about(mCosCos, mCos, mCos);
        const double cs = about(mCosSin, mCos, mSin);
        const double ss = about(mSinSin, mSin, mSin);
        const double pc = about(mPitchCos, mPitch, mCos);
        const double ps = about(mPitchSin, mPitch, mSin);
        const double power = about(mPitchPitch, mPitch, mPitch);
        const double determinant = cc * ss - cs * cs;
        a = (pc * ss - ps * cs) / determinant;
        b = (ps * cc - pc * cs) / determinant;
        middle = (mPitch - a * mCos - b * mSin) / mCount;
        unexplained = 1.0 - (a * pc + b * ps) / power;
    }

    [[nodiscard]] double Extent() const noexcept { return std::hypot(a, b); }

    double middle = 0.0;
    double a = 0.0;
    double b = 0.0;
    double unexplained = 1.0;  // share of the power around the mean

private:
    double mStepCos;
    double mStepSin;
    double mNextCos = 1.0;
    double mNextSin = 0.0;
    double mCount = 0.0;
    double mCos = 0.0;
    double mSin = 0.0;
    double mCosCos = 0.0;
    double mCosSin = 0.0;
    double mSinSin = 0.0;
    double mPitch = 0.0;
    double mPitchPitch = 0.0;
    double mPitchCos = 0.0;
    double mPitchSin = 0.0;
};

}  // namespace

void KestruneVibrato::Begin(std::span<const double> pitches, int mayBegin,
                            double recordsPerSecond) noexcept
{
    assert(mayBegin >= 0 && static_cast<std::size_t>(mayBegin) < pitches.size());
    assert(recordsPerSecond > 0.0);
    mPitches = pitches;
    mMayBegin = static_cast<std::size_t>(mayBegin);
    mRate = recordsPerSecond;
    mLeast = kMostUnexplained;
    mMiddle.reset();
    const auto [lowest, highest] = std::minmax_element(pitches.begin(), pitches.end());
    if (*highest - *lowest < 2.0 * kLeastExtent)
        mPitches = {};
}

void KestruneVibrato::FitPart(int part) noexcept
{
    assert(part >= 0 && part < kParts);
    if (mPitches.empty())
        return;
    for (int rate = part * kRatesOfPart; rate < (part + 1) * kRatesOfPart; ++rate)
        Fit(kLowestHz + rate * kStepHz);
}

void KestruneVibrato::Fit(double hz) noexcept
{
    SineFit fit(2.0 * std::numbers::pi * hz / mRate);
    const double last = mPitches.back();
    const auto enough = static_cast<std::size_t>(kLeastCycles * mRate / hz) + 1;
    for (std::size_t count = 1; count <= mPitches.size(); ++count) {
        // From the last one back, relative to it so that the sums stay exact.
        const std::size_t begin = mPitches.size() - count;
        fit.Add(mPitches[begin] - last);
        if (count < enough || begin > mMayBegin || begin % kBeginStep != 0)
            continue;
        fit.Solve();
        if (fit.unexplained > mLeast)
            continue;
        const double extent = fit.Extent();
        if (extent < kLeastExtent || extent > kMostExtent)
            continue;
        mLeast = fit.unexplained;
        mMiddle = fit.middle + last;
    }
}

}  // namespace orvane
