#include "zlib/common/ZMessage.h"

#include "zlib/common/ZException.h"
#include "zlib/common/ZHandler.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZMessageRegistry.h"

#include <gtest/gtest.h>

#include <string>

#include <boost/make_shared.hpp>

namespace orvane
{

namespace
{

const ZMessageRows productRows{{"TESTPRODUCTDONE", ZUSERMESSAGESTART}};

/// The code and text of the exception that the call throws.
template <typename Call>
std::string failureOf(const Call& call)
{
    try {
        call();
    } catch (const ZException& exception) {
        return std::to_string(exception.GetCode()) + " " + exception.GetMessage().ToNarrow();
    }
    return "none";
}

}  // namespace

TEST(ZMessageTest, AFieldIsNeverOverwritten)
{
    ZMessage message(ZFILENEW);
    EXPECT_TRUE(message.Add<ZString>("filename", "first"));
    EXPECT_FALSE(message.Add<ZString>("filename", "second"));
    EXPECT_FALSE(message.Add<float>("filename", 1.0f));
    EXPECT_TRUE(message.Add<ZString>("Filename", "third")) << "names are case-sensitive";
    ZString filename;
    ASSERT_TRUE(message.Find("filename", filename));
    EXPECT_EQ(filename.ToNarrow(), "first");
}

TEST(ZMessageTest, AFieldThatIsAbsentOrOfAnotherTypeLeavesTheReadersValue)
{
    ZMessage message(ZSAMPLERATECHANGED);
    std::int32_t number = 7;
    EXPECT_FALSE(message.Find("rate", number));
    message.Add<float>("rate", 44100.0f);
    EXPECT_FALSE(message.Find("rate", number));
    double wide = 7.0;
    EXPECT_FALSE(message.Find("rate", wide));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(wide, 7.0);
    float rate = 0.0f;
    EXPECT_TRUE(message.Find("rate", rate));
    EXPECT_EQ(rate, 44100.0f);
}

TEST(ZMessageTest, CarriesSharedObjectsAndGeometryWhole)
{
    const auto object = boost::make_shared<ZObject>("node");
    {
        ZMessage message(ZDRAW);
        message.Add<boost::shared_ptr<ZObject>>("object", object);
        message.Add<ZRect>("rect", {1, 2, 30, 40});
        message.Add<ZDocument*>("Document", nullptr);
        boost::shared_ptr<ZObject> found;
        ZRect rect;
        ASSERT_TRUE(message.Find("object", found));
        ASSERT_TRUE(message.Find("rect", rect));
        EXPECT_EQ(found, object);
        EXPECT_EQ(rect, (ZRect{1, 2, 30, 40}));
        EXPECT_EQ(object.use_count(), 3);
    }
    EXPECT_EQ(object.use_count(), 1) << "a message owns its fields";
}

TEST(ZMessageTest, ACopyCanBeAddedToWithoutTheOther)
{
    const auto message = boost::make_shared<ZMessage>(7);
    message->Add<std::int32_t>("kept", 3);
    const auto copy = message->Copy();
    EXPECT_EQ(copy->GetId(), 7);
    EXPECT_TRUE(copy->Add<std::int32_t>("added", 4));
    std::int32_t value = 0;
    EXPECT_FALSE(message->Find("added", value));
    EXPECT_TRUE(copy->Find("kept", value));
    EXPECT_EQ(value, 3);
}

TEST(ZMessageTest, CannotBeArchived)
{
    const ZMessage message(ZOK);
    EXPECT_EQ(failureOf([&] { (void)message.ExtractHeader(); }), "-2 Implement ExtractHeader\n");
    EXPECT_EQ(failureOf([&] { message.ExtractBody(nullptr); }), "-2 Implement ExtractBody\n");
    const ZHandler handler;
    EXPECT_EQ(failureOf([&] { (void)handler.ExtractHeader(); }), "-2 Implement ExtractHeader\n");
    EXPECT_EQ(failureOf([&] { handler.ExtractBody(nullptr); }), "-2 Implement ExtractBody\n");
}

TEST(ZObjectTest, KnowsItsOwnClassAndItsBases)
{
    const ZHandler handler("x");
    EXPECT_TRUE(handler.IsKindOf("ZHandlerClass"));
    EXPECT_TRUE(handler.IsKindOf("ZObject"));
    EXPECT_FALSE(handler.IsKindOf("ZLooperClass"));
    EXPECT_FALSE(ZObject().IsKindOf("ZHandlerClass"));
    EXPECT_EQ(handler.GetName(), "x");
}

TEST(ZMessageRegistryTest, KnowsTheFrozenNumbers)
{
    const ZMessageRegistry framework;
    EXPECT_EQ(framework.GetCount(), 168u);
    // From each end, and around every gap of the numbering.
    EXPECT_EQ(framework.Find("ZERROR"), -1);
    EXPECT_EQ(framework.Find("ZHZOOMOUT"), 44);
    EXPECT_EQ(framework.Find("ZLOOPERSTART"), 46);
    EXPECT_EQ(framework.Find("ZMAXBUFFERCHANGED"), 48);
    EXPECT_EQ(framework.Find("ZMETER"), 51);
    EXPECT_EQ(framework.Find("ZPORTVALUECHANGED"), 76);
    EXPECT_EQ(framework.Find("ZPRINTLINE"), 80);
    EXPECT_EQ(framework.Find("ZSAVEAS"), 91);
    EXPECT_EQ(framework.Find("ZSELECTALL"), 93);
    EXPECT_EQ(framework.Find("PLUGINRECALLPRESETD"), 170);
    EXPECT_EQ(framework.Find("ZPRESETLOADEND"), 183);
    EXPECT_EQ(framework.Find("ZUSERMESSAGESTART"), 16777216);
}

TEST(ZMessageRegistryTest, RefusesUnknownAndRepeatedNames)
{
    ZMessageRegistry registry;
    for (const char* unknown : {"ZMOUSEWHEEL", "ZMENUSELECTION", "zok", ""})
        EXPECT_EQ(failureOf([&] { (void)registry.Find(unknown); }), "-1 Message not found")
            << unknown;
    EXPECT_EQ(failureOf([&] { registry.Add("ZOK", 5); }), "-1 Message already defined");
    EXPECT_EQ(registry.Find("ZOK"), 0);
}

TEST(ZMessageRegistryTest, TakesAProductsRowsAtLoad)
{
    EXPECT_EQ(ZMessageRegistry::Get().Find("TESTPRODUCTDONE"), 0x1000000);
}

}  // namespace orvane
