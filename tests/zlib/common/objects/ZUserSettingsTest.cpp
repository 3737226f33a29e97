// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZUserSettings.h"

#include "support/PrivateFolder.h"
#include "support/Test.h"

#include <filesystem>

using namespace orvane;

using namespace std::string_literals;

namespace
{

struct ZUserSettingsTest : testing::Test
{
    [[nodiscard]] std::string FilePath() const { return mFolder.Path("Orvane/Mini.conf"); }
    void Write(const std::string& text) const
    {
        std::filesystem::create_directories(mFolder.Path("Orvane"));
        writeTextFile(FilePath(), text);
    }
    static std::optional<std::int32_t> Get(const char* name)
    {
        std::int32_t value = 0;
        if (!ZUserSettings("Mini").GetInt(name, value))
            return std::nullopt;
        return value;
    }

    PrivateFolder mFolder;
    EnvironmentVariable mSettingsFolder{"XDG_CONFIG_HOME", mFolder.Path().c_str()};
};

}  // namespace

TEST_F(ZUserSettingsTest, StoredValuesAreReadByAnotherObject)
{
    const ZUserSettings settings("Mini");
    EXPECT_EQ(Get("KeyboardMode"), std::nullopt);
    EXPECT_EQ(mFolder.Count(), 0);  // asking makes no file
    EXPECT_TRUE(settings.SetInt("KeyboardMode", 2));
    EXPECT_TRUE(settings.SetInt("a=b", -2147483647));
    EXPECT_TRUE(settings.SetInt("KeyboardMode", 3));
    EXPECT_EQ(Get("KeyboardMode"), 3);
    EXPECT_EQ(Get("a=b"), -2147483647);
    EXPECT_EQ(readTextFile(FilePath()), "KeyboardMode=3\na=b=-2147483647\n");
    EXPECT_FALSE(settings.SetInt("a\nb", 1));
}

TEST_F(ZUserSettingsTest, SkipsAndKeepsDamagedLines)
{
    Write("\n=\nwords\n\0\xff\nblank= 12 \r\nbig=2147483648\ntail=1x\nempty=\n"
          "twice=1\ntwice=2\nhex=0x10\nlast=-5"s);
    EXPECT_EQ(Get("blank"), 12);
    EXPECT_EQ(Get("twice"), 2);
    for (const char* name : {"big", "tail", "empty", "hex", "words"})
        EXPECT_EQ(Get(name), std::nullopt) << name;

    EXPECT_TRUE(ZUserSettings("Mini").SetInt("twice", 9));
    EXPECT_EQ(Get("twice"), 9);
    EXPECT_NE(readTextFile(FilePath()).find("words\n"), std::string::npos);
}

TEST_F(ZUserSettingsTest, FallsBackToTheHomeFolder)
{
    writeTextFile(mFolder.Path("Orvane"), "a file where the folder should be");
    EXPECT_FALSE(ZUserSettings("Mini").SetInt("a", 1));
    const EnvironmentVariable relative("XDG_CONFIG_HOME", "relative");
    {
        const EnvironmentVariable home("HOME", mFolder.Path("home").c_str());
        EXPECT_TRUE(ZUserSettings("Mini").SetInt("a", 1));
        EXPECT_EQ(Get("a"), 1);
        EXPECT_EQ(readTextFile(mFolder.Path("home/.config/Orvane/Mini.conf")), "a=1\n");
    }
    const EnvironmentVariable homeless("HOME", nullptr);
    EXPECT_FALSE(ZUserSettings("Mini").SetInt("a", 1));
    EXPECT_EQ(Get("a"), std::nullopt);
}

TEST_F(ZUserSettingsTest, TwoWritersLoseNothing)
{
    // The padding makes a file that is written in place long enough to be caught half done.
    Write(std::string(30000, '#') + "\nz=0\n");
    const auto write = [](const std::string& name) {
        for (std::int32_t i = 0; i < 50; ++i)
            EXPECT_TRUE(ZUserSettings("Mini").SetInt(name + std::to_string(i), i));
    };
    std::thread one(write, "a");
    std::thread two(write, "b");
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(Get("z"), 0);
    one.join();
    two.join();
    for (std::int32_t i = 0; i < 50; ++i)
        for (const std::string name : {"a", "b"})
            EXPECT_EQ(Get((name + std::to_string(i)).c_str()), i) << name;
}
