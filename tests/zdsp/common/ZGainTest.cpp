// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZGain.h"

#include "support/Test.h"
#include "zdsp/common/Noise.h"
#include "zdsp/common/ZVectorSupport.h"

#include <complex>

using namespace orvane;

namespace
{

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr std::uint32_t kFence = 12;

/// Buffers and factors of an operation. The padding is large, so that a peak that counts it is
/// wrong. out is longer, so that writing behind the padding shows.
struct Work
{
    explicit Work(std::uint32_t samples)
        : a(samples, "ZBuffer")
        , b(samples, "ZBuffer")
        , out(samples + kFence, "ZBuffer")
    {
        fillWithNoise(a, 1);
        fillWithNoise(b, 2);
        fillWithNoise(out, 3);
        for (std::uint32_t i = samples; i < a.Allocated(); ++i)
            a.Data()[i] = b.Data()[i] = 1000.0f;
    }

    ZBuffer a;
    ZBuffer b;
    ZBuffer out;
    float gain = -0.7f;
    float start = 0.25f;
    float end = -1.5f;
};

// Where the products go, what the second factor is, and what the operation returns.
enum Target
{
    kInPlace,
    kOut,
    kAddToOut
};
enum Factor
{
    kRamp,
    kOther,
    kGain
};
enum Result
{
    kNone,
    kSum,
    kPeak
};
struct Operation
{
    const char* name;
    Target target;
    Factor factor;
    Result result;
    float (*run)(ZGain& g, Work& w);
};

using G = ZGain&;
using W = Work&;

std::uint32_t all(const Work& w)
{
    return w.a.Length();
}

// clang-format off
const std::vector<Operation> kOperations = {
    {"Ramp", kInPlace, kRamp, kNone, [](G g, W w) { return g.Ramp(w.a, w.start, w.end), 0.0f; }},
    {"Multiply", kInPlace, kOther, kNone, [](G g, W w) { return g.Multiply(w.a, w.b), 0.0f; }},
    {"Scale", kInPlace, kGain, kNone, [](G g, W w) { return g.Scale(w.a, w.gain), 0.0f; }},
    {"MultiplySum", kInPlace, kOther, kSum, [](G g, W w) { return g.MultiplySum(w.a, w.b, all(w)); }},
    {"MultiplyRange", kOut, kOther, kNone, [](G g, W w) { return g.MultiplyRange(w.a, w.b, w.out, 0, 0, 0, all(w)), 0.0f; }},
    {"RampTo", kOut, kRamp, kNone, [](G g, W w) { return g.RampTo(w.a, w.start, w.end, w.out), 0.0f; }},
    {"MultiplyTo", kOut, kOther, kNone, [](G g, W w) { return g.MultiplyTo(w.a, w.b, w.out), 0.0f; }},
    {"ScaleTo", kOut, kGain, kNone, [](G g, W w) { return g.ScaleTo(w.a, w.gain, w.out), 0.0f; }},
    {"RampAdd", kAddToOut, kRamp, kNone, [](G g, W w) { return g.RampAdd(w.a, w.start, w.end, w.out), 0.0f; }},
    {"MultiplyAddCount", kAddToOut, kOther, kNone, [](G g, W w) { return g.MultiplyAddCount(w.a, w.b, w.out, all(w)), 0.0f; }},
    {"MultiplyAdd", kAddToOut, kOther, kNone, [](G g, W w) { return g.MultiplyAdd(w.a, w.b, w.out), 0.0f; }},
    {"ScaleAddCount", kAddToOut, kGain, kNone, [](G g, W w) { return g.ScaleAddCount(w.a, w.gain, w.out, all(w)), 0.0f; }},
    {"ScaleAdd", kAddToOut, kGain, kNone, [](G g, W w) { return g.ScaleAdd(w.a, w.gain, w.out), 0.0f; }},
    {"RampPeak", kInPlace, kRamp, kPeak, [](G g, W w) { return g.RampPeak(w.a, w.start, w.end); }},
    {"MultiplyPeak", kInPlace, kOther, kPeak, [](G g, W w) { return g.MultiplyPeak(w.a, w.b); }},
    {"ScalePeak", kInPlace, kGain, kPeak, [](G g, W w) { return g.ScalePeak(w.a, w.gain); }},
    {"RampToPeak", kOut, kRamp, kPeak, [](G g, W w) { return g.RampToPeak(w.a, w.start, w.end, w.out); }},
    {"MultiplyToPeak", kOut, kOther, kPeak, [](G g, W w) { return g.MultiplyToPeak(w.a, w.b, w.out); }},
    {"ScaleToPeak", kOut, kGain, kPeak, [](G g, W w) { return g.ScaleToPeak(w.a, w.gain, w.out); }},
    {"RampAddPeak", kAddToOut, kRamp, kPeak, [](G g, W w) { return g.RampAddPeak(w.a, w.start, w.end, w.out); }},
    {"MultiplyAddPeak", kAddToOut, kOther, kPeak, [](G g, W w) { return g.MultiplyAddPeak(w.a, w.b, w.out); }},
    {"ScaleAddPeak", kAddToOut, kGain, kPeak, [](G g, W w) { return g.ScaleAddPeak(w.a, w.gain, w.out); }},
    {"ScaleAddAt", kAddToOut, kGain, kNone, [](G g, W w) { return g.ScaleAddAt(w.a, w.gain, w.out, 0), 0.0f; }},
};
// clang-format on

void expectPlainResult(ZGain& gain, const Operation& operation, std::uint32_t samples)
{
    Work work(samples);
    const Work before(samples);
    const float result = operation.run(gain, work);
    const ZBuffer& written = operation.target == kInPlace ? work.a : work.out;
    double sum = 0.0;
    double peak = 0.0;
    for (std::uint32_t i = 0; i < samples; ++i) {
        const double steps = std::max(samples - 1, 1u);
        const double ramp =
            before.start + (static_cast<double>(before.end) - before.start) * i / steps;
        const double factors[] = {ramp, before.b.Data()[i], before.gain};
        const double start = operation.target == kAddToOut ? before.out.Data()[i] : 0.0;
        const double value = start + before.a.Data()[i] * factors[operation.factor];
        // The ramp is a sum with one rounding per sample.
        EXPECT_NEAR(written.Data()[i], value, 2e-7 * (1 + samples)) << "sample " << i;
        sum += value;
        peak = std::max(peak, std::abs(value));
    }
    const double expected = operation.result == kNone ? 0.0 : operation.result == kSum ? sum : peak;
    EXPECT_NEAR(result, expected, 2e-7 * (1 + samples));
    for (std::uint32_t i = work.a.Allocated(); i < samples + kFence; ++i)
        EXPECT_EQ(work.out.Data()[i], before.out.Data()[i]) << "fence at " << i;
}

/// Tests run on both forms; without vector code both are the plain form.
struct ZGainTest : testing::TestWithParam<bool>
{
    std::unique_ptr<ZGain> mGain = ZGain::Create(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Forms, ZGainTest, testing::Values(true, false),
                         [](const auto& form) { return form.param ? "Plain" : "Vector"; });

}  // namespace

TEST_P(ZGainTest, OperationsMatchTheirFormulaAtEveryLength)
{
    const bool vector = ZVectorSupport::ProcessorClass() == ZVectorSupport::kVector;
    EXPECT_STREQ(mGain->GetName(), !GetParam() && vector ? "ZGainSSE" : "ZGain");
    for (const Operation& operation : kOperations) {
        for (std::uint32_t samples = 1; samples <= 17; ++samples) {
            SCOPED_TRACE(testing::Message() << operation.name << " over " << samples);
            expectPlainResult(*mGain, operation, samples);
        }
        SCOPED_TRACE(operation.name);
        expectPlainResult(*mGain, operation, 1000);
    }
}

TEST_P(ZGainTest, CountsAndOffsetsBoundWhatIsWritten)
{
    for (std::uint32_t offset = 0; offset <= 7; ++offset) {
        SCOPED_TRACE(offset);
        Work work(5);
        const Work before(5);
        mGain->ScaleAddAt(work.a, 0.5f, work.out, offset);
        for (std::uint32_t i = 0; i < work.out.Length(); ++i) {
            const bool inside = i >= offset && i < offset + 5;
            const float added = inside ? 0.5f * before.a.Data()[i - offset] : 0.0f;
            EXPECT_FLOAT_EQ(work.out.Data()[i], before.out.Data()[i] + added) << "sample " << i;
        }
    }
    Work work(9);
    const Work before(9);
    mGain->MultiplyRange(work.a, work.b, work.out, 3, 5, 1, 4);
    for (std::uint32_t i = 0; i < work.out.Length(); ++i) {
        const bool inside = i >= 5 && i < 9;
        const float product = inside ? before.a.Data()[i - 2] * before.b.Data()[i - 4] : 0.0f;
        EXPECT_EQ(work.out.Data()[i], inside ? product : before.out.Data()[i]) << "sample " << i;
    }
    mGain->MultiplySum(work.a, work.b, 3);
    mGain->ScaleAddCount(work.b, 2.0f, work.out, 3);
    mGain->MultiplyAddCount(work.b, work.b, work.out, 2);
    EXPECT_EQ(work.a.Data()[3], before.a.Data()[3]);
    EXPECT_EQ(work.out.Data()[3], before.out.Data()[3]);
}

TEST_P(ZGainTest, MinimumSkipsSamplesThatRaiseTheMaximum)
{
    const std::tuple<std::vector<float>, float, float> cases[] = {
        {{1, 2, 3, 4, 5}, 100, 5},   {{5, 4, 3, 2, 1}, 1, 5},
        {{-1, 3, -2, 4, -5}, -5, 4}, {{-200, -150, -300}, -300, -100},
        {{3, 3, 3}, 3, 3},           {{1, kNan, 0.5f, kNan}, 0.5f, 1}};
    for (const auto& [samples, min, max] : cases) {
        SCOPED_TRACE(testing::PrintToString(samples));
        ZBuffer buffer(static_cast<std::uint32_t>(samples.size()), "ZBuffer");
        std::copy(samples.begin(), samples.end(), buffer.Data());
        float foundMin = 0.0f;
        float foundMax = 0.0f;
        mGain->ScaleMinMax(buffer, 2.0f, foundMin, foundMax);
        EXPECT_EQ(foundMin, min == 100.0f ? min : 2 * min);
        EXPECT_EQ(foundMax, max == -100.0f ? max : 2 * max);
        EXPECT_EQ(buffer.Data()[0], 2 * samples[0]);
    }
}

TEST_P(ZGainTest, MultipliesComplexNumbersOfAnyLength)
{
    for (const std::uint32_t samples : {3u, 17u, 8u, 64u}) {
        SCOPED_TRACE(samples);
        Work a(samples);
        Work b(samples);
        fillWithNoise(b.a, 4);
        fillWithNoise(b.b, 5);
        ZBuffer re(samples, "ZBuffer");
        ZBuffer im(samples, "ZBuffer");
        mGain->ComplexMultiply(a.a, a.b, b.a, b.b, re, im);
        for (std::uint32_t i = 0; i < samples; ++i) {
            const std::complex<double> first(a.a.Data()[i], a.b.Data()[i]);
            const std::complex<double> second(b.a.Data()[i], b.b.Data()[i]);
            EXPECT_NEAR(re.Data()[i], (first * second).real(), 2e-7) << i;
            EXPECT_NEAR(im.Data()[i], (first * second).imag(), 2e-7) << i;
        }
        mGain->ComplexMultiply(a.a, a.b, b.a, b.b, a.a, a.b);
        EXPECT_EQ(a.a.Data()[samples - 1], re.Data()[samples - 1]);
        EXPECT_EQ(a.b.Data()[samples - 1], im.Data()[samples - 1]);
    }
}

TEST_P(ZGainTest, DecibelsMatchTheirDefinitionDownToTheFloor)
{
    std::vector<float> values{0.0f, -1.0f, kNan, -kInfinity, 1e-44f};
    for (float power = 1e-13f; power < 1e13f; power *= 1.0173f)
        values.push_back(power);
    const auto length = static_cast<std::uint32_t>(values.size());
    ZBuffer powers(length, "ZBuffer");
    ZBuffer amplitudes(length, "ZBuffer");
    ZBuffer above60(length, "ZBuffer");
    for (ZBuffer* const buffer : {&powers, &amplitudes, &above60})
        std::ranges::copy(values, buffer->Data());

    mGain->PowerToDecibels96(powers);
    mGain->AmplitudeToDecibels96(amplitudes);
    mGain->PowerToDecibels(above60, -60.0f);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double decibels = values[i] > 0.0f ? 10.0 * std::log10(double{values[i]}) : -1000.0;
        // Two units in the last place of a float near 96 dB, four near 192.
        EXPECT_NEAR(powers.Data()[i], std::max(decibels, -96.0), 1.6e-5) << values[i];
        EXPECT_NEAR(amplitudes.Data()[i], std::max(2 * decibels, -96.0), 6.2e-5) << values[i];
        EXPECT_NEAR(above60.Data()[i], std::max(decibels, -60.0), 1.6e-5) << values[i];
    }
}

