#include "zlib/common/ZClassRegistry.h"

#include "zlib/common/ZHandler.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

namespace
{

// Stands for an application: the registry only hands the pointer on.
char applicationStandIn = 0;
ZApplication* const kApp = reinterpret_cast<ZApplication*>(&applicationStandIn);

struct Listener
{
    virtual ~Listener() = default;
    int heard = 7;
};

class Plain : public ZObject
{
public:
    Plain(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* app)
        : ZObject(xml)
        , givenApp(app)
    {
    }
    ZApplication* givenApp;
};

/// Has its object part behind another base, and takes an argument of its own.
class Mixed : public Listener, public ZHandler
{
public:
    Mixed(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* /*app*/, int kind)
        : ZHandler(xml, nullptr)
        , givenKind(kind)
    {
    }
    int givenKind;
};

boost::shared_ptr<ZXMLElement> elementNamed(const char* name)
{
    auto xml = boost::make_shared<ZXMLElement>("anything");
    xml->AddAttribute("name", name);
    return xml;
}

}  // namespace

TEST(ZClassRegistryTest, MakesTheClassOfTheNameFromElementAndApplication)
{
    ZClassRegistry registry(kApp);
    registry.AddStandard<Plain>("PlainClass");
    registry.AddStandard<Mixed, 3>("MixedClass");
    const auto plain =
        boost::dynamic_pointer_cast<Plain>(registry.Create("PlainClass", elementNamed("one")));
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->GetName(), "one");
    EXPECT_EQ(plain->givenApp, kApp);

    const auto object = registry.Create("MixedClass", elementNamed("two"));
    EXPECT_EQ(object->GetName(), "two");
    const auto mixed = boost::dynamic_pointer_cast<Mixed>(object);
    ASSERT_NE(mixed, nullptr);
    EXPECT_EQ(mixed->givenKind, 3);
    EXPECT_EQ(mixed->heard, 7);
    EXPECT_EQ(object.use_count(), 2);
}

}  // namespace orvane
