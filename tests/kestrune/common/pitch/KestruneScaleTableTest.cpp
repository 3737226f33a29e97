// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/pitch/KestruneScaleTable.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace orvane
{

namespace
{

using Degrees = std::vector<std::int32_t>;

Degrees scaleAt(const KestruneScaleTable& table, int index)
{
    const auto degrees = table.Degrees(index);
    return {degrees.begin(), degrees.end()};
}

}  // namespace

TEST(KestruneScaleTableTest, ScalesKeepTheirOrderAndOnlyDegrees)
{
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    KestruneScaleTable table;
    table.AddBuiltInScales();
    table.Add(Degrees{11, 0, -1, 12, 3, 11, kMost, 3});
    table.Add({});
    EXPECT_EQ(scaleAt(table, 3), (Degrees{3, 5, 6, 7, 10}));
    EXPECT_EQ(scaleAt(table, 4), (Degrees{11, 0, 3}));
    EXPECT_TRUE(scaleAt(table, 5).empty());
    for (const int index : {6, -1, kMost})
        EXPECT_EQ(scaleAt(table, index), (Degrees{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11})) << index;
}

TEST(KestruneScaleTableTest, RowsWithoutAScaleStayAsTheyAre)
{
    KestruneScaleTable table;
    table.AddBuiltInScales();
    table.Add(Degrees{7});
    std::array<float, KestruneScaleTable::kArchivedFlags> archive;
    archive.fill(0.5f);
    table.Pack(archive, 3);
    EXPECT_EQ(degreesOf(std::span(archive).first(12)), (Degrees{0, 7}));
    EXPECT_EQ(archive[1], 0.0f);
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
