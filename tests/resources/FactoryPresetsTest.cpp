#include <gtest/gtest.h>

#include "resources/Description.h"

#include <array>
#include <map>

namespace orvane
{

namespace
{

struct Column
{
    const char* name;
    const char* min;  // null for a choice out of a list
    const char* max = nullptr;
};

constexpr std::array<Column, 11> kColumns{{{"PitchShift", "-1200", "1200"},
                                           {"FormantShift", "-1200", "1200"},
                                           {"pitchCorrectionOnOff", nullptr},
                                           {"transposeOnOff", nullptr},
                                           {"key", nullptr},
                                           {"intonation", nullptr},
                                           {"sourceType", nullptr},
                                           {"detune", "-50", "50"},
                                           {"pitchCorrectionTime", "0", "400"},
                                           {"pitchReference", nullptr},
                                           {"currentScaleIndex", "-1", "1"}}};

struct Preset
{
    const char* name;
    std::array<const char*, kColumns.size()> values;
};

// Projects name a preset by its number and expect the sound it always had: rows are never changed.
const std::array<Preset, 7> kPresets{{
    {"Default",
     {"2.79397e-07", "2.79397e-07", "0", "0", "3", "0", "0", "1.16415e-08", "50", "2", "1"}},
    {"Adult to Child", {"1200", "800", "0", "1", "9", "6", "3", "-50", "215", "2", "0"}},
    {"Bassline", {"-1200", "-700", "0", "1", "3", "0", "1", "0", "50", "2", "1"}},
    {"Electric Alien", {"-1200", "1200", "1", "1", "3", "8", "0", "-1.68539", "0", "2", "0"}},
    {"It Came From Below", {"-200", "-1200", "1", "1", "9", "6", "0", "-50", "215", "2", "0"}},
    {"RnB Processed Vox", {"50", "0", "1", "1", "3", "0", "0", "-50", "0", "2", "0"}},
    {"Woman to Man", {"-500", "-500", "0", "1", "3", "0", "2", "0", "125", "2", "0"}},
}};

std::string elementTag(const Column& column, const std::string& value)
{
    const std::string start = std::string("element name=") + column.name + " class=ZElementClass";
    if (!column.min)
        return start + " type=ZDISCRETE int32value=" + value + "\n";
    return start + " type=ZFLOAT floatvalue=" + value + " min=" + column.min +
           " max=" + column.max + "\n";
}

std::string clearBuffer(const char* name, std::size_t samples)
{
    return std::string("element name=") + name +
           " class=ZElementClass type=ZBUFFER buffermin=0 buffermax=1\n"
           " buffer name=buffer length=" +
           std::to_string(samples) +
           " samplerate=0\n  data values=" + std::string(8 * samples, '0') + "\n";
}

/// The saved elements in the order of the bay's list: those of the table and those that all
/// presets have alike.
std::string expectedElements(const Preset& preset)
{
    std::string outline;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const std::string name = kColumns[i].name;
        if (name == "intonation")
            outline += elementTag({"CustomScaleNames", nullptr}, "0");
        if (name == "currentScaleIndex")
            outline += clearBuffer("ignoredNotes", 12) + clearBuffer("customScaleTones", 192);
        outline += elementTag(kColumns[i], preset.values[i]);
    }
    return outline;
}

std::string elementsBelow(const ZXMLElement& subelements)
{
    std::string outline;
    for (const auto& element : childrenOf(subelements))
        outline += outlineOf(*element);
    return outline;
}

ZXMLElement factoryPresets()
{
    return at(description(), {"app", "documentmanager", "documenttypes", "doctype", "presets"});
}

}  // namespace

TEST(FactoryPresetsTest, HoldEachElementTwiceWithTheValuesOfTheirSound)
{
    const auto presets = childrenOf(factoryPresets());
    ASSERT_EQ(presets.size(), kPresets.size());
    for (std::size_t i = 0; i < presets.size(); ++i) {
        EXPECT_EQ(tagOf(*presets[i]), std::string("preset name=") + kPresets[i].name +
                                          " class=ZAudioDocumentClass version=1.0");
        const ZXMLElement document = at(*presets[i], {"document"});
        const std::string expected = expectedElements(kPresets[i]);
        EXPECT_EQ(elementsBelow(at(document, {"networks", "network", "bay", "bays", "bay",
                                              "element", "subelements"})),
                  expected);
        EXPECT_EQ(elementsBelow(at(
                      document, {"elements", "element", "subelements", "element", "subelements"})),
                  expected);
    }
}

TEST(FactoryPresetsTest, HoldTheNetworkAsAnArchiveDoes)
{
    for (const auto& preset : childrenOf(factoryPresets())) {
        const ZXMLElement document = at(*preset, {"document"});
        EXPECT_EQ(tagOf(document), "document name=Untitled Media File 1 class=ZAudioDocumentClass");
        EXPECT_STREQ(at(document, {"networks", "network"}).GetAttribute("type"), "output");
        const ZXMLElement network = at(document, {"networks", "network", "bay"});
        EXPECT_EQ(tagOf(network), "bay name=KestruneNetwork class=ZSignalBayClass");
        EXPECT_EQ(tagOf(at(network, {"bays", "bay"})),
                  "bay name=PsolaBay class=ZPsolaBayClass numchannels=2");
        EXPECT_EQ(outlineOf(at(network, {"routes"})),
                  "routes\n"
                  " route outbay=input export=0 inbay=PsolaBay import=0\n"
                  " route outbay=input export=1 inbay=PsolaBay import=1\n");
        EXPECT_EQ(network.GetChildCount("publish"), 4);
        EXPECT_STREQ(at(document, {"elements", "element"}).GetAttribute("name"), "ContainerBay");
    }
}

}  // namespace orvane
