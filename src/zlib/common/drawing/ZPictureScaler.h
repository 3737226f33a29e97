// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZPoint.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane
{

/// Scales a picture by cubic convolution (R. Keys, "Cubic convolution interpolation for digital
/// image processing", IEEE Transactions on Acoustics, Speech, and Signal Processing 29, 1981),
/// whose kernel is widened where the picture becomes smaller. Each row is scaled across, then rows
/// are added up: a pixel costs the sum of both kernels' lengths. The drawing library's own good
/// filter costs their product, a hundred milliseconds for a picture as large as a window.
///
/// Pixels are premultiplied, with alpha in the upper eight bits. Beyond the edges the picture goes
/// on as its outermost pixels.
class ZPictureScaler
{
public:
    /// Sizes in pixels, at least 1 by 1. [interface thread]
    ZPictureScaler(const ZPoint& from, const ZPoint& to);

    /// Strides: pixels from one row to the next. [interface thread]
    void Scale(const std::uint32_t* source, std::ptrdiff_t sourceStride, std::uint32_t* target,
               std::ptrdiff_t targetStride);

private:
    /// The channels of a pixel side by side, 0 to 255 each; alpha is the last.
    using Channels [[gnu::vector_size(16)]] = float;
    using Whole [[gnu::vector_size(16)]] = std::int32_t;

    /// What each pixel of one direction is made of: a run of source pixels, which may begin before
    /// the first or end behind the last.
    struct Kernels
    {
        Kernels(int from, int to);

        int length;  // of each run
        std::vector<int> first;
        std::vector<float> weights;  // length for each pixel
    };

    [[nodiscard]] static Channels ChannelsOf(std::uint32_t pixel);
    [[nodiscard]] static std::uint32_t PixelOf(const Channels& channels);
    void ScaleAcross(const std::uint32_t* row, Channels* out);

    ZPoint mFrom;
    ZPoint mTo;
    Kernels mAcross;
    Kernels mDown;
    std::vector<Channels> mRow;  // a source row, with as many pixels as a run before and behind it
};

}  // namespace orvane
