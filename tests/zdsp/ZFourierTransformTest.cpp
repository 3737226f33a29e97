#include "zdsp/common/ZFourierTransform.h"

#include "support/ExpectZException.h"
#include "zdsp/Noise.h"
#include "zlib/common/ZException.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

constexpr int kForward = ZFourierTransform::kForward;
constexpr int kInverse = ZFourierTransform::kInverse;

using Complex = std::complex<double>;

/// The transform by its definition, unscaled.
std::vector<Complex> textbook(const ZBuffer& re, const ZBuffer& im, std::uint32_t length,
                              int direction)
{
    const double sign = direction == kForward ? -1.0 : 1.0;
    std::vector<Complex> bins(length);
    for (std::uint32_t k = 0; k < length; ++k) {
        for (std::uint32_t n = 0; n < length; ++n) {
            const double turns = static_cast<double>(k * n % length) / length;
            bins[k] += Complex(re.Data()[n], im.Data()[n]) *
                       std::polar(1.0, sign * 2.0 * std::numbers::pi * turns);
        }
    }
    return bins;
}

/// Half spectrum of a real signal of 2^order samples.
struct Spectrum
{
    explicit Spectrum(int order)
        : re((1u << order) / 2 + 1, "ZBuffer")
        , im((1u << order) / 2 + 1, "ZBuffer")
    {
    }
    ZBuffer re;
    ZBuffer im;
};

/// The class that can transform nothing.
class Unsupported : public ZFourierTransform
{
};

}  // namespace

TEST(ZFourierTransformTest, RealSpectrumIsThatOfTheDefinitionDividedByTheLength)
{
    for (const int order : {1, 2, 3, 4, 5, 10}) {
        SCOPED_TRACE(order);
        const std::uint32_t length = 1u << order;
        ZBuffer time(length, "ZBuffer");
        fillWithNoise(time, 1);
        const ZBuffer silence(length, "ZBuffer");
        Spectrum spectrum(order);
        ZFourierTransform::Create(order, kForward, 1)
            ->TransformReal(time, spectrum.re, spectrum.im);
        const auto expected = textbook(time, silence, length, kForward);
        for (std::uint32_t k = 0; k <= length / 2; ++k) {
            EXPECT_NEAR(spectrum.re.Data()[k], expected[k].real() / length, 1e-7) << "bin " << k;
            EXPECT_NEAR(spectrum.im.Data()[k], expected[k].imag() / length, 1e-7) << "bin " << k;
        }
        EXPECT_EQ(spectrum.im.Data()[0], 0.0f);
        EXPECT_EQ(spectrum.im.Data()[length / 2], 0.0f);
    }
}

TEST(ZFourierTransformTest, InverseGivesTheRealSignalBackAndInputsStay)
{
    for (const int order : {1, 2, 3, 9, 13, 14}) {
        SCOPED_TRACE(order);
        const std::uint32_t length = 1u << order;
        ZBuffer time(length, "ZBuffer");
        fillWithNoise(time, 1);
        ZBuffer input(length, "ZBuffer");
        input.CopyFrom(time);
        Spectrum spectrum(order);
        ZFourierTransform::Create(order, kForward, 1)
            ->TransformReal(input, spectrum.re, spectrum.im);
        EXPECT_TRUE(std::equal(time.Data(), time.Data() + length, input.Data()));
        // Not parts of any real signal's spectrum.
        spectrum.im.Data()[0] = 5.0f;
        spectrum.im.Data()[length / 2] = 6.0f;
        Spectrum copy(order);
        copy.re.CopyFrom(spectrum.re);
        copy.im.CopyFrom(spectrum.im);
        ZBuffer back(length, "ZBuffer");
        ZFourierTransform::Create(order, kInverse, 1)->TransformReal(back, copy.re, copy.im);
        for (std::uint32_t i = 0; i < length; ++i)
            ASSERT_NEAR(back.Data()[i], time.Data()[i], 3e-6) << i;
        for (std::uint32_t k = 0; k <= length / 2; ++k) {
            ASSERT_EQ(copy.re.Data()[k], spectrum.re.Data()[k]) << k;
            ASSERT_EQ(copy.im.Data()[k], spectrum.im.Data()[k]) << k;
        }
    }
}

