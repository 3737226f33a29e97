#include "kestrune/common/KestruneScaleTable.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace orvane
{

namespace
{

using Degrees = std::vector<std::int32_t>;
using Archive = std::array<float, KestruneScaleTable::kArchivedFlags>;

KestruneScaleTable builtInTable()
{
    KestruneScaleTable table;
    table.AddBuiltInScales();
    return table;
}

Degrees scaleAt(const KestruneScaleTable& table, int index)
{
    const auto degrees = table.Degrees(index);
    return {degrees.begin(), degrees.end()};
}

}  // namespace

TEST(KestruneScaleTableTest, BeginsWithTheBuiltInScales)
{
    const KestruneScaleTable table = builtInTable();
    EXPECT_EQ(table.Count(), 4);
    EXPECT_EQ(table.CustomCount(), 0);
    EXPECT_EQ(scaleAt(table, 1), (Degrees{2, 4, 5, 7, 9, 11}));
    EXPECT_EQ(scaleAt(table, 3), (Degrees{3, 5, 6, 7, 10}));
}

TEST(KestruneScaleTableTest, IndexOutsideTheTableIsChromatic)
{
    const KestruneScaleTable table = builtInTable();
    for (const int index : {4, -1, 1000, std::numeric_limits<int>::min()})
        EXPECT_EQ(scaleAt(table, index), (Degrees{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11})) << index;
}

TEST(KestruneScaleTableTest, CustomScaleKeepsItsOrderAndOnlyDegrees)
{
    KestruneScaleTable table = builtInTable();
    table.Add(Degrees{11, 0, -1, 12, 3, 11, std::numeric_limits<std::int32_t>::max(), 3});
    table.Add({});
    EXPECT_EQ(scaleAt(table, 4), (Degrees{11, 0, 3}));
    EXPECT_TRUE(scaleAt(table, 5).empty());
}

TEST(KestruneScaleTableTest, ArchiveHoldsSixteenScalesWithTheirRoots)
{
    KestruneScaleTable table = builtInTable();
    for (int scale = 0; scale < 17; ++scale)
        table.Add(Degrees{scale % 11 + 1});
    Archive archive{};
    table.Pack(archive, 17);
    EXPECT_EQ(archive[12 * 15 + 0], 1.0f);
    EXPECT_EQ(archive[12 * 15 + 5], 1.0f);

    KestruneScaleTable restored = builtInTable();
    restored.Add(Degrees{1, 2, 3});
    restored.Unpack(archive, 17);
    EXPECT_EQ(restored.CustomCount(), 16);
    for (int scale = 0; scale < 16; ++scale)
        EXPECT_EQ(scaleAt(restored, 4 + scale), (Degrees{0, scale % 11 + 1}));
    EXPECT_EQ(scaleAt(restored, 20), scaleAt(restored, 0));
}

TEST(KestruneScaleTableTest, RowsWithoutAScaleStayAsTheyAre)
{
    KestruneScaleTable table = builtInTable();
    table.Add(Degrees{7});
    Archive archive;
    archive.fill(0.5f);
    table.Pack(archive, 3);
    EXPECT_EQ(archive[1], 0.0f);
    EXPECT_EQ(archive[7], 1.0f);
    for (std::size_t flag = 12; flag < archive.size(); ++flag)
        ASSERT_EQ(archive[flag], 0.5f) << flag;
}

TEST(KestruneScaleTableTest, OnlyExactlyOneIsSet)
{
    const std::array<float, 6> flags{1.0f,  0.999f, 1.001f,
                                     -1.0f, 1.0f,   std::numeric_limits<float>::quiet_NaN()};
    EXPECT_EQ(degreesOf(flags), (Degrees{0, 4}));
}

}  // namespace orvane
