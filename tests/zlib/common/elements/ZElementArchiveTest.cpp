// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ElementArchiveCheck.h"
#include "support/ExpectZException.h"
#include "support/MessageRecorder.h"
#include "support/TextMutation.h"
#include "zlib/common/elements/ZAudioFormatElement.h"
#include "zlib/common/objects/ZMessageIds.h"

#include <bit>

using namespace orvane;

namespace
{

struct ZElementArchiveTest : testing::Test
{
    ZElementArchiveTest() { application.GetClassRegistry().AddStandard<ZElement>("ZElementClass"); }

    auto Make(const std::string& text) { return makeElement(text, application); }

    SmallApplication application;
};

/// The archive on one line.
std::string archiveOf(const ZElement& element)
{
    std::string text = element.ExtractXML()->Write(0);
    std::erase(text, '\n');
    return text;
}

}  // namespace

TEST_F(ZElementArchiveTest, GroupWritesItsArchivableChildrenAndADerivedClassAPlainElement)
{
    ZElement group("x", ZElement::ZGROUP, &application);
    const auto add = [&](ZElement::Type type) {
        const auto child = boost::make_shared<ZElement>("x", type, &application, 2u);
        group.AddSubElement(child);
        return child;
    };
    add(ZElement::ZMESSAGE);
    add(ZElement::ZMESSAGE)->SetArchivable(false);
    const auto number = add(ZElement::ZFLOAT);
    number->SetRange(-1200.0f, 1200.0f, true);
    number->SetZFloat(2.793968e-7f, true);
    add(ZElement::ZDISCRETE)->SetDiscrete(9, true);
    add(ZElement::ZRANGE)->SetZRange({10, 10});
    const auto flags = add(ZElement::ZBUFFER);
    flags->SetZBufferRange(0.0f, 1.0f);
    flags->GetZBuffer()->Data()[0] = 1.0f;
    const std::string head = "<element name=\"x\" class=\"ZElementClass\" type=\"Z";
    EXPECT_EQ(
        archiveOf(group),
        head + "GROUP\"><subelements>" +  //
            head + "MESSAGE\"></element>" + head +
            "FLOAT\" floatvalue=\"2.79397e-07\" min=\"-1200\" max=\"1200\"></element>" + head +
            "DISCRETE\" int32value=\"9\"></element>" + head +
            "RANGE\" rangeStart=\"10\" rangeEnd=\"19\" rangeMin=\"0\" rangeMax=\"-1\"></element>" +
            head +
            "BUFFER\" buffermin=\"0\" buffermax=\"1\"><buffer name=\"ElementBuffer\" length=\"2\" "
            "samplerate=\"0\"><data values=\"3f80000000000000\"></data></buffer></element>"
            "</subelements></element>");
    EXPECT_EQ(archiveOf(ZAudioFormatElement("format", &application)),
              "<element name=\"format\" class=\"ZElementClass\" type=\"ZGROUP\"><subelements>"
              "</subelements></element>");
}

TEST_F(ZElementArchiveTest, DefinitionSetsItsElement)
{
    application.strings[7] = "Translated";
    const auto element =
        Make("<element name=\"time\" type=\"ZFLOAT\" units=\"Milliseconds\" archivable=\"true\" "
             "exposed=\"true\" floatvalue=\"50\" floatdefault=\"40\" min=\"0\" max=\"500\">"
             "<label text=\"Time\" key=\"7\" type=\"full\"></label>"
             "<label text=\"Tm\" key=\"8\" type=\"short\"></label></element>");
    EXPECT_EQ(element->GetUnits(), ZElement::kMilliseconds);
    EXPECT_TRUE(element->IsExposed());
    EXPECT_EQ(element->GetZFloat(), 50.0f);
    EXPECT_EQ(element->Max(), 500.0f);
    EXPECT_EQ(element->GetLabel(ZElement::kFullLabel), ZString("Translated"));
    EXPECT_EQ(element->GetLabel(ZElement::kShortLabel), ZString("Tm")) << "no text of that id";

    const auto key = Make("<element name=\"key\" type=\"ZDISCRETE\" int32default=\"1\" "
                          "int32value=\"2\"><discrete name=\"A\"><element name=\"gain\" "
                          "floatvalue=\"1\" /></discrete><discrete name=\"B\" /></element>");
    EXPECT_EQ(key->CountDiscreteValues(), 2);
    EXPECT_EQ(key->GetDiscrete(), 2);
    EXPECT_EQ(*key->GetDiscreteString(1), ZString("B"));
}

TEST_F(ZElementArchiveTest, RefusesImpossibleDefinitions)
{
    const char* const improper = "Error Trying to create a buffer of improper size.";
    const std::pair<const char*, const char*> cases[] = {
        {"type=\"ZDOUBLE\">", "Unrecognized Element Type."},
        {"units=\"Furlongs\">", "Unrecognized Units Type."},
        {"><subelements><element class=\"Foo\" /></subelements>",
         "Unregistered Class Foo found in xml\n"},
        {"type=\"ZBUFFER\">", improper},
        {"type=\"ZBUFFER\"><buffer length=\"-4\"><data /></buffer>", improper},
        {"type=\"ZBUFFER\"><buffer length=\"2147483647\"><data values=\"3f800000\" /></buffer>",
         "Buffer archive does not hold all samples of the buffer."},
    };
    for (const auto& [text, failure] : cases) {
        expectZException(failure,
                         [&] { return Make(std::string("<element ") + text + "</element>"); });
    }
}