TEST(ZFourierTransformTest, ShorterBuffersGetTheLowBinsAndNothingBehindThem)
{
    const auto transform = ZFourierTransform::Create(10, kForward, 1);
    ZBuffer time(1024, "ZBuffer");
    fillWithNoise(time, 1);
    Spectrum whole(10);
    transform->TransformReal(time, whole.re, whole.im);
    for (const std::uint32_t bins : {1u, 2u, 5u, 6u, 7u, 8u, 100u, 512u}) {
        SCOPED_TRACE(bins);
        ZBuffer re(bins, "ZBuffer");
        ZBuffer im(bins, "ZBuffer");
        for (std::uint32_t k = bins; k < re.Allocated(); ++k)
            re.Data()[k] = im.Data()[k] = 7.0f;
        transform->TransformReal(time, re, im);
        for (std::uint32_t k = 0; k < re.Allocated(); ++k) {
            EXPECT_NEAR(re.Data()[k], k < bins ? whole.re.Data()[k] : 7.0f, 1e-8) << k;
            EXPECT_NEAR(im.Data()[k], k < bins ? whole.im.Data()[k] : 7.0f, 1e-8) << k;
        }
    }
}

TEST(ZFourierTransformTest, ComplexTransformsAreThoseOfTheDefinition)
{
    for (const int direction : {kForward, kInverse}) {
        for (const int order : {1, 2, 6}) {
            SCOPED_TRACE(testing::Message() << "order " << order << " direction " << direction);
            const std::uint32_t length = 1u << order;
            const double scale = direction == kForward ? 1.0 / length : 1.0;
            ZBuffer re(length, "ZBuffer");
            ZBuffer im(length, "ZBuffer");
            fillWithNoise(re, 1);
            fillWithNoise(im, 2);
            ZBuffer outRe(length, "ZBuffer");
            ZBuffer outIm(length, "ZBuffer");
            const auto expected = textbook(re, im, length, direction);
            const auto transform = ZFourierTransform::Create(order, direction, 0);
            transform->TransformComplex(re, im, outRe, outIm);
            transform->TransformInPlace(re, im);
            for (std::uint32_t k = 0; k < length; ++k) {
                EXPECT_NEAR(outRe.Data()[k], expected[k].real() * scale, 1e-5) << k;
                EXPECT_NEAR(outIm.Data()[k], expected[k].imag() * scale, 1e-5) << k;
                EXPECT_EQ(re.Data()[k], outRe.Data()[k]) << k;
                EXPECT_EQ(im.Data()[k], outIm.Data()[k]) << k;
            }
        }
    }
}

TEST(ZFourierTransformTest, RefusesOrdersItDoesNotHaveAndClassesThatCannot)
{
    for (const int order : {-1, 0, 25, 32})
        EXPECT_THROW((void)ZFourierTransform::Create(order, kForward, 1), ZException) << order;
    Unsupported unsupported;
    unsupported.Init(3, kForward, 1);
    ZBuffer buffer(8, "ZBuffer");
    expectZException(-1, "Fourier Transform is not supported on your processor.",
                     [&] { unsupported.TransformReal(buffer, buffer, buffer); });
    EXPECT_THROW(unsupported.TransformComplex(buffer, buffer, buffer, buffer), ZException);
    EXPECT_THROW(unsupported.TransformInPlace(buffer, buffer), ZException);
}

TEST(ZFourierTransformTest, ManyThreadsMakeRunAndDropTransformsAtOnce)
{
    ZBuffer time(1024, "ZBuffer");
    fillWithNoise(time, 1);
    Spectrum expected(10);
    ZFourierTransform::Create(10, kForward, 1)->TransformReal(time, expected.re, expected.im);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                Spectrum spectrum(10);
                const auto transform = ZFourierTransform::Create(10, kForward, 1);
                transform->TransformReal(time, spectrum.re, spectrum.im);
                // Bit by bit: the plan is the same whoever came before.
                EXPECT_TRUE(
                    std::equal(spectrum.re.Data(), spectrum.re.Data() + 513, expected.re.Data()));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace orvane
