#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZException.h"
#include "zlib/common/ZHandler.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>

namespace orvane
{

namespace
{

class Counter : public ZObject
{
public:
    explicit Counter(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* /*app*/ = nullptr)
        : ZObject(xml)
    {
    }
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override
    {
        xml->AddAttribute("count", count);
    }
    std::int32_t count = 5;
};

boost::shared_ptr<ZXMLElement> parse(const std::string& text)
{
    return ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0);
}

/// Code and text of what is thrown.
std::string failure(const std::function<void()>& action)
{
    try {
        action();
    } catch (const ZException& exception) {
        return std::to_string(exception.GetCode()) + " " + exception.GetMessage().ToNarrow();
    }
    return {};
}

template <class T>
T field(const ZMessage& message, const char* name)
{
    T value{};
    EXPECT_TRUE(message.Find(name, value)) << name;
    return value;
}

}  // namespace

TEST(ZObjectArchiveTest, AnArchiveIsTheHeaderWithTheBodyInIt)
{
    const Counter counter(parse("<any name=\"tally\" />"));
    EXPECT_EQ(counter.GetName(), "tally");
    EXPECT_EQ(counter.ExtractXML()->Write(0),
              "<ZObject name=\"tally\" class=\"ZObject\" count=\"5\">\n</ZObject>\n");
    EXPECT_EQ(Counter(parse("<any />")).GetName(), "");
}

TEST(ZObjectArchiveTest, HandlersAndMessagesAreNotArchivedUnlessTheySayHow)
{
    const ZHandler handler(parse("<any name=\"hands\" />"), nullptr);
    EXPECT_EQ(handler.GetName(), "hands");
    const ZMessage message(ZOK);
    for (const ZObject* object :
         {static_cast<const ZObject*>(&handler), static_cast<const ZObject*>(&message)})
    {
        EXPECT_EQ(failure([&] { static_cast<void>(object->ExtractXML()); }),
                  "-2 Implement ExtractHeader\n");
        EXPECT_EQ(failure([&] { object->ExtractBody(nullptr); }), "-2 Implement ExtractBody\n");
    }
}

TEST(ZMessageReadingTest, EveryTypeOfFieldIsRead)
{
    ZClassRegistry classes(nullptr);
    classes.AddStandard<Counter>("CounterClass");
    const ZMessage message(
        parse("<message id=\"ZFILENEW\" name=\"new\">"
              "<int8 name=\"a\" value=\"-8\" /><uint8 name=\"b\" value=\"200\" />"
              "<int16 name=\"c\" value=\"-16\" /><uint16 name=\"d\" value=\"60000\" />"
              "<int32 name=\"e\" value=\"-32\" /><uint32 name=\"f\" value=\"32\" />"
              "<int64 name=\"g\" value=\"-64\" /><uint64 name=\"h\" value=\"64\" />"
              "<float name=\"i\" value=\"0.5\" /><zfloat name=\"j\" value=\"0.25\" />"
              "<double name=\"k\" value=\"0.1\" /><bool name=\"l\" value=\"true\" />"
              "<ZString name=\"filename\" value=\"Kestrune\" />"
              "<ZPoint name=\"m\" x=\"1\" y=\"-2\" />"
              "<ZRect name=\"n\" left=\"10\" top=\"20\" width=\"30\" height=\"40\" />"
              "<ZColor name=\"o\" red=\"1\" green=\"258\" blue=\"3\" />"
              "<ZObject name=\"p\" class=\"CounterClass\" />"
              "<unheard name=\"q\" value=\"1\" />"
              "</message>"),
        classes);
    EXPECT_EQ(message.GetId(), ZFILENEW);
    EXPECT_EQ(message.GetName(), "new");
    EXPECT_EQ(field<std::int8_t>(message, "a"), -8);
    EXPECT_EQ(field<std::uint8_t>(message, "b"), 200);
    EXPECT_EQ(field<std::int16_t>(message, "c"), -16);
    EXPECT_EQ(field<std::uint16_t>(message, "d"), 60000);
    EXPECT_EQ(field<std::int32_t>(message, "e"), -32);
    EXPECT_EQ(field<std::uint32_t>(message, "f"), 32u);
    EXPECT_EQ(field<std::int64_t>(message, "g"), -64);
    EXPECT_EQ(field<std::uint64_t>(message, "h"), 64u);
    EXPECT_EQ(field<float>(message, "i"), 0.5f);
    EXPECT_EQ(field<float>(message, "j"), 0.25f);
    EXPECT_EQ(field<double>(message, "k"), 0.1);
    EXPECT_TRUE(field<bool>(message, "l"));
    EXPECT_EQ(field<ZString>(message, "filename").ToNarrow(), "Kestrune");
    EXPECT_EQ(field<ZPoint>(message, "m"), (ZPoint{1, -2}));
    EXPECT_EQ(field<ZRect>(message, "n"), (ZRect{10, 20, 40, 60}));
    EXPECT_EQ(field<ZColor>(message, "o"), (ZColor{1, 2, 3, 255}));
    EXPECT_EQ(field<boost::shared_ptr<ZObject>>(message, "p")->GetName(), "p");
    std::int32_t unheard = 9;
    EXPECT_FALSE(message.Find("q", unheard));
}

TEST(ZMessageReadingTest, AnAbsentValueIsTheDefaultAndTheFirstFieldOfANameStays)
{
    const ZClassRegistry classes(nullptr);
    const ZMessage message(parse("<message id=\"ZOK\"><uint16 name=\"a\" /><ZString name=\"b\" />"
                                 "<uint16 name=\"a\" value=\"1\" /><bool /></message>"),
                           classes);
    EXPECT_EQ(field<std::uint16_t>(message, "a"), 65535);
    EXPECT_TRUE(field<ZString>(message, "b").IsEmpty());
    EXPECT_FALSE(field<bool>(message, ""));
}

TEST(ZMessageReadingTest, UnknownNamesAreRefused)
{
    const ZClassRegistry classes(nullptr);
    const auto readFailure = [&](const char* text) {
        return failure([&] { const ZMessage message(parse(text), classes); });
    };
    EXPECT_EQ(readFailure("<message id=\"ZNEVER\" />"), "-1 Message not found");
    EXPECT_EQ(readFailure("<message />"), "-1 Message not found");
    EXPECT_EQ(readFailure("<message id=\"ZOK\"><ZObject class=\"Foo\" /></message>"),
              "-1 Unregistered Class Foo found in xml\n");
}

TEST(ZMessageReadingTest, AnEdgeBeyondTheRangeStaysAtItsEnd)
{
    const ZClassRegistry classes(nullptr);
    const ZMessage message(
        parse("<message id=\"ZOK\"><ZRect name=\"r\" left=\"2147483647\" top=\"-2147483648\" "
              "width=\"10\" height=\"-10\" /></message>"),
        classes);
    const auto rect = field<ZRect>(message, "r");
    EXPECT_EQ(rect.right, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(rect.bottom, std::numeric_limits<std::int32_t>::min());
}

}  // namespace orvane
