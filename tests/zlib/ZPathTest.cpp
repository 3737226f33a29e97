#include "zlib/common/ZPath.h"

#include "zlib/common/ZRect.h"
#include "zlib/common/ZRegion.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace orvane
{

namespace
{

using Kind = ZPathOutline::Segment::Kind;

std::vector<Kind> kinds(const ZPathOutline& outline)
{
    std::vector<Kind> result;
    for (const auto& segment : outline.GetSegments())
        result.push_back(segment.kind);
    return result;
}

void expectNear(const ZPathPoint& point, float x, float y)
{
    EXPECT_NEAR(point.x, x, 1e-4f);
    EXPECT_NEAR(point.y, y, 1e-4f);
}

}  // namespace

TEST(ZPathTest, AMoveClosesTheFigureAndBeginsOneWithALineOfNoLength)
{
    ZPath path;
    path.MoveTo({1, 2});
    path.LineTo({5, 2});
    path.MoveTo({8, 9});
    EXPECT_EQ(kinds(path.GetNative()), (std::vector{Kind::kMove, Kind::kLine, Kind::kLine,
                                                    Kind::kClose, Kind::kMove, Kind::kLine}));
    EXPECT_EQ(path.GetSegmentCount(), 3);
    expectNear(path.GetStartPoint(), 8.0f, 9.0f);
    path.Reset();
    EXPECT_TRUE(path.GetNative().IsEmpty());
    EXPECT_EQ(path.GetSegmentCount(), 0);
}

TEST(ZPathTest, ALineGoesOnFromTheEndOfAnArc)
{
    ZPath path;
    path.MoveTo({0, 5});
    path.AddArc({5, 5}, 5, 180, 90);
    expectNear(path.GetLastPoint(), 5.0f, 0.0f);
    path.LineTo({9, 0});
    expectNear(path.GetPoints().back(), 9.0f, 0.0f);
    path.AddArc({9, 5}, 5, 270, -90);
    expectNear(path.GetLastPoint(), 4.0f, 5.0f);
    const auto before = path.GetSegmentCount();
    path.AddArc({0, 0}, 0, 0, 90);
    path.AddArc({0, 0}, -1, 0, 90);
    path.AddArc({0, 0}, 5, 10, 0);
    EXPECT_EQ(path.GetSegmentCount(), before) << "an arc of nothing was added";
    expectNear(path.GetLastPoint(), 4.0f, 5.0f);
}

TEST(ZPathTest, LinesThroughPointsReadBackAsThosePoints)
{
    ZPath path;
    const std::array<ZPathPoint, 3> points{{{0.5f, 0.0f}, {2.0f, 1.5f}, {4.0f, 0.0f}}};
    path.AddPoints(points);
    EXPECT_EQ(path.GetPoints(), std::vector(points.begin(), points.end()));
    const std::array<ZPoint, 1> one{{{7, 7}}};
    path.AddLines(one);
    EXPECT_EQ(path.GetSegmentCount(), 2);
    const std::array<ZPoint, 2> two{{{4, 0}, {6, 6}}};
    path.AddLines(two);
    EXPECT_EQ(path.GetPoints().size(), 4u);
}

TEST(ZPathOutlineTest, AnAddedPathIsJoinedToTheOpenFigureAndNotToAClosedOne)
{
    ZPathOutline added;
    added.AddLine({4.0f, 0.0f}, {4.0f, 4.0f});
    ZPathOutline open;
    open.AddLine({0.0f, 0.0f}, {2.0f, 0.0f});
    ZPathOutline closed = open;
    closed.Close();
    open.Append(added);
    EXPECT_EQ(kinds(open), (std::vector{Kind::kMove, Kind::kLine, Kind::kLine, Kind::kLine}));
    closed.Append(added);
    EXPECT_EQ(kinds(closed),
              (std::vector{Kind::kMove, Kind::kLine, Kind::kClose, Kind::kMove, Kind::kLine}));
    open.Append(open);
    EXPECT_EQ(open.GetSegments().size(), 8u);
    open.Append(ZPathOutline());
    EXPECT_EQ(open.GetSegments().size(), 8u);
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
    EXPECT_EQ(ZRect{}.Union(kRect), kRect);
    EXPECT_TRUE(kRect.Contains({0, 9}));
    EXPECT_FALSE(kRect.Contains({10, 0}));
    EXPECT_EQ(kRect.Inset(2, -1), (ZRect{2, -1, 8, 11}));
    EXPECT_TRUE(kRect.Inset(5, 0).IsEmpty());
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
    const ZRegion before = region;
    region.Translate(5, -5);
    region.Intersect({8, -1, 13, 1});
    EXPECT_TRUE(region.IsEmpty()) << "it lay in the hole";
    EXPECT_EQ(region.GetBounds(), ZRect{});
    region = before;
    EXPECT_EQ(region.GetBounds(), (ZRect{0, 0, 10, 10}));
}

TEST(ZRegionTest, RectanglesWithoutPixelsAddNothingAndTheFarthestSomething)
{
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    ZRegion region(ZRect{5, 5, 2, 9});
    EXPECT_TRUE(region.IsEmpty());
    region.Add({-kMax - 1, 0, kMax, 1});
    EXPECT_EQ(region.GetBounds(), (ZRect{-(1 << 24), 0, 1 << 24, 1}));
}

}  // namespace orvane
