// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZMessage.h"

#include "support/ExpectZException.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZMessageIds.h"
#include "zlib/common/objects/ZMessageRegistry.h"
#include "zlib/common/objects/ZXMLElement.h"

using namespace orvane;

namespace
{

template <class T>
T field(const ZMessage& message, const char* name)
{
    T value{};
    EXPECT_TRUE(message.Find(name, value)) << name;
    return value;
}

}  // namespace

TEST(ZMessageTest, FieldsAreNotOverwrittenAndReadAsTheirOwnType)
{
    ZMessage message(ZSAMPLERATECHANGED);
    std::int32_t number = 7;
    EXPECT_FALSE(message.Find("rate", number));
    EXPECT_TRUE(message.Add<float>("rate", 44100.0f));
    EXPECT_FALSE(message.Add<float>("rate", 1.0f));
    EXPECT_FALSE(message.Find("rate", number));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(field<float>(message, "rate"), 44100.0f);
}

TEST(ZMessageTest, ReadsFieldsOfEveryTypeFromADescription)
{
    const std::string text =
        "<message id=\"ZFILENEW\" name=\"new\">"
        "<int8 name=\"a\" value=\"-8\" /><uint8 name=\"b\" value=\"200\" />"
        "<int16 name=\"c\" value=\"-16\" /><uint16 name=\"d\" value=\"60000\" />"
        "<int32 name=\"e\" value=\"-32\" /><int64 name=\"g\" value=\"-64\" />"
        "<float name=\"i\" value=\"0.5\" /><bool name=\"l\" value=\"true\" />"
        "<ZString name=\"filename\" value=\"Kestrune\" /><ZPoint name=\"m\" x=\"1\" y=\"-2\" />"
        "<ZRect name=\"n\" left=\"2147483647\" top=\"20\" width=\"30\" height=\"40\" />"
        "<ZColor name=\"o\" red=\"1\" green=\"258\" blue=\"3\" /></message>";
    const ZXMLDocument document(text.data(), static_cast<std::int32_t>(text.size()));
    const ZMessage message(document.GetChild(0), ZClassRegistry(nullptr));
    EXPECT_EQ(message.GetId(), ZFILENEW);
    EXPECT_TRUE(
        field<std::int8_t>(message, "a") == -8 && field<std::uint8_t>(message, "b") == 200 &&
        field<std::int16_t>(message, "c") == -16 && field<std::uint16_t>(message, "d") == 60000 &&
        field<std::int32_t>(message, "e") == -32 && field<std::int64_t>(message, "g") == -64);
    EXPECT_TRUE(field<float>(message, "i") == 0.5f && field<bool>(message, "l"));
    EXPECT_EQ(field<ZString>(message, "filename").ToNarrow(), "Kestrune");
    EXPECT_EQ(field<ZPoint>(message, "m"), (ZPoint{1, -2}));
    EXPECT_EQ(field<ZRect>(message, "n"), (ZRect{2147483647, 20, 2147483647, 60}));
    EXPECT_EQ(field<ZColor>(message, "o"), (ZColor{1, 2, 3, 255}));
}

TEST(ZMessageRegistryTest, FindsTheNumberOfEachKnownName)
{
    ZMessageRegistry registry;
    // One name from each side of the gaps in the numbers.
    for (const auto& [name, number] : {std::pair{"ZERROR", -1},
                                       {"ZLOOPERSTART", 46},
                                       {"ZMETER", 51},
                                       {"ZPRINTLINE", 80},
                                       {"ZPRESETLOADBEGIN", 182},
                                       {"ZUSERMESSAGESTART", 16777216}})
        EXPECT_EQ(registry.Find(name), number);
    expectZException("Message not found", [&] { (void)registry.Find("ZMOUSEWHEEL"); });
    expectZException("Message already defined", [&] { registry.Add("ZOK", 5); });
}
