#include "zlib/common/ZPath.h"

#include "zlib/common/ZRect.h"
#include "zlib/common/ZRegion.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace orvane
{

TEST(ZPathTest, AMoveClosesTheFigureAndBeginsOneWithALineOfNoLength)
{
    ZPath path;
    path.MoveTo({1, 2});
    path.LineTo({5, 2});
    path.MoveTo({8, 9});
    using Kind = ZPathOutline::Segment::Kind;
    std::vector<Kind> kinds;
    for (const auto& segment : path.GetNative().GetSegments())
        kinds.push_back(segment.kind);
    EXPECT_EQ(kinds, (std::vector{Kind::kMove, Kind::kLine, Kind::kLine, Kind::kClose, Kind::kMove,
                                  Kind::kLine}));
    EXPECT_EQ(path.GetSegmentCount(), 3);
    EXPECT_EQ(path.GetStartPoint(), (ZPathPoint{8.0f, 9.0f}));
}

TEST(ZRectTest, CommonPixelsAndTheRectangleAroundBoth)
{
    constexpr ZRect kRect{0, 0, 10, 10};
    EXPECT_EQ(kRect.Intersection({5, 5, 20, 20}), (ZRect{5, 5, 10, 10}));
    EXPECT_EQ(kRect.Intersection({10, 0, 20, 10}), ZRect{}) << "edges that touch share no pixel";
    EXPECT_FALSE(kRect.Intersects({}));
    EXPECT_FALSE(kRect.Intersects({5, 5, 5, 9}));
    EXPECT_EQ(kRect.Union({12, -3, 14, 2}), (ZRect{0, -3, 14, 10}));
    EXPECT_EQ(kRect.Union({}), kRect);
    EXPECT_TRUE(kRect.Contains({0, 9}));
    EXPECT_FALSE(kRect.Contains({10, 0}));
}

TEST(ZRectTest, StaysAtTheEndOfItsNumbers)
{
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr ZRect kWorld{-kMax - 1, -kMax - 1, kMax, kMax};
    EXPECT_EQ(kWorld.GetWidth(), kMax);
    EXPECT_EQ(kWorld.Offset(kMax, -1), (ZRect{-1, -kMax - 1, kMax, kMax - 1}));
    EXPECT_EQ(kWorld.Inset(-1, -1), kWorld);
    EXPECT_EQ(kWorld.Intersection({1, 2, 3, 4}), (ZRect{1, 2, 3, 4}));
}

TEST(ZRegionTest, PiecesAroundAHoleDoNotOverlapItAndAddUp)
{
    constexpr ZRect kHole{3, 4, 8, 6};
    ZRegion region(ZRect{0, 0, 10, 10});
    region.Subtract(ZRegion(kHole));
    std::int32_t area = 0;
    for (const ZRect& piece : region.GetRects()) {
        EXPECT_FALSE(piece.Intersects(kHole));
        area += piece.GetWidth() * piece.GetHeight();
    }
    EXPECT_EQ(area, 100 - 10);
    EXPECT_EQ(region.GetBounds(), (ZRect{0, 0, 10, 10}));
    region.Translate(5, -5);
    region.Intersect({8, -1, 13, 1});
    EXPECT_TRUE(region.IsEmpty()) << "it lay in the hole";
}

}  // namespace orvane
