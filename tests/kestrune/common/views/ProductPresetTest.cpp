// SPDX-License-Identifier: GPL-3.0-or-later
// Presets of the shipped document: the factory presets and the user's four memories.

#include "kestrune/common/views/ProductApplication.h"
#include "zlib/common/documents/ZCommand.h"
#include "zlib/common/documents/ZCommandList.h"
#include "zlib/common/documents/ZPluginPresetsAudioDocument.h"
#include "zlib/common/objects/ZXMLElement.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>

namespace orvane
{

namespace
{

class ProductPresetTest : public testing::Test
{
protected:
    [[nodiscard]] ZElement& operator[](const std::string& name) const
    {
        return *document->FindElement(name);
    }
    /// The value as text.
    [[nodiscard]] std::string ValueOf(const std::string& name) const
    {
        const ZElement& element = (*this)[name];
        std::ostringstream text;
        if (element.GetType() == ZElement::ZFLOAT)
            text << element.GetZFloat();
        else
            text << element.GetDiscrete();
        return text.str();
    }
    void Dispatch(const std::string& name) const
    {
        boost::shared_ptr<ZCommand> command;
        ASSERT_TRUE(app->GetCommandList()->GetCommand(name, command)) << name;
        command->Dispatch();
    }
    /// The flags of the memories, A first.
    [[nodiscard]] std::string Flags() const
    {
        std::string flags;
        for (const char letter : {'A', 'B', 'C', 'D'})
            flags += ValueOf(std::string("Preset") + letter + "Active");
        return flags;
    }

    const std::unique_ptr<ZPlugin> app = startProduct();
    const boost::shared_ptr<ZPluginPresetsAudioDocument> document =
        boost::dynamic_pointer_cast<ZPluginPresetsAudioDocument>(app->GetCurrentDocument());
};

}  // namespace

// Saved projects refer to a factory preset by its number and rely on its sound, so these values
// must not change.
TEST_F(ProductPresetTest, FactoryPresetsKeepTheirOrderAndValues)
{
    constexpr std::array kNames{"PitchShift",
                                "FormantShift",
                                "pitchCorrectionOnOff",
                                "transposeOnOff",
                                "key",
                                "intonation",
                                "sourceType",
                                "detune",
                                "pitchCorrectionTime",
                                "pitchReference",
                                "currentScaleIndex"};
    struct Preset
    {
        const char* name;
        const char* values;
    };
    constexpr Preset kPresets[] = {
        {"Default", "2.79397e-07 2.79397e-07 0 0 3 0 0 1.16415e-08 50 2 1 "},
        {"Adult to Child", "1200 800 0 1 9 6 3 -50 215 2 0 "},
        {"Bassline", "-1200 -700 0 1 3 0 1 0 50 2 1 "},
        {"Electric Alien", "-1200 1200 1 1 3 8 0 -1.68539 0 2 0 "},
        {"It Came From Below", "-200 -1200 1 1 9 6 0 -50 215 2 0 "},
        {"RnB Processed Vox", "50 0 1 1 3 0 0 -50 0 2 0 "},
        {"Woman to Man", "-500 -500 0 1 3 0 2 0 125 2 0 "},
    };
    ASSERT_EQ(document->GetPresetCount(), static_cast<std::int32_t>(std::size(kPresets)));
    for (std::int32_t i = 0; i < document->GetPresetCount(); ++i) {
        document->LoadFactoryPreset(i);
        std::string values;
        for (const char* name : kNames)
            values += ValueOf(name) + " ";
        EXPECT_STREQ(document->GetPresetName(i), kPresets[i].name);
        EXPECT_EQ(values, kPresets[i].values) << kPresets[i].name;
    }
    for (const std::int32_t none : {-1, 7}) {
        EXPECT_STREQ(document->GetPresetName(none), "Init");
        EXPECT_EQ(document->GetPresetCopy(none), nullptr);
        document->LoadFactoryPreset(none);
    }
    EXPECT_EQ(ValueOf("detune"), "0") << "a preset that does not exist changes nothing";
}

TEST_F(ProductPresetTest, RecallingAMemoryRestoresItsStateAndSetsItsFlag)
{
    const std::string letters = "ABCD";
    const std::array<std::string, 4> raised{"1000", "0100", "0010", "0001"};
    Dispatch("cmdRecallPresetB");
    EXPECT_EQ(Flags(), "0000") << "an empty memory";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        (*this)["key"].SetDiscrete(static_cast<std::int32_t>(i), false);
        Dispatch(std::string("cmdSaveToPreset") + letters[i]);
    }
    EXPECT_EQ(Flags(), "0000") << "saving sets no flag";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        Dispatch(std::string("cmdRecallPreset") + letters[i]);
        EXPECT_EQ(ValueOf("key"), std::to_string(i));
        EXPECT_EQ(Flags(), raised[i]);
    }
}

TEST_F(ProductPresetTest, SavingAppliesPendingChangesFirst)
{
    (*this)["pitchTranspose"].SetDiscrete(0, false);
    ZXMLElement saved;
    document->SavePreset(saved);
    const std::string text(saved.GetText());
    EXPECT_EQ(text.find("AcceptMIDI"), std::string::npos);
    EXPECT_NE(text.find("name=\"FormantShift\" class=\"ZElementClass\" type=\"ZFLOAT\" "
                        "floatvalue=\"600\""),
              std::string::npos);
}

}  // namespace orvane
