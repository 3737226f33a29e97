// SPDX-License-Identifier: GPL-3.0-or-later
#include "zdsp/common/ZFourierTransform.h"

#include "support/Test.h"
#include "zdsp/common/Noise.h"
#include "zlib/common/objects/ZException.h"

#include <complex>

using namespace orvane;

namespace
{

constexpr int kForward = ZFourierTransform::kForward;
constexpr int kInverse = ZFourierTransform::kInverse;

using Complex = std::complex<double>;

/// Complex values; of a real signal of N samples the bins 0 to N / 2.
struct Spectrum
{
    std::uint32_t length;
    ZBuffer re{length, "ZBuffer"};
    ZBuffer im{length, "ZBuffer"};
};

/// The transform by its definition, scaled as the class says.
std::vector<Complex> textbook(const Spectrum& values, int direction)
{
    const std::uint32_t length = values.re.Length();
    const double step = (direction == kForward ? -2.0 : 2.0) * std::numbers::pi / length;
    const double scale = direction == kForward ? 1.0 / length : 1.0;
    std::vector<Complex> bins(length);
    for (std::uint32_t k = 0; k < length; ++k)
        for (std::uint32_t n = 0; n < length; ++n)
            bins[k] += Complex(values.re.Data()[n], values.im.Data()[n]) *
                       std::polar(scale, step * (k * n % length));
    return bins;
}

}  // namespace

TEST(ZFourierTransformTest, RealSpectrumMatchesTheDefinition)
{
    for (const int order : {-1, 0, 25, 32})
        EXPECT_THROW((void)ZFourierTransform::Create(order, kForward, 1), ZException) << order;
    for (const int order : {1, 2, 3, 4, 5, 10}) {
        SCOPED_TRACE(order);
        const std::uint32_t length = 1u << order;
        Spectrum signal(length);
        fillWithNoise(signal.re, 1);
        Spectrum spectrum(length / 2 + 1);
        ZFourierTransform::Create(order, kForward, 1)
            ->TransformReal(signal.re, spectrum.re, spectrum.im);
        const auto expected = textbook(signal, kForward);
        for (std::uint32_t k = 0; k <= length / 2; ++k) {
            EXPECT_NEAR(spectrum.re.Data()[k], expected[k].real(), 1e-7) << "bin " << k;
            EXPECT_NEAR(spectrum.im.Data()[k], expected[k].imag(), 1e-7) << "bin " << k;
        }
        EXPECT_EQ(spectrum.im.Data()[0], 0.0f);
        EXPECT_EQ(spectrum.im.Data()[length / 2], 0.0f);
    }
}

TEST(ZFourierTransformTest, InverseRestoresTheRealSignal)
{
    for (const int order : {1, 2, 3, 9, 13, 14}) {
        SCOPED_TRACE(order);
        const std::uint32_t length = 1u << order;
        ZBuffer time(length, "ZBuffer");
        fillWithNoise(time, 1);
        ZBuffer input(length, "ZBuffer");
        input.CopyFrom(time);
        Spectrum spectrum(length / 2 + 1);
        ZFourierTransform::Create(order, kForward, 1)
            ->TransformReal(input, spectrum.re, spectrum.im);
        EXPECT_TRUE(std::equal(time.Data(), time.Data() + length, input.Data()));
        // Not parts of any real signal's spectrum.
        spectrum.im.Data()[0] = 5.0f;
        spectrum.im.Data()[length / 2] = 6.0f;
        const std::vector<float> re(spectrum.re.Data(), spectrum.re.Data() + length / 2 + 1);
        const std::vector<float> im(spectrum.im.Data(), spectrum.im.Data() + length / 2 + 1);
        ZBuffer back(length, "ZBuffer");
        ZFourierTransform::Create(order, kInverse, 1)
            ->TransformReal(back, spectrum.re, spectrum.im);
        for (std::uint32_t i = 0; i < length; ++i)
            ASSERT_NEAR(back.Data()[i], time.Data()[i], 3e-6) << i;
        EXPECT_TRUE(std::equal(re.begin(), re.end(), spectrum.re.Data()));
        EXPECT_TRUE(std::equal(im.begin(), im.end(), spectrum.im.Data()));
    }
}

TEST(ZFourierTransformTest, ShorterBuffersGetOnlyTheLowBins)
{
    const auto transform = ZFourierTransform::Create(10, kForward, 1);
    ZBuffer time(1024, "ZBuffer");
    fillWithNoise(time, 1);
    Spectrum whole(513);
    transform->TransformReal(time, whole.re, whole.im);
    for (const std::uint32_t bins : {1u, 2u, 5u, 6u, 7u, 8u, 100u, 512u}) {
        SCOPED_TRACE(bins);
        Spectrum low(bins);
        for (std::uint32_t k = bins; k < low.re.Allocated(); ++k)
            low.re.Data()[k] = low.im.Data()[k] = 7.0f;
        transform->TransformReal(time, low.re, low.im);
        for (std::uint32_t k = 0; k < low.re.Allocated(); ++k) {
            EXPECT_NEAR(low.re.Data()[k], k < bins ? whole.re.Data()[k] : 7.0f, 1e-8) << k;
            EXPECT_NEAR(low.im.Data()[k], k < bins ? whole.im.Data()[k] : 7.0f, 1e-8) << k;
        }
    }
}

TEST(ZFourierTransformTest, ComplexTransformsMatchTheDefinition)
{
    for (const int direction : {kForward, kInverse}) {
        for (const int order : {1, 2, 6}) {
            SCOPED_TRACE(testing::Message() << "order " << order << " direction " << direction);
            const std::uint32_t length = 1u << order;
            Spectrum values(length);
            fillWithNoise(values.re, 1);
            fillWithNoise(values.im, 2);
            Spectrum out(length);
            const auto expected = textbook(values, direction);
            const auto transform = ZFourierTransform::Create(order, direction, 0);
            transform->TransformComplex(values.re, values.im, out.re, out.im);
            transform->TransformInPlace(values.re, values.im);
            for (std::uint32_t k = 0; k < length; ++k) {
                EXPECT_NEAR(out.re.Data()[k], expected[k].real(), 1e-5) << k;
                EXPECT_NEAR(out.im.Data()[k], expected[k].imag(), 1e-5) << k;
                EXPECT_EQ(values.re.Data()[k], out.re.Data()[k]) << k;
                EXPECT_EQ(values.im.Data()[k], out.im.Data()[k]) << k;
            }
        }
    }
}
