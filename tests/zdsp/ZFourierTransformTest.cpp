#include "zdsp/common/ZFourierTransform.h"

#include "zlib/common/ZException.h"

#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

using Complex = std::complex<double>;

/// Values in -1 .. 1 that repeat on every run.
void fill(ZBuffer& buffer, unsigned seed)
{
    for (std::uint32_t i = 0; i < buffer.Length(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        buffer.Data()[i] = static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
    }
}

/// Sum over the values by the definition; sign -1 forward, +1 inverse.
std::vector<Complex> textbook(const ZBuffer& re, const ZBuffer* im, std::uint32_t length, int sign)
{
    std::vector<Complex> bins(length);
    for (std::uint32_t k = 0; k < length; ++k) {
        for (std::uint32_t n = 0; n < length; ++n) {
            const double turns = static_cast<double>(k * n % length) / length;
            const double angle = sign * 2.0 * std::numbers::pi * turns;
            const Complex value(re.Data()[n], im ? im->Data()[n] : 0.0f);
            bins[k] += value * std::polar(1.0, angle);
        }
    }
    return bins;
}

}  // namespace

TEST(ZFourierTransformTest, RealSpectrumIsThatOfTheDefinitionDividedByItsLength)
{
    for (const int order : {1, 2, 3, 5, 10}) {
        SCOPED_TRACE(order);
        const std::uint32_t length = 1u << order;
        const auto transform = ZFourierTransform::Create(order, ZFourierTransform::kForward, 1);
        ZBuffer time(length, "ZBuffer");
        ZBuffer re(length / 2 + 1, "ZBuffer");
        ZBuffer im(length / 2 + 1, "ZBuffer");
        fill(time, 1);
        const auto expected = textbook(time, nullptr, length, -1);
        transform->TransformReal(time, re, im);
        for (std::uint32_t k = 0; k <= length / 2; ++k) {
            EXPECT_NEAR(re.Data()[k], expected[k].real() / length, 1e-7) << "bin " << k;
            EXPECT_NEAR(im.Data()[k], expected[k].imag() / length, 1e-7) << "bin " << k;
        }
        EXPECT_EQ(im.Data()[0], 0.0f);
        EXPECT_EQ(im.Data()[length / 2], 0.0f);
    }
}

}  // namespace orvane
