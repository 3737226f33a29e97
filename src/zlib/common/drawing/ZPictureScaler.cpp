// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZPictureScaler.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orvane
{

namespace
{

constexpr int kChannels = 4;
constexpr int kAlpha = 3;  // the channel
constexpr int kChannelBits = 8;
constexpr float kFull = 255.0f;
constexpr double kKernelReach = 2.0;

double cubic(double x)
{
    x = std::fabs(x);
    if (x >= kKernelReach)
        return 0.0;
    return x < 1.0 ? (1.5 * x - 2.5) * x * x + 1.0 : ((2.5 - 0.5 * x) * x - 4.0) * x + 2.0;
}

}  // namespace

ZPictureScaler::Channels ZPictureScaler::ChannelsOf(std::uint32_t pixel)
{
    const auto channel = [pixel](int c) {
        return static_cast<std::int32_t>(pixel >> (c * kChannelBits) & 0xffu);
    };
    return __builtin_convertvector((Whole{channel(0), channel(1), channel(2), channel(3)}),
                                   Channels);
}

std::uint32_t ZPictureScaler::PixelOf(const Channels& channels)
{
    // The kernel swings beyond what it is given: no channel may leave its range, which ends at
    // alpha.
    const Channels most = Channels{} + std::clamp(channels[kAlpha], 0.0f, kFull);
    const Channels positive = channels < 0.0f ? Channels{} : channels;
    const Channels bounded = positive > most ? most : positive;
    const Whole whole = __builtin_convertvector(bounded + 0.5f, Whole);
    std::uint32_t pixel = 0;
    for (int c = 0; c < kChannels; ++c)
        pixel |= static_cast<std::uint32_t>(whole[c]) << (c * kChannelBits);
    return pixel;
}

ZPictureScaler::Kernels::Kernels(int from, int to)
    : length(0)
{
    const double ratio = static_cast<double>(from) / to;
    const double wide = std::max(ratio, 1.0);
    length = 2 * static_cast<int>(std::ceil(kKernelReach * wide));
    for (int i = 0; i < to; ++i) {
        const double centre = (i + 0.5) * ratio - 0.5;
        first.push_back(static_cast<int>(std::floor(centre)) - length / 2 + 1);
        double sum = 0.0;
        for (int k = 0; k < length; ++k)
            sum += cubic((first.back() + k - centre) / wide);
        for (int k = 0; k < length; ++k)
            weights.push_back(static_cast<float>(cubic((first.back() + k - centre) / wide) / sum));
    }
}

ZPictureScaler::ZPictureScaler(const ZPoint& from, const ZPoint& to)
    : mFrom(from)
    , mTo(to)
    , mAcross(from.x, to.x)
    , mDown(from.y, to.y)
    , mRow(static_cast<std::size_t>(from.x + 2 * mAcross.length))
{
    assert(from.x > 0 && from.y > 0 && to.x > 0 && to.y > 0);
}

void ZPictureScaler::Scale(const std::uint32_t* source, std::ptrdiff_t sourceStride,
                           std::uint32_t* target, std::ptrdiff_t targetStride)
{
    const auto width = static_cast<std::size_t>(mTo.x);
    std::vector<Channels> sum(width);
    // The rows that a pixel is made of, each in the place that its number has modulo their count.
    std::vector<std::vector<Channels>> rows(static_cast<std::size_t>(mDown.length), sum);
    const float* weight = mDown.weights.data();
    int next = 0;  // source row
    for (const int first : mDown.first) {
        std::fill(sum.begin(), sum.end(), Channels{});
        for (int k = 0; k < mDown.length; ++k, ++weight) {
            const int row = std::clamp(first + k, 0, mFrom.y - 1);
            for (; next <= row; ++next)
                ScaleAcross(source + next * sourceStride,
                            rows[static_cast<std::size_t>(next % mDown.length)].data());
            const auto& added = rows[static_cast<std::size_t>(row % mDown.length)];
            for (std::size_t x = 0; x < width; ++x)
                sum[x] += *weight * added[x];
        }
        std::transform(sum.begin(), sum.end(), target, PixelOf);
        target += targetStride;
    }
}

void ZPictureScaler::ScaleAcross(const std::uint32_t* row, Channels* out)
{
    const int beyond = mAcross.length;
    for (int x = -beyond; x < mFrom.x + beyond; ++x)
        mRow[static_cast<std::size_t>(x + beyond)] = ChannelsOf(row[std::clamp(x, 0, mFrom.x - 1)]);
    const float* weight = mAcross.weights.data();
    for (const int first : mAcross.first) {
        const Channels* const pixels = mRow.data() + first + beyond;
        Channels sum{};
        for (int k = 0; k < beyond; ++k)
            sum += *weight++ * pixels[k];
        *out++ = sum;
    }
}

}  // namespace orvane
