// SPDX-License-Identifier: GPL-3.0-or-later
// Networks from descriptions, their archives, their clones.

#include "support/BayArchiveCheck.h"
#include "support/ProbeBay.h"
#include "support/Test.h"
#include "support/TextMutation.h"

using namespace orvane;

namespace
{

struct ZBayArchiveTest : testing::Test
{
    ZBayArchiveTest() { registerBays(application.GetClassRegistry()); }

    boost::shared_ptr<ZSignalBay> Build(const std::string& text)
    {
        return boost::make_shared<ZSignalBay>(xmlOf(text), &application);
    }

    static ZElement& GainOf(const ZBay& network)
    {
        boost::shared_ptr<ZElement> gain;
        EXPECT_TRUE(network.GetElement()->FindSubElement("gain", gain));
        return *gain;
    }

    SmallApplication application;
};

std::string route(const char* from, const char* exported, const char* to, const char* import)
{
    return std::string("<route outbay=\"") + from + "\" export=\"" + exported + "\" inbay=\"" + to +
           "\" import=\"" + import + "\" />\n";
}

}  // namespace

TEST_F(ZBayArchiveTest, SkipsImpossibleRoutesAndPublications)
{
    const auto network = Build(
        "<bay name=\"n\"><bays><bay name=\"a\" class=\"ZThruBayClass\" numchannels=\"2\"></bay>"
        "<bay name=\"b\" class=\"ZThruBayClass\" numchannels=\"2\"></bay></bays><routes>" +
        route("a", "0", "b", "0") + route("a", "0", "b", "0") + route("a", "2", "b", "1") +
        route("a", "-1", "b", "1") + route("a", "99999999999", "b", "1") +
        route("b", "1", "a", "1") + route("a", "1", "a", "1") + route("c", "0", "b", "1") +
        "<route outbay=\"a\" inbay=\"b\" /></routes>"
        "<publish bay=\"a\" import=\"1\" export=\"0\" /><publish bay=\"a\" />"
        "<publish bay=\"b\" import=\"2\" /><publish bay=\"b\" export=\"-7\" />"
        "<publish bay=\"c\" import=\"0\" /><publish import=\"0\" /></bay>");
    EXPECT_EQ(network->FindBay("a")->GetRouteCount(), 1);
    EXPECT_EQ(network->FindBay("b")->GetRouteCount(), 0);
    EXPECT_EQ(network->GetImportCount(), 1);
    EXPECT_EQ(network->GetExportCount(), 0);
    EXPECT_EQ(network->GetImport(0), network->FindBay("a")->GetImport(1));
}

TEST_F(ZBayArchiveTest, RefusesDescriptionsThatCannotBeBuilt)
{
    std::string text = "<bay name=\"leaf\" class=\"ZSignalBayClass\"></bay>";
    for (int i = 0; i < ZBay::kMaxNesting; ++i)
        text = "<bay name=\"n\" class=\"ZSignalBayClass\"><bays>" + text + "</bays></bay>";
    EXPECT_EQ(failureOf([&] { Build(text); }), "none");
    text = "<bay name=\"n\" class=\"ZSignalBayClass\"><bays>" + text + "</bays></bay>";
    EXPECT_NE(failureOf([&] { Build(text); }), "none");
    EXPECT_EQ(failureOf([&] {
                  Build("<bay name=\"n\"><bays><bay name=\"x\" class=\"Foo\"></bay></bays></bay>");
              }),
              "ERROR (ZBay::ZBay(xml)) 'Foo' class (name='x') found in XML, "
              "unable to make instance!\n");
    for (const std::string count : {"", " numchannels=\"0\"", " numchannels=\"2000000000\""}) {
        text = "<bay name=\"n\"><bays><bay name=\"x\" class=\"ZThruBayClass\"" + count +
               "></bay></bays></bay>";
        EXPECT_NE(failureOf([&] { Build(text); }).find("numchannels"), std::string::npos) << text;
    }
}

TEST_F(ZBayArchiveTest, ReadsBackItsArchive)
{
    const auto network = Build(networkOfEachClass());
    const auto inner = network->FindBay("inner");
    EXPECT_TRUE(inner->IsRouted(1, *network->FindBay("thru"), 0));
    EXPECT_EQ(network->FindBay("meter")->GetImport(0)->GetRoutes()[0].port,
              inner->GetBay(0)->GetExport(1));
    GainOf(*network).SetZFloat(0.75f, true);
    ZInputBay input("input", 2);
    network->Route(0, input, 1);
    const std::string archive = network->ExtractXML()->Write(0);
    EXPECT_NE(archive.find("<route outbay=\"input\" export=\"1\" inbay=\"thru\" import=\"0\""),
              std::string::npos)
        << "the way in is written, too:\n"
        << archive;
    const auto again = Build(archive);
    network->UnrouteImports();
    EXPECT_EQ(again->ExtractXML()->Write(0), network->ExtractXML()->Write(0));
}

TEST_F(ZBayArchiveTest, RestoringChangesValuesOnly)
{
    const auto network = Build(networkOfEachClass());
    const auto changed = Build(networkOfEachClass());
    GainOf(*changed).SetZFloat(0.25f, true);
    changed->RemoveBay(changed->FindBay("thru"));
    changed->AddBay(boost::make_shared<ZSignalBay>("unknown"));
    network->RestoreBody(changed->ExtractXML());
    network->RestoreBody(nullptr);
    EXPECT_EQ(network->GetBayCount(), 4);
    EXPECT_TRUE(network->FindBay("inner")->IsRouted(0, *network->FindBay("thru"), 0));
    EXPECT_EQ(GainOf(*network).GetZFloat(), 0.25f);
}

TEST_F(ZBayArchiveTest, CloneIsANetworkOfItsOwn)
{
    const auto network = Build(networkOfEachClass());
    network->SetMaxBuffer(64);
    GainOf(*network).SetZFloat(0.125f, true);
    const std::string archive = network->ExtractXML()->Write(0);
    const auto clone = boost::dynamic_pointer_cast<ZSignalBay>(network->Clone());
    ZInputBay input("input", 2);
    network->Route(0, input, 0);
    EXPECT_TRUE(clone->GetImport(0)->GetRoutes().empty());
    EXPECT_EQ(clone->ExtractXML()->Write(0), archive);
    EXPECT_EQ(clone->GetMaxBuffer(), 64);
    EXPECT_NE(clone->GetImport(0), network->GetImport(0));
    EXPECT_EQ(clone->GetImport(0)->GetOwner(), clone->FindBay("thru").get());
}

TEST_F(ZBayArchiveTest, SurvivesSpoiltDescriptions)
{
    std::mt19937 random(11);
    BayArchiveCheck check;
    for (int i = 0; i < 10000; ++i) {
        std::string text = networkOfEachClass();
        for (std::size_t n = 1 + pick(random, 4); n > 0; --n)
            mutate(text, random);
        const std::string fault = check.FaultAfter(text);
        ASSERT_EQ(fault, "") << text;
    }
}
