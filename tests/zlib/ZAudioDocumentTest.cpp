#include "zlib/common/ZAudioDocument.h"

#include "support/ExpectZException.h"
#include "zlib/DocumentFixture.h"
#include "zlib/common/ZAudioFormatElement.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZSignalBay.h"
#include "zlib/common/ZTransaction.h"
#include "zlib/common/ZTransactionManager.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

/// A bay with a float element of its own name, a latency, and an eye on what it is told.
class GainBay : public ZSignalBay
{
public:
    GainBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
        : ZSignalBay(xml, application)
    {
        SetLatency(xml->GetInt32("latency"));
        AddElement(
            boost::make_shared<ZElement>("gain of " + GetName(), ZElement::ZFLOAT, application));
    }
    bool Prepare() override
    {
        prepared = true;
        return ZSignalBay::Prepare();
    }
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        told.push_back(message->GetId());
    }

    bool prepared = false;
    std::vector<std::int32_t> told;
};

class ZAudioDocumentTest : public testing::Test
{
protected:
    ZAudioDocumentTest() { app->GetClassRegistry().AddStandard<GainBay>("GainBayClass"); }

    boost::shared_ptr<ZAudioDocument> Make(const std::string& content)
    {
        return boost::make_shared<ZAudioDocument>(xmlOf("<doctype>" + content + "</doctype>"),
                                                  app.get());
    }

    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
};

const char* const kNetworks =
    "<elements><element name=\"own\" class=\"ZElementClass\" type=\"ZDISCRETE\" /></elements>"
    "<networks>"
    "<network type=\"output\"><bay name=\"old\" class=\"GainBayClass\" latency=\"9\" /></network>"
    "<network type=\"none\"><bay name=\"skipped\" class=\"NobodyClass\" /></network>"
    "<network type=\"output\"><bay name=\"whole\" class=\"ZSignalBayClass\"><bays>"
    "<bay name=\"one\" class=\"GainBayClass\" latency=\"3\" />"
    "<bay name=\"two\" class=\"GainBayClass\" latency=\"4\" /></bays></bay></network>"
    "<network type=\"input\"><bay name=\"in\" class=\"GainBayClass\" latency=\"5\" /></network>"
    "</networks>";

}  // namespace

TEST_F(ZAudioDocumentTest, NetworksAreBuiltPreparedAndHungIntoTheTree)
{
    const auto document = Make(kNetworks);
    const auto output = document->GetOutputNetwork();
    ASSERT_NE(output, nullptr);
    EXPECT_EQ(output->GetName(), "whole");
    EXPECT_EQ(document->GetInputNetwork()->GetName(), "in");
    EXPECT_EQ(document->GetLatency(), 7);
    for (const char* name : {"one", "two"}) {
        const auto bay = boost::dynamic_pointer_cast<GainBay>(output->FindBay(name));
        ASSERT_NE(bay, nullptr);
        EXPECT_TRUE(bay->prepared);
        EXPECT_EQ(bay->GetDocument(), document.get());
    }

    std::vector<std::string> names;
    boost::shared_ptr<ZElement> child;
    for (std::int32_t i = 0; document->GetSubElement(i, child); ++i)
        names.push_back(child->GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"own", "ContainerBay", "ZBay", "audioformat"}));
    EXPECT_NE(document->FindElement("gain of two"), nullptr);
    EXPECT_EQ(document->FindElement("gain of old"), nullptr) << "one that was replaced";
}

TEST_F(ZAudioDocumentTest, WithoutNetworksThereIsNoLatency)
{
    const auto document = Make("");
    EXPECT_EQ(document->GetOutputNetwork(), nullptr);
    EXPECT_EQ(document->GetLatency(), 0);
    document->HandleZMessage(boost::make_shared<ZMessage>(ZRESET));
    EXPECT_FALSE(document->FindElement("audioformat")->IsArchivable());
}

TEST_F(ZAudioDocumentTest, ANetworkThatIsNoneIsRefused)
{
    expectZException(-1, "Unregistered Class NobodyClass found in xml\n", [&] {
        Make(
            "<networks><network type=\"input\"><bay class=\"NobodyClass\" /></network></networks>");
    });
    EXPECT_THROW(Make("<networks><network type=\"input\"><bay class=\"ZElementClass\" /></network>"
                      "</networks>"),
                 ZException);
}

