// The shipped description, started as the host shell starts it.

#include "kestrune/ProductApplication.h"
#include "kestrune/common/ZPsolaBay.h"
#include "zlib/common/ZAudioDocument.h"
#include "zlib/common/ZAudioManager.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZOutputBay.h"
#include "zlib/common/ZSignalLooper.h"
#include "zlib/common/ZXMLElement.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane
{

TEST(ProductStartTest, BuildsTheDocumentWithThePitchBayBehindTheOutput)
{
    const auto plugin = startProduct();
    EXPECT_EQ(plugin->GetTitle().ToNarrow(), "Cantorel Mini");
    const auto document = boost::dynamic_pointer_cast<ZAudioDocument>(plugin->GetCurrentDocument());
    ASSERT_NE(document, nullptr);
    EXPECT_TRUE(document->IsKindOf("KestruneDocumentClass"));
    EXPECT_EQ(document->GetName(), "Untitled Media File 1");
    const auto network = document->GetOutputNetwork();
    EXPECT_NE(boost::dynamic_pointer_cast<ZPsolaBay>(network->FindBay("PsolaBay")), nullptr);
    // About 428 ms at the rate that a document has before a host names another.
    EXPECT_NEAR(document->GetLatency(), 0.428 * 44100, 0.012 * 44100);

    const auto looper = plugin->GetAudioManager()->GetSignalLooper();
    for (std::int32_t channel = 0; channel < 2; ++channel)
        EXPECT_TRUE(looper->GetOutputBay()->IsRouted(channel, *network, channel)) << channel;
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
