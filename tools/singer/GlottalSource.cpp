// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/singer/GlottalSource.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace orvane
{

namespace
{

using Complex = std::complex<double>;

constexpr double kPi = std::numbers::pi;
constexpr double kSoftShape = 1.7;
constexpr double kFirmShape = 0.8;
constexpr double kLimitHz = 17000.0;
constexpr double kFadeFrom = 0.8;  // of the limit
constexpr double kLimitOfSampleRate = 0.45;

/// The parameters of the model by their names there; times are in units of the period.
struct LfShape
{
    double te;       // closure
    double ta;       // return phase
    double omega;    // of the opening phase, radians per period
    double epsilon;  // decay of the return phase
    double alpha;    // growth of the opening phase
};

/// Integral of exp(s t) from a to b.
Complex exponentialArea(Complex s, double a, double b)
{
    return (std::exp(s * b) - std::exp(s * a)) / s;
}

/// Fourier integral of the opening phase at angular frequency w.
Complex openingArea(const LfShape& shape, double w)
{
    const double scale =
        -1.0 / (std::exp(shape.alpha * shape.te) * std::sin(shape.omega * shape.te));
    const Complex up = exponentialArea({shape.alpha, shape.omega - w}, 0.0, shape.te);
    const Complex down = exponentialArea({shape.alpha, -shape.omega - w}, 0.0, shape.te);
    return scale * (up - down) / Complex(0.0, 2.0);
}

/// Fourier integral of the return phase at angular frequency w > 0.
Complex returnArea(const LfShape& shape, double w)
{
    const double rest = std::exp(-shape.epsilon * (1.0 - shape.te));
    const Complex decay = exponentialArea({-shape.epsilon, -w}, shape.te, 1.0);
    const Complex level = exponentialArea({0.0, -w}, shape.te, 1.0);
    return -(std::exp(shape.epsilon * shape.te) * decay - rest * level) /
           (shape.epsilon * shape.ta);
}

double returnMean(const LfShape& shape)
{
    const double length = 1.0 - shape.te;
    const double rest = std::exp(-shape.epsilon * length);
    return -((1.0 - rest) / shape.epsilon - rest * length) / (shape.epsilon * shape.ta);
}

/// Solves for the decay at which the return phase is continuous at the closure and ends at 0.
double returnDecay(double ta, double length)
{
    double epsilon = 1.0 / ta;
    for (int i = 0; i < 50; ++i)
        epsilon = (1.0 - std::exp(-epsilon * length)) / ta;
    return epsilon;
}

/// Solves for the growth at which the derivative has a mean of 0 over a period.
double openingGrowth(LfShape shape)
{
    double low = -50.0;
    double high = 100.0;
    for (int i = 0; i < 80; ++i) {
        shape.alpha = 0.5 * (low + high);
        const bool isTooFlat = openingArea(shape, 0.0).real() + returnMean(shape) > 0.0;
        (isTooFlat ? low : high) = shape.alpha;
    }
    return shape.alpha;
}

LfShape lfShape(double rd)
{
    const double ra = (-1.0 + 4.8 * rd) / 100.0;
    const double rk = (22.4 + 11.8 * rd) / 100.0;
    const double rg = 0.25 * rk / (0.11 * rd / (0.5 + 1.2 * rk) - ra);
    const double tp = 1.0 / (2.0 * rg);
    LfShape shape{};
    shape.te = tp * (1.0 + rk);
    shape.ta = ra;
    shape.omega = kPi / tp;
    shape.epsilon = returnDecay(shape.ta, 1.0 - shape.te);
    shape.alpha = openingGrowth(shape);
    return shape;
}

/// 1 below the fade, 0 at the limit, smooth between.
double bandWeight(double hz, double limitHz)
{
    const double place = (hz / limitHz - kFadeFrom) / (1.0 - kFadeFrom);
    return 0.5 + 0.5 * std::cos(kPi * std::clamp(place, 0.0, 1.0));
}

}  // namespace

std::vector<Complex> glottalHarmonics(double rd, int count)
{
    assert(rd >= 0.5 && rd <= 2.5);
    const LfShape shape = lfShape(rd);
    std::vector<Complex> harmonics;
    for (int h = 1; h <= count; ++h) {
        const double w = 2.0 * kPi * h;
        const Complex atClosure = std::polar(1.0, w * shape.te);
        harmonics.push_back((openingArea(shape, w) + returnArea(shape, w)) * atClosure);
    }
    return harmonics;
}

GlottalSource::GlottalSource(double sampleRate, double lowestHz)
    : mSampleRate(sampleRate)
    , mLimitHz(std::min(kLimitHz, kLimitOfSampleRate * sampleRate))
{
    const int count = static_cast<int>(mLimitHz / lowestHz);
    mSoft = glottalHarmonics(kSoftShape, count);
    mFirm = glottalHarmonics(kFirmShape, count);
}

void GlottalSource::set(double pitchHz, double effort)
{
    assert(pitchHz > 0.0 && effort >= 0.0 && effort <= 1.0);
    mIncrement = pitchHz / mSampleRate;
    const auto count = std::min(mSoft.size(), static_cast<std::size_t>(mLimitHz / pitchHz));
    mBlend.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double weight = bandWeight(static_cast<double>(i + 1) * pitchHz, mLimitHz);
        mBlend[i] = weight * ((1.0 - effort) * mSoft[i] + effort * mFirm[i]);
    }
}

double GlottalSource::next()
{
    // Horner's rule in the phasor of the fundamental, written out because std::complex's product
    // tests each result for NaN.
    const double zr = std::cos(2.0 * kPi * mPhase);
    const double zi = std::sin(2.0 * kPi * mPhase);
    double re = 0.0;
    double im = 0.0;
    for (auto c = mBlend.rbegin(); c != mBlend.rend(); ++c) {
        const double sumRe = re + c->real();
        const double sumIm = im + c->imag();
        re = sumRe * zr - sumIm * zi;
        im = sumRe * zi + sumIm * zr;
    }
    mPhase += mIncrement;
    mPhase -= std::floor(mPhase);
    return 2.0 * re;
}

}  // namespace orvane