TEST_F(ZAudioDocumentTest, TheTickTellsObserversOfMarkedLeavesAtAnyDepth)
{
    const auto document = Make(kNetworks);
    struct Observer : ZHandler
    {
        using ZHandler::ZHandler;
        void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
        {
            if (message->GetId() == ZELEMENTCHANGED)
                ++changes;
        }
        int changes = 0;
    } observer("observer", app.get());
    const auto deep = document->FindElement("gain of two");
    const auto own = document->FindElement("own");
    for (const auto& element : {deep, own})
        element->AddObserver(&observer);
    deep->SetZFloat(0.5f, false);
    deep->SetZFloat(0.6f, false);
    own->SetDiscrete(1, true);
    document->FlushChanges(*document);
    app->ProcessQueue();
    EXPECT_EQ(observer.changes, 1) << "quiet changes are told by whoever makes them";
    EXPECT_FALSE(deep->IsMarkedChanged());
    document->FlushChanges(*document);
    app->ProcessQueue();
    EXPECT_EQ(observer.changes, 1);
    for (const auto& element : {deep, own})
        element->RemoveObserver(&observer);
}

TEST_F(ZAudioDocumentTest, DefaultsAndResetReachBothNetworks)
{
    const auto document =
        Make("<networks>"
             "<network type=\"input\"><bay name=\"in\" class=\"GainBayClass\" /></network>"
             "<network type=\"output\"><bay name=\"out\" class=\"GainBayClass\" /></network>"
             "</networks>");
    for (const std::int32_t id : {ZSETDEFAULTS, ZRESET, ZPLAY})
        document->HandleZMessage(boost::make_shared<ZMessage>(id));
    for (const auto& network : {document->GetInputNetwork(), document->GetOutputNetwork()})
        EXPECT_EQ(boost::dynamic_pointer_cast<GainBay>(network)->told,
                  (std::vector<std::int32_t>{ZSETDEFAULTS, ZRESET}));
}

TEST_F(ZAudioDocumentTest, KnowsWhenItBecomesTheCurrentOne)
{
    struct Counting : ZAudioDocument
    {
        using ZAudioDocument::ZAudioDocument;
        void BecameCurrent() override { ++turns; }
        int turns = 0;
    };
    const auto document = boost::make_shared<Counting>(xmlOf("<doctype></doctype>"), app.get());
    const auto changedTo = [](const boost::shared_ptr<ZDocument>& to) {
        return messageWith<boost::shared_ptr<ZDocument>>(ZDOCUMENTCHANGED, "NewDocument", to);
    };
    document->HandleZMessage(changedTo(document));
    EXPECT_EQ(document->turns, 1);
    document->HandleZMessage(changedTo(Make("")));
    EXPECT_EQ(document->turns, 1);
    expectZException(-1, "Couldn't find NewDocument in msg", [&] {
        document->HandleZMessage(boost::make_shared<ZMessage>(ZDOCUMENTCHANGED));
    });
    document->HandleZMessage(boost::make_shared<ZMessage>(ZUNDO));
    EXPECT_EQ(document->turns, 2);
}

TEST_F(ZAudioDocumentTest, TheFormatIsReadAndWrittenWholeOrNotAtAll)
{
    const auto format = Make("")->GetAudioFormat();
    ZMessage before(ZOK);
    format->GetFormat(before);
    std::int32_t rate = 0;
    EXPECT_TRUE(before.Find("Framerate", rate));
    EXPECT_EQ(rate, 44100);

    ZMessage changed(ZOK);
    const auto set = [&] { format->SetFormat(changed); };
    expectZException(-1, "Couldn't find frame rate in Message", set);
    changed.Add<std::int32_t>("Framerate", 96000);
    expectZException(-1, "Couldn't find snumber of channels in Message", set);
    changed.Add<std::int32_t>("Numchannels", 1);
    expectZException(-1, "Couldn't find bits per channel in Message", set);
    ZMessage still(ZOK);
    format->GetFormat(still);
    EXPECT_TRUE(still.Find("Framerate", rate));
    EXPECT_EQ(rate, 44100);

    changed.Add<std::int32_t>("Bitspersample", 24);
    changed.Add<std::int64_t>("Framecount", 7);
    set();
    ZMessage after(ZOK);
    format->GetFormat(after);
    EXPECT_TRUE(after.Find("Framerate", rate));
    EXPECT_EQ(rate, 96000);
    EXPECT_TRUE(format->IsMarkedChanged());
}

}  // namespace orvane
