// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/drawing/ZPictureScaler.h"

#include "support/Test.h"

using namespace orvane;

namespace
{

using Pixels = std::vector<std::uint32_t>;

/// Scales to rows that are longer than the picture; what lies behind it must stay.
Pixels scaled(const Pixels& pixels, const ZPoint& from, const ZPoint& to)
{
    constexpr std::uint32_t kBeyond = 0x12345678;
    Pixels target(static_cast<std::size_t>((to.x + 1) * to.y), kBeyond);
    ZPictureScaler(from, to).Scale(pixels.data(), from.x, target.data(), to.x + 1);
    Pixels picture;
    for (auto row = target.begin(); row != target.end(); row += to.x + 1) {
        picture.insert(picture.end(), row, row + to.x);
        EXPECT_EQ(row[to.x], kBeyond);
    }
    return picture;
}

}  // namespace

TEST(ZPictureScalerTest, FlatPicturesStayAndShadesAreReadBetweenThePixels)
{
    for (const ZPoint to : {ZPoint{1, 1}, ZPoint{5, 31}, ZPoint{13, 9}, ZPoint{40, 3}})
        EXPECT_EQ(scaled(Pixels(9 * 9, 0x80402010), {9, 9}, to),
                  Pixels(static_cast<std::size_t>(to.x * to.y), 0x80402010));
    Pixels shade;  // red rises by 8 across, green by 4 down
    for (std::uint32_t i = 0; i < 16 * 16; ++i)
        shade.push_back(0xff000000 | i % 16 * 8 << 16 | i / 16 * 4 << 8);
    EXPECT_EQ(scaled(shade, {16, 16}, {16, 16}), shade);
    for (const int size : {12, 24}) {
        const Pixels picture = scaled(shade, {16, 16}, {size, size});
        for (int i = size / 4; i < size * 3 / 4; ++i) {
            const double place = (i + 0.5) * 16.0 / size - 0.5;
            const auto pixel = picture[static_cast<std::size_t>(i * size + i)];
            EXPECT_NEAR(pixel >> 16 & 0xff, place * 8.0, 0.51);
            EXPECT_NEAR(pixel >> 8 & 0xff, place * 4.0, 0.51);
        }
    }
}

TEST(ZPictureScalerTest, ChannelsStayWithinAlphaBesideAnEdge)
{
    Pixels edge;
    for (int i = 0; i < 8 * 8; ++i)
        edge.push_back(i % 8 < 4 ? 0x00000000 : 0xffffffff);
    for (const int size : {6, 20})
        for (const std::uint32_t pixel : scaled(edge, {8, 8}, {size, size})) {
            EXPECT_EQ(pixel & 0xff, pixel >> 24);
            EXPECT_EQ(pixel >> 8 & 0xff, pixel >> 24);
        }
    // White under half an alpha beside opaque black: the overshoot of white ends at its alpha.
    Pixels half;
    for (int i = 0; i < 8 * 8; ++i)
        half.push_back(i % 8 < 4 ? 0x80808080 : 0xff000000);
    for (const std::uint32_t pixel : scaled(half, {8, 8}, {20, 20}))
        EXPECT_LE(pixel & 0xff, pixel >> 24);
}