TEST(ZGainGuardTest, SmallProductsToAnotherBufferAreZeroUnlessTheyAreComplex)
{
    const auto gain = ZGain::Create(true);
    const float small = std::ldexp(1.5f, -100);
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        for (const int exponent : {-26, -27}) {
            Work work(6);
            work.gain = work.start = work.end = std::ldexp(1.5f, exponent);
            std::fill_n(work.a.Data(), 6, small);
            std::fill_n(work.b.Data(), 6, work.gain);
            std::fill_n(work.out.Data(), 6, 0.0f);
            operation.run(*gain, work);
            const bool kept = exponent == -26 || operation.target == kInPlace;
            const ZBuffer& written = operation.target == kInPlace ? work.a : work.out;
            for (std::uint32_t i = 0; i < 6; ++i)
                EXPECT_EQ(written.Data()[i], kept ? small * work.gain : 0.0f);
        }
    }
    Work first(1);
    Work second(1);
    first.a.Data()[0] = small;
    second.a.Data()[0] = std::ldexp(1.5f, -27);
    first.b.Data()[0] = second.b.Data()[0] = 0.0f;
    ZBuffer re(1, "ZBuffer");
    ZBuffer im(1, "ZBuffer");
    gain->ComplexMultiply(first.a, first.b, second.a, second.b, re, im);
    EXPECT_EQ(re.Data()[0], small * second.a.Data()[0]);
    EXPECT_GT(re.Data()[0], 0.0f);
}
