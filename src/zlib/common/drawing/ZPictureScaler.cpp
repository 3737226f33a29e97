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

void readPixel(std::uint32_t pixel, float* channels)
{
    for (int c = 0; c < kChannels; ++c)
        channels[c] = static_cast<float>(pixel >> (c * kChannelBits) & 0xffu);
}

/// The kernel swings beyond what it is given: no channel may leave its range, which ends at alpha.
std::uint32_t pixelOf(const float* channels)
{
    const float alpha = std::clamp(channels[kAlpha], 0.0f, kFull);
    std::uint32_t pixel = 0;
    for (int c = 0; c < kChannels; ++c) {
        const float bounded = std::clamp(channels[c], 0.0f, alpha);
        pixel |= static_cast<std::uint32_t>(bounded + 0.5f) << (c * kChannelBits);
    }
    return pixel;
}

void addScaled(float* __restrict sum, const float* __restrict values, float factor, int count)
{
    for (int i = 0; i < count; ++i)
        sum[i] += factor * values[i];
}

}  // namespace

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
    , mRow(static_cast<std::size_t>(kChannels * (from.x + 2 * mAcross.length)))
{
    assert(from.x > 0 && from.y > 0 && to.x > 0 && to.y > 0);
}

void ZPictureScaler::Scale(const std::uint32_t* source, std::ptrdiff_t sourceStride,
                           std::uint32_t* target, std::ptrdiff_t targetStride)
{
    const int values = kChannels * mTo.x;
    std::vector<float> sum(static_cast<std::size_t>(values));
    // The rows that a pixel is made of, each in the place that its number has modulo their count.
    std::vector<std::vector<float>> rows(static_cast<std::size_t>(mDown.length), sum);
    int next = 0;  // source row
    for (int y = 0; y < mTo.y; ++y, target += targetStride) {
        std::fill(sum.begin(), sum.end(), 0.0f);
        for (int k = 0; k < mDown.length; ++k) {
            const auto at = static_cast<std::size_t>(y);
            const int row = std::clamp(mDown.first[at] + k, 0, mFrom.y - 1);
            for (; next <= row; ++next)
                ScaleAcross(source + next * sourceStride,
                            rows[static_cast<std::size_t>(next % mDown.length)].data());
            addScaled(sum.data(), rows[static_cast<std::size_t>(row % mDown.length)].data(),
                      mDown.weights[at * static_cast<std::size_t>(mDown.length) +
                                    static_cast<std::size_t>(k)],
                      values);
        }
        for (int x = 0; x < mTo.x; ++x)
            target[x] = pixelOf(sum.data() + kChannels * x);
    }
}

void ZPictureScaler::ScaleAcross(const std::uint32_t* row, float* out)
{
    float* channels = mRow.data();
    const int beyond = mAcross.length;
    for (int x = -beyond; x < mFrom.x + beyond; ++x, channels += kChannels)
        readPixel(row[std::clamp(x, 0, mFrom.x - 1)], channels);
    const float* weight = mAcross.weights.data();
    for (const int first : mAcross.first) {
        const float* pixel = mRow.data() + kChannels * (first + beyond);
        float sum[kChannels] = {};
        for (int k = 0; k < mAcross.length; ++k, ++weight, pixel += kChannels)
            for (int c = 0; c < kChannels; ++c)
                sum[c] += *weight * pixel[c];
        std::copy(std::begin(sum), std::end(sum), out);
        out += kChannels;
    }
}

}  // namespace orvane
