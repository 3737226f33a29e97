// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"

#include "support/Eventually.h"
#include "support/PrivateFolder.h"
#include "support/TestHost.h"
#include "zlib/common/objects/ZException.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

namespace orvane
{

namespace
{

/// Opens the plug-in in a host that fails with an exception, and returns what that writes to
/// standard error.
std::string failToLoad(std::int32_t code)
{
    const TestHost host;
    TestHost::On(audioMasterVersion,
                 [code](AEffect*) { throw ZException(code, "no\ndescription"); });
    testing::internal::CaptureStderr();
    EXPECT_EQ(openPlugin(TestHost::callback), nullptr);
    return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(PluginEntryTest, AFailureIsALineOnStandardErrorAndADialogThatNothingWaitsFor)
{
    const PrivateFolder programs;
    const std::string zenity = programs.Path("zenity");
    const std::string shown = programs.Path("shown");
    writeTextFile(zenity, "#!/bin/sh\necho \"$@\" > " + shown + "\nexec sleep 5\n");
    std::filesystem::permissions(zenity, std::filesystem::perms::owner_all);
    const EnvironmentVariable path("PATH", (programs.Path() + ":/usr/bin:/bin").c_str());
    const EnvironmentVariable desktop("XDG_CURRENT_DESKTOP", nullptr);
    const EnvironmentVariable wayland("WAYLAND_DISPLAY", nullptr);
    const std::string line = "Cantorel Mini could not be loaded: no description (code -1)\n";
    {
        const EnvironmentVariable display("DISPLAY", nullptr);
        EXPECT_EQ(failToLoad(ZException::kGeneral), line);
    }
    const EnvironmentVariable display("DISPLAY", ":7");
    EXPECT_EQ(failToLoad(ZException::kEndWithoutReport), "");
    EXPECT_EQ(programs.Count(), 1) << "no dialog yet";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(failToLoad(ZException::kGeneral), line);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_TRUE(eventually([&] { return readTextFile(shown).ends_with("(code -1)\n"); }));
}

}  // namespace orvane