TEST_F(ZElementArchiveTest, RestoresValuesByName)
{
    const auto tree = Make(elementsOfEachType());
    const auto find = [&](const char* name) { return findBelow(*tree, name); };
    MessageRecorder observer(&application);
    find("gain")->AddObserver(&observer);
    const std::string values =
        "<subelements><element name=\"unknown\" floatvalue=\"3\" />"
        "<element name=\"gain\" type=\"ZFLOAT\" floatvalue=\"1.5\" min=\"5\" max=\"6\" />"
        "<element name=\"key\" int32value=\"17\" /></subelements></element>";

    tree->RestoreBody(xmlOf("<element name=\"other\">" + values));
    tree->RestoreBody({});

    tree->RestoreBody(xmlOf("<element name=\"all\">" + values));
    EXPECT_EQ(find("gain")->GetZFloat(), 1.5f) << "not clamped";
    EXPECT_EQ(find("gain")->Max(), 1.0f) << "bounds are the definition's";
    EXPECT_EQ(find("key")->GetDiscrete(), 1) << "clamped to the list";
    EXPECT_EQ(find("place")->GetZPos(), 7) << "not mentioned";
    application.ProcessQueue();
    EXPECT_EQ(observer.ids, (MessageIds{ZATTACHEDTOELEMENT, ZELEMENTCHANGED})) << "without a flush";
    EXPECT_FALSE(find("gain")->IsMarkedChanged());

    find("key")->RestoreBody(xmlOf("<element name=\"key\" int32value=\"-3\" />"));
    EXPECT_EQ(find("key")->GetDiscrete(), 0);
    find("gain")->RestoreBody(xmlOf("<element name=\"gain\" floatvalue=\"nan\" />"));
    EXPECT_EQ(find("gain")->GetZFloat(), 0.0f);
}

TEST_F(ZElementArchiveTest, ArchivesAListOnRequest)
{
    ZElement names("names", ZElement::ZDISCRETE, &application);
    names.AddDiscreteValue("Caf\xC3\xA9");
    names.AddDiscreteValue("a \"quoted\" <b>");
    names.SetDiscrete(1, true);
    names.SetArchiveDiscreteList(true);
    const auto archive = xmlOf(names.ExtractXML()->Write(0));

    ZElement restored("names", ZElement::ZDISCRETE, &application);
    restored.SetArchiveDiscreteList(true);
    restored.AddDiscreteValue("old");
    restored.RestoreBody(archive);
    EXPECT_EQ(restored.CountDiscreteValues(), 2);
    EXPECT_EQ(*restored.GetDiscreteString(0), ZString("Caf\xC3\xA9"));
    EXPECT_EQ(*restored.GetDiscreteString(1), ZString("a 'quoted' \xE2\x80\xB9"
                                                      "b\xE2\x80\xBA"))
        << "what an attribute cannot hold is written as signs that look like it";
}

TEST_F(ZElementArchiveTest, BufferComesBackBitByBit)
{
    ZElement flags("x", ZElement::ZBUFFER, &application, 3);
    float* const samples = flags.GetZBuffer()->Data();
    samples[0] = std::bit_cast<float>(0xffc12345u);  // not a number, with a load
    samples[1] = -0.0f;
    samples[2] = 1e-45f;
    flags.GetZBuffer()->SetSampleRate(48000.0f);
    const auto archive = xmlOf(flags.ExtractXML()->Write(0));

    ZElement restored("x", ZElement::ZBUFFER, &application, 3);
    restored.RestoreBody(archive);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(std::bit_cast<std::uint32_t>(restored.GetZBuffer()->Data()[i]),
                  std::bit_cast<std::uint32_t>(samples[i]));
    EXPECT_EQ(restored.GetZBuffer()->SampleRate(), 48000.0f);
    const ZElement longer("x", ZElement::ZBUFFER, &application, 5000);
    expectZException("Buffer is too long for an archive.", [&] { return longer.ExtractXML(); });
}

TEST_F(ZElementArchiveTest, FailedRestoreLeavesTheBufferAlone)
{
    ZElement flags("x", ZElement::ZBUFFER, &application, 2);
    flags.GetZBuffer()->Data()[0] = 0.25f;
    const auto restore = [&](const std::string& length, const std::string& attributes) {
        flags.RestoreBody(xmlOf("<element name=\"x\"><buffer length=\"" + length + "\"><data " +
                                attributes + " /></buffer></element>"));
    };
    expectZException("Incompatible buffer restore. Buffers are of different size.",
                     [&] { restore("3", "values=\"3f8000003f8000003f800000\""); });
    for (const char* attributes : {"values=\"3f8000003f80000\"", "i0=\"1\"", "i0=\"1\" i2=\"1\""})
        expectZException("Buffer archive does not hold all samples of the buffer.",
                         [&] { restore("2", attributes); });
    expectZException("Buffer values hold something else than hex digits.",
                     [&] { restore("2", "values=\"3f8000003f80000g\""); });
    EXPECT_EQ(flags.GetZBuffer()->Data()[0], 0.25f);

    restore("2", "i0=\"1\" i1=\"-0.5\"");
    EXPECT_EQ(flags.GetZBuffer()->Data()[0], 1.0f);
    EXPECT_EQ(flags.GetZBuffer()->Data()[1], -0.5f);
}

TEST_F(ZElementArchiveTest, SurvivesSpoiltArchives)
{
    const auto tree = Make(elementsOfEachType());
    const std::vector<std::string> seeds{elementsOfEachType(), tree->ExtractXML()->Write(0)};
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        std::string text = seeds[pick(random, seeds.size())];
        for (std::size_t i = 1 + pick(random, 8); i > 0; --i)
            mutate(text, random);
        ASSERT_EQ(elementArchiveFault(text), "") << text;
    }
}
