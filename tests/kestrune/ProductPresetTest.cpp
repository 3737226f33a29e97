// Presets of the shipped document: each state comes back in an instance that knows nothing of it.

#include "kestrune/common/KestruneClasses.h"
#include "kestrune/common/KestruneDocument.h"
#include "kestrune/common/KestruneIdentity.h"
#include "kestrune/common/ZPsolaBay.h"
#include "resources/KestruneResources.h"
#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZMessage.h"
#include "zlib/common/ZMessageIds.h"
#include "zlib/common/ZPlugin.h"
#include "zlib/common/ZXMLElement.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

namespace orvane
{

namespace
{

/// The product as the host's project opens it: not one tick has passed when a preset comes.
class Instance
{
public:
    Instance()
        : mApp(std::make_unique<ZPlugin>(kestruneResources()))
    {
        mApp->SetStandalone(false);
        mApp->SetResourceName(descriptionResourceName());
        registerKestruneClasses(mApp->GetClassRegistry());
        mApp->ZHandler::PostZMessage(boost::make_shared<ZMessage>(ZLOOPERSTART));
        mApp->ProcessQueue();
        mDocument = boost::dynamic_pointer_cast<KestruneDocument>(mApp->GetCurrentDocument());
    }

    [[nodiscard]] KestruneDocument& Document() { return *mDocument; }
    [[nodiscard]] ZElement& operator[](const char* name) { return *mDocument->FindElement(name); }
    [[nodiscard]] boost::shared_ptr<ZXMLElement> Save()
    {
        const auto parent = boost::make_shared<ZXMLElement>();
        mDocument->SavePreset(*parent);
        return parent->GetChild("preset");
    }
    /// The preset, with the name that every buffer has once it was restored.
    [[nodiscard]] std::string Text()
    {
        std::string text(Save()->GetText());
        const std::string name = "ElementBuffer";
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
            text.replace(at, name.size(), "buffer");
        return text;
    }
    void Tick() { mApp->Tick(); }
    [[nodiscard]] ZPsolaBay& Bay()
    {
        return dynamic_cast<ZPsolaBay&>(*mDocument->GetOutputNetwork()->FindBay("PsolaBay"));
    }
    /// Chooses notes of a scale of the user's own.
    void EditNotes(const std::string& flags)
    {
        ZElement& notes = (*this)["notesInScale"];
        for (std::size_t i = 0; i < flags.size(); ++i)
            notes.GetZBuffer()->Data()[i] = flags[i] == '1' ? 1.0f : 0.0f;
        notes.ElementChanged(nullptr, true);
    }
    [[nodiscard]] std::string Notes()
    {
        std::string flags;
        for (std::size_t i = 0; i < 12; ++i)
            flags += (*this)["notesInScale"].GetZBuffer()->Data()[i] == 1.0f ? '1' : '0';
        return flags;
    }

private:
    std::unique_ptr<ZPlugin> mApp;
    boost::shared_ptr<KestruneDocument> mDocument;
};

}  // namespace

TEST(ProductPresetTest, EveryFactoryPresetComesBackInANewInstance)
{
    for (std::int32_t i = 0; i < 7; ++i) {
        Instance first;
        ASSERT_EQ(first.Document().GetPresetCount(), 7);
        first.Document().LoadFactoryPreset(i);
        Instance second;
        second.Document().LoadPreset(first.Save());
        second.Tick();
        EXPECT_EQ(second.Text(), first.Text()) << first.Document().GetPresetName(i);
        EXPECT_EQ(second.Notes(), first.Notes());
    }
}

TEST(ProductPresetTest, AnEditedScaleComesBackAlsoWhenNoTickHasPassed)
{
    Instance first;
    first.Tick();
    first.EditNotes("100100010010");
    const auto saved = first.Save();
    Instance second;
    second.Document().LoadPreset(saved);
    second.Tick();
    EXPECT_EQ(second.Notes(), "100100010010");
    EXPECT_EQ(second["currentScaleModified"].GetDiscrete(), 1);
    EXPECT_EQ(second.Text(), first.Text());
}

TEST(ProductPresetTest, AScaleOfTheUsersOwnComesBackByNameAndTones)
{
    Instance first;
    first.Tick();
    first.Bay().AddCustomScale("Mine \"1\"", std::array{0, 3, 7});
    first["scale"].SetDiscrete(4, false);
    const auto saved = first.Save();
    Instance second;
    second.EditNotes("111111111111");
    second["scale"].SetDiscrete(2, false);
    second.Document().LoadPreset(saved);
    second.Tick();
    EXPECT_EQ(second["scale"].GetDiscrete(), 4);
    EXPECT_EQ(second["scale"].GetDiscreteString(4)->ToNarrow(), "Mine '1'");
    EXPECT_EQ(second.Notes(), "100100010000");
    EXPECT_EQ(second["currentScaleModified"].GetDiscrete(), 0);
}

TEST(ProductPresetTest, AFileOfAnOlderVersionLeavesTheRestAsItIs)
{
    Instance instance;
    instance.Bay().AddCustomScale("Mine", std::array{0, 3, 7});
    instance["AcceptMIDI"].SetDiscrete(1, false);
    const std::string text =
        "<preset version=\"0.9\"><element name=\"key\" int32value=\"9\" /></preset>";
    instance.Document().LoadPreset(
        ZXMLDocument(text.data(), static_cast<std::int32_t>(text.size())).GetChild(0));
    EXPECT_EQ(instance["key"].GetDiscrete(), 9);
    EXPECT_EQ(instance["scale"].CountDiscreteValues(), 5);
    EXPECT_EQ(instance["AcceptMIDI"].GetDiscrete(), 1);
}

}  // namespace orvane
