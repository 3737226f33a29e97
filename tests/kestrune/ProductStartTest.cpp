// The shipped description, started as the host shell starts it.

#include "kestrune/ProductApplication.h"
#include "kestrune/common/KestruneDocument.h"
#include "kestrune/common/ZPsolaBay.h"
#include "zlib/common/ZAudioManager.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZCommand.h"
#include "zlib/common/ZCommandList.h"
#include "zlib/common/ZOutputBay.h"
#include "zlib/common/ZPlugin.h"
#include "zlib/common/ZSignalLooper.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orvane
{

TEST(ProductStartTest, BuildsTheDocumentWithThePitchBayBehindTheOutput)
{
    const auto plugin = startProduct();
    EXPECT_EQ(plugin->GetTitle().ToNarrow(), "Cantorel Mini");
    const auto document =
        boost::dynamic_pointer_cast<KestruneDocument>(plugin->GetCurrentDocument());
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->GetName(), "Untitled Media File 1");
    const auto network = document->GetOutputNetwork();
    ASSERT_NE(network, nullptr);
    EXPECT_NE(boost::dynamic_pointer_cast<ZPsolaBay>(network->FindBay("PsolaBay")), nullptr);
    // About 428 ms at the rate that a document has before a host names another.
    EXPECT_NEAR(document->GetLatency(), 0.428 * 44100, 0.012 * 44100);

    const auto looper = plugin->GetAudioManager()->GetSignalLooper();
    for (std::int32_t channel = 0; channel < 2; ++channel)
        EXPECT_TRUE(looper->GetOutputBay()->IsRouted(channel, *network, channel)) << channel;
}

TEST(ProductStartTest, TheExposedElementsAreParametersInTreeOrder)
{
    const auto plugin = startProduct();
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < plugin->GetExposedCount(); ++i)
        names.push_back(plugin->GetExposedElement(i)->GetName());
    const std::vector<std::string> expected = {
        "pitchCorrectionOnOff", "transposeOnOff",  "key", "sourceType", "pitchCorrectionTime",
        "pitchTranspose",       "formantTranspose"};
    EXPECT_EQ(names, expected);
}

TEST(ProductStartTest, EveryCommandHasALabelAndAMenuIdInOrder)
{
    const auto plugin = startProduct();
    const auto& commands = plugin->GetCommandList()->GetCommands();
    ASSERT_EQ(commands.size(), 15u);
    for (std::size_t i = 0; i < commands.size(); ++i) {
        EXPECT_STRNE(commands[i]->GetMenuName(), "") << i;
        EXPECT_EQ(commands[i]->GetMenuId(), 50000 + static_cast<std::int32_t>(i));
        EXPECT_NE(commands[i]->GetMessage(), nullptr) << i;
    }
}

TEST(ProductStartTest, ResetSettingsPutsTheDefaultsBack)
{
    const auto plugin = startProduct();
    const auto time = plugin->GetCurrentDocument()->FindElement("pitchCorrectionTime");
    ASSERT_NE(time, nullptr);
    time->SetZFloat(time->GetZFloatDefault() + 10.0f, false);
    boost::shared_ptr<ZCommand> reset;
    ASSERT_TRUE(plugin->GetCommandList()->GetCommand("cmdSetDefaults", reset));
    reset->Dispatch();
    EXPECT_EQ(time->GetZFloat(), time->GetZFloatDefault());
}

TEST(ProductStartTest, ADescriptionCanNameEveryViewOfTheProduct)
{
    const auto plugin = startProduct();
    for (const std::string name :
         {"KestruneCentsSlider", "KestruneCorrectionMeter", "KestruneIgnoreKeysView",
          "KestruneKeyboardLabel", "KestruneKeyboardView", "KestrunePitchGraph", "ZBWKeys",
          "ZGraphAxisView"})
    {
        const std::string className = name + "Class";
        const auto view =
            plugin->GetClassRegistry().Create(className, boost::make_shared<ZXMLElement>("view"));
        EXPECT_EQ(view->GetClassName(), className);
        EXPECT_TRUE(view->IsKindOf("ZViewClass")) << name;
    }
}

}  // namespace orvane
