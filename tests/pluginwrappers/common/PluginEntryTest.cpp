// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"

#include "support/BoxRecorder.h"
#include "support/TestHost.h"
#include "zlib/common/objects/ZException.h"

#include <gtest/gtest.h>

namespace orvane
{

TEST(PluginEntryTest, AFailureGivesNoInstanceAndIsReportedUnlessItEndsWithoutReport)
{
    BoxRecorder recorder;
    const TestHost host;
    for (const std::int32_t code : {ZException::kGeneral, ZException::kEndWithoutReport}) {
        TestHost::On(audioMasterVersion,
                     [code](AEffect*) { throw ZException(code, "no description"); });
        EXPECT_EQ(openPlugin(TestHost::callback), nullptr);
        ASSERT_EQ(recorder.boxes.size(), 1u);
    }
    EXPECT_TRUE(recorder.boxes[0].text.starts_with("no description"));
}

}  // namespace orvane
