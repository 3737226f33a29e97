// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/AutomationFile.h"

#include "support/ExpectZException.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvane
{

TEST(AutomationFileTest, PointsAreSortedByTime)
{
    const auto points = parseAutomation("\xEF\xBB\xBFtime,parameter,value\r\n"
                                        "# a remark\n\n"
                                        " 2.5 , Pitch Correcton Time , 120 \r\n"
                                        "1,\"key\",\"d\"\n"
                                        "1,transposeOnOff,1",
                                        "f");
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[0].value.setting, Setting::kKey);
    EXPECT_EQ(points[0].value.value, 5.0f);
    EXPECT_EQ(points[1].value.setting, Setting::kTransposeOnOff);
    EXPECT_EQ(points[2].seconds, 2.5);
    EXPECT_EQ(points[2].value.value, 120.0f);
    EXPECT_TRUE(parseAutomation("", "f").empty());
}

TEST(AutomationFileTest, AWrongLineIsReportedWithItsNumber)
{
    const std::vector<std::pair<std::string, std::string>> lines{
        {"1,key", "'1,key' is no point: write SECONDS,NAME,VALUE, such as 1.5,key,C"},
        {"-1,key,C", "'-1' is no time: write seconds from the start, such as 1.5"},
        {"inf,key,C", "'inf' is no time: write seconds from the start, such as 1.5"},
        {"1s,key,C", "'1s' is no time: write seconds from the start, such as 1.5"},
        {"1,Pitch Correcton Time,401",
         "pitchCorrectionTime cannot be '401': it takes a number from 0 to 400 (ms)"},
        {"1,key," + std::string(1000, 'C'),
         "it is too long: write SECONDS,NAME,VALUE, such as 1.5,key,C"},
    };
    for (const auto& [line, says] : lines)
        expectZException("f, line 3: " + says, [&line = line] {
            static_cast<void>(parseAutomation("\n0,key,C\n" + line + "\n", "f"));
        });
}

}  // namespace orvane
