// Presets: what is written, what is read back, and what reaches the observers in which order.

#include "support/BoxRecorder.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "zlib/DocumentFixture.h"
#include "zlib/common/ZBuffer.h"
#include "zlib/common/ZClassRegistry.h"
#include "zlib/common/ZFileChooser.h"
#include "zlib/common/ZPluginPresetsAudioDocument.h"
#include "zlib/common/ZSignalBay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace orvane
{

namespace
{

/// A bay with one element of each kind that presets hold.
class VoiceBay : public ZSignalBay
{
public:
    VoiceBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
        : ZSignalBay(xml, application)
    {
        AddElement(boost::make_shared<ZElement>("shift", ZElement::ZFLOAT, application));
        AddElement(boost::make_shared<ZElement>("tones", ZElement::ZBUFFER, application, 4));
        AddElement(boost::make_shared<ZElement>("unsaved", ZElement::ZFLOAT, application));
        GetElement()->GetSubElement(2, mUnsaved);
        mUnsaved->SetArchivable(false);
    }
    [[nodiscard]] const char* GetClassName() const override { return "VoiceBayClass"; }
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        told.push_back(message->GetId());
    }

    std::vector<std::int32_t> told;

private:
    boost::shared_ptr<ZElement> mUnsaved;
};

const char* const kType =
    "<doctype><elements>"
    "<element name=\"choice\" class=\"ZElementClass\" type=\"ZDISCRETE\" archivable=\"true\">"
    "<discrete name=\"no\" /><discrete name=\"yes\" /></element>"
    "<element name=\"PresetAActive\" class=\"ZElementClass\" type=\"ZDISCRETE\">"
    "<discrete name=\"Inactive\" /><discrete name=\"Active\" /></element>"
    "<element name=\"PresetBActive\" class=\"ZElementClass\" type=\"ZDISCRETE\">"
    "<discrete name=\"Inactive\" /><discrete name=\"Active\" /></element>"
    "</elements>"
    "<networks><network type=\"output\"><bay name=\"whole\" class=\"ZSignalBayClass\"><bays>"
    "<bay name=\"voice\" class=\"VoiceBayClass\" /></bays></bay></network></networks>"
    "<presets>"
    "<preset name=\"Low\" version=\"1.0\">"
    "<element name=\"shift\" class=\"ZElementClass\" type=\"ZFLOAT\" floatvalue=\"-1\" /></preset>"
    "<preset name=\"High\" version=\"1.0\">"
    "<element name=\"shift\" class=\"ZElementClass\" type=\"ZFLOAT\" floatvalue=\"1\" /></preset>"
    "</presets></doctype>";

/// Writes down what it hears of, each load's bracket included.
struct Listener : ZHandler
{
    using ZHandler::ZHandler;
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        if (message->GetId() != ZATTACHEDTOELEMENT && message->GetId() != ZELEMENTUPDATED)
            heard.push_back(message->GetId());
    }
    std::vector<std::int32_t> heard;
};

class ZPresetTest : public testing::Test
{
protected:
    ZPresetTest()
    {
        app->GetClassRegistry().AddStandard<VoiceBay>("VoiceBayClass");
        document = boost::make_shared<ZPluginPresetsAudioDocument>(xmlOf(kType), app.get());
        document->SetName("Take \"1\"");
        Settle();
    }
    ~ZPresetTest() override { ZFileChooser::SetPresenter(nullptr); }

    void Settle()
    {
        document->FlushChanges(*document);
        app->ProcessQueue();
    }
    [[nodiscard]] boost::shared_ptr<ZElement> Find(const char* name) const
    {
        return document->FindElement(name);
    }
    [[nodiscard]] float Shift() const { return Find("shift")->GetZFloat(); }
    void SetShift(float value) { Find("shift")->SetZFloat(value, false); }
    [[nodiscard]] float& Tone(std::int32_t index) const
    {
        return Find("tones")->GetZBuffer()->Data()[index];
    }
    [[nodiscard]] boost::shared_ptr<ZXMLElement> Save()
    {
        auto parent = boost::make_shared<ZXMLElement>("parent");
        document->SavePreset(*parent);
        return parent;
    }
    void Send(std::int32_t id) { document->HandleZMessage(boost::make_shared<ZMessage>(id)); }
    /// The user chooses this file, or none, from now on.
    void Choose(std::optional<std::string> path)
    {
        ZFileChooser::SetPresenter([this, path](const ZFileRequest& request) {
            asked.push_back(request);
            return path;
        });
    }
    [[nodiscard]] std::vector<std::int32_t> Flags() const
    {
        return {Find("PresetAActive")->GetDiscrete(), Find("PresetBActive")->GetDiscrete()};
    }

    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    boost::shared_ptr<ZPluginPresetsAudioDocument> document;
    BoxRecorder boxes;
    std::vector<ZFileRequest> asked;
};

std::string shiftTo(const char* value)
{
    return std::string("<element name=\"shift\" floatvalue=\"") + value + "\" />";
}

const char* const kWrongTones =
    "<element name=\"tones\" type=\"ZBUFFER\"><buffer length=\"5\"><data values=\""
    "0000000000000000000000000000000000000000\" /></buffer></element>";

}  // namespace

TEST_F(ZPresetTest, APresetHoldsTheNetworkAndEachSavedElementTwice)
{
    const auto preset = Save()->GetChild("preset");
    ASSERT_NE(preset, nullptr);
    EXPECT_STREQ(preset->GetAttribute("name"), "Take '1'");
    EXPECT_STREQ(preset->GetAttribute("class"), "ZAudioDocumentClass");
    EXPECT_STREQ(preset->GetAttribute("version"), "1.0");
    const auto saved = preset->GetChild("document");
    ASSERT_NE(saved, nullptr);
    EXPECT_STREQ(saved->GetAttribute("name"), "Take '1'");
    const auto network = saved->GetChild("networks")->GetChild("network");
    EXPECT_TRUE(network->AttributeIs("type", "output"));
    EXPECT_TRUE(network->GetChild("bay")->AttributeIs("name", "whole"));

    const std::string text(preset->GetText());
    const auto count = [&](const std::string& word) {
        int found = 0;
        for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("element name=\"shift\""), 2);
    EXPECT_EQ(count("element name=\"choice\""), 1);
    EXPECT_EQ(count("unsaved") + count("PresetAActive") + count("audioformat"), 0);
}

TEST_F(ZPresetTest, EverySavedValueComesBackAndNothingElseChanges)
{
    SetShift(0.25f);
    Find("choice")->SetDiscrete(1, false);
    Tone(3) = 0.1f;
    const auto saved = Save();
    SetShift(0.75f);
    Find("choice")->SetDiscrete(0, false);
    Find("unsaved")->SetZFloat(0.5f, false);
    Find("PresetAActive")->SetDiscrete(1, false);
    Tone(3) = 0.9f;
    document->LoadPreset(saved);
    EXPECT_EQ(Shift(), 0.25f);
    EXPECT_EQ(Find("choice")->GetDiscrete(), 1);
    EXPECT_EQ(Tone(3), 0.1f);
    EXPECT_EQ(Find("unsaved")->GetZFloat(), 0.5f);
    EXPECT_EQ(Find("PresetAActive")->GetDiscrete(), 1);
}

TEST_F(ZPresetTest, ElementsAreFoundByNameWhereverTheyStandAndOthersPassedOver)
{
    document->LoadPreset(xmlOf("<any><what><element name=\"nobody\">" + shiftTo("0.5") +
                               "</element></what><Element name=\"choice\" int32value=\"1\" />"
                               "<element int32value=\"1\" /></any>"));
    EXPECT_EQ(Shift(), 0.5f);
    EXPECT_EQ(Find("choice")->GetDiscrete(), 0);
}

TEST_F(ZPresetTest, TagsNestedDeeperThanTheStackLoad)
{
    constexpr int kDepth = 100'000;
    std::string text;
    for (int i = 0; i < kDepth; ++i)
        text += "<element name=\"ContainerBay\">";
    text += shiftTo("0.5");
    for (int i = 0; i < kDepth; ++i)
        text += "</element>";
    document->LoadPreset(xmlOf(text));
    EXPECT_EQ(Shift(), 0.5f);
}

TEST_F(ZPresetTest, AnotherVersionIsRefusedWithABox)
{
    for (const char* version : {" version=\"2.0\"", ""})
        document->LoadPreset(xmlOf("<parent><preset" + std::string(version) + ">" + shiftTo("0.5") +
                                   "</preset></parent>"));
    EXPECT_EQ(Shift(), 0.0f);
    ASSERT_EQ(boxes.boxes.size(), 2u);
    EXPECT_EQ(boxes.boxes[0].kind, ZMessageBox::kNotice);
    EXPECT_EQ(boxes.boxes[0].title, "Could not load preset");
    EXPECT_EQ(boxes.boxes[0].text, "Incorrect Preset version.");
    expectZException(-1, "NULL preset file", [&] { document->LoadPreset(nullptr); });
}

TEST_F(ZPresetTest, ALoadDeliversWhatWaitedThenItsChangesBetweenBeginAndEnd)
{
    Listener listener("listener", app.get());
    Find("shift")->AddObserver(&listener);
    Find("choice")->AddObserver(&listener);
    app->ProcessQueue();
    Find("choice")->SetDiscrete(1, false);
    document->LoadPreset(xmlOf("<preset>" + shiftTo("0.5") + shiftTo("0.6") + "</preset>"));
    EXPECT_EQ(listener.heard, (std::vector<std::int32_t>{ZELEMENTCHANGED, ZPRESETLOADBEGIN,
                                                         ZELEMENTCHANGED, ZPRESETLOADEND}));
    Find("shift")->RemoveObserver(&listener);
    Find("choice")->RemoveObserver(&listener);
}

TEST_F(ZPresetTest, AChangeThatWaitsBringsItsConsequencesIntoThePreset)
{
    struct Follower : ZHandler
    {
        using ZHandler::ZHandler;
        void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
        {
            if (message->GetId() == ZELEMENTCHANGED)
                shift->SetZFloat(0.5f, true);
        }
        boost::shared_ptr<ZElement> shift;
    } follower("follower", app.get());
    follower.shift = Find("shift");
    Find("choice")->AddObserver(&follower);
    Find("choice")->SetDiscrete(1, false);
    const auto saved = Save();
    EXPECT_NE(saved->GetText().find("floatvalue=\"0.5\""), std::string_view::npos);
    Find("choice")->RemoveObserver(&follower);
}

TEST_F(ZPresetTest, AnElementThatDoesNotFitEndsTheLoadInOrder)
{
    Listener listener("listener", app.get());
    Tone(0) = 0.3f;
    expectZException(-1, "Incompatible buffer restore. Buffers are of different size.", [&] {
        document->LoadPreset(
            xmlOf("<preset>" + shiftTo("0.5") + kWrongTones + shiftTo("0.7") + "</preset>"));
    });
    EXPECT_EQ(Shift(), 0.5f) << "what stands before it";
    EXPECT_EQ(Tone(0), 0.3f);
    EXPECT_EQ(listener.heard, (std::vector<std::int32_t>{ZPRESETLOADBEGIN, ZPRESETLOADEND}));
}

TEST_F(ZPresetTest, FactoryPresetsAreKeptInOrder)
{
    EXPECT_EQ(document->GetPresetCount(), 2);
    EXPECT_STREQ(document->GetPresetName(1), "High");
    for (const std::int32_t none : {-1, 2}) {
        EXPECT_STREQ(document->GetPresetName(none), "Init");
        EXPECT_EQ(document->GetPresetCopy(none), nullptr);
        document->LoadFactoryPreset(none);
    }
    EXPECT_EQ(Shift(), 0.0f);
    document->LoadFactoryPreset(1);
    EXPECT_EQ(Shift(), 1.0f);
    const auto copy = document->GetPresetCopy(0);
    copy->AppendText("more");
    EXPECT_NE(copy->GetText(), document->GetPresetCopy(0)->GetText());
    EXPECT_TRUE(document->IsKindOf("ZPluginPresetsAudioDocumentDocumentClass"));
    EXPECT_TRUE(document->IsKindOf("ZAudioDocumentClass"));
}

TEST_F(ZPresetTest, AMemoryBringsItsStateBackAndRaisesItsFlag)
{
    Send(PLUGINRECALLPRESETB);
    EXPECT_EQ(Flags(), (std::vector<std::int32_t>{0, 0})) << "empty";
    SetShift(0.25f);
    Send(PLUGINSAVETOPRESETA);
    SetShift(0.5f);
    Send(PLUGINSAVETOPRESETB);
    EXPECT_EQ(Flags(), (std::vector<std::int32_t>{0, 0})) << "saving alone";
    Send(PLUGINRECALLPRESETA);
    EXPECT_EQ(Shift(), 0.25f);
    EXPECT_EQ(Flags(), (std::vector<std::int32_t>{1, 0}));
    Send(PLUGINRECALLPRESETB);
    EXPECT_EQ(Shift(), 0.5f);
    EXPECT_EQ(Flags(), (std::vector<std::int32_t>{0, 1}));
    // C has no flag in this document.
    Send(PLUGINSAVETOPRESETC);
    Send(PLUGINRECALLPRESETC);
    Send(PLUGINRECALLPRESETD);
    EXPECT_EQ(Flags(), (std::vector<std::int32_t>{0, 0}));
    document->SaveToMemory(4);
    document->RecallMemory(-1);
}

TEST_F(ZPresetTest, AFileThatIsSavedLoadsAgain)
{
    const PrivateFolder folder;
    Choose(folder.Path("mine.xml"));
    SetShift(0.25f);
    Send(ZPRESETSAVE);
    SetShift(0.5f);
    Send(ZPRESETLOAD);
    EXPECT_EQ(Shift(), 0.25f);
    Choose(std::nullopt);
    Send(ZPRESETSAVE);
    Send(ZPRESETLOAD);
    EXPECT_EQ(folder.Count(), 1);
    EXPECT_TRUE(boxes.boxes.empty());
    ASSERT_EQ(asked.size(), 4u);

    Choose(folder.Path("take 1.5"));
    Send(ZPRESETSAVE);
    EXPECT_TRUE(std::filesystem::exists(folder.Path("take 1.5.xml")));
    Choose(folder.Path("mine"));
    Send(ZPRESETSAVE);
    EXPECT_EQ(folder.Count(), 2);
    ASSERT_EQ(boxes.boxes.size(), 1u) << "nobody was asked about mine.xml";
    EXPECT_EQ(boxes.boxes[0].title, "File Error");
    EXPECT_EQ(asked[0].purpose, ZFileRequest::kSave);
    EXPECT_EQ(asked[0].prompt.ToNarrow(), "Save your preset");
    EXPECT_EQ(asked[0].title.ToNarrow(), "Save Preset");
    EXPECT_EQ(asked[1].purpose, ZFileRequest::kOpen);
    EXPECT_EQ(asked[1].prompt.ToNarrow(), "Orvane Plug-In Preset");
    EXPECT_EQ(asked[1].title.ToNarrow(), "Load Preset");
    ASSERT_EQ(asked[1].types.size(), 1u);
    EXPECT_EQ(asked[1].types[0]->mimeType, "text/xml");
    EXPECT_EQ(ZFileChooser::FilterName(*asked[1].types[0]), "Orvane Plug-In Preset (*.xml)");
}

TEST_F(ZPresetTest, AFileThatIsNoPresetChangesNothing)
{
    const PrivateFolder folder;
    const auto load = [&](const std::string& text) {
        std::ofstream(folder.Path("file.xml")) << text;
        Choose(folder.Path("file.xml"));
        Send(ZPRESETLOAD);
    };
    load("");
    load("\xff no XML < at all");
    load("<document>" + shiftTo("0.5") + "</document>");
    Choose(folder.Path("missing.xml"));
    Send(ZPRESETLOAD);
    ASSERT_EQ(boxes.boxes.size(), 4u);
    for (const ShownBox& box : boxes.boxes) {
        EXPECT_EQ(box.kind, ZMessageBox::kNotice);
        EXPECT_EQ(box.title, "Invalid File");
        EXPECT_EQ(box.text, "Invalid Preset File.");
    }
    EXPECT_EQ(Shift(), 0.0f);
    EXPECT_EQ(folder.Count(), 1);
    load("<!-- by hand, of any version --><preset version=\"2.0\">" + shiftTo("0.5") + "</preset>");
    EXPECT_EQ(Shift(), 0.5f);

    Choose(folder.Path() + "/");
    Send(ZPRESETSAVE);
    EXPECT_EQ(boxes.boxes.back().title, "File Error");
    Choose(folder.Path("none/file.xml"));
    EXPECT_THROW(Send(ZPRESETSAVE), ZException);
}

TEST_F(ZPresetTest, TheCommonDocumentTestsTheVersionAndTellsItsNetworks)
{
    const auto common = boost::make_shared<ZAudioDocument>(
        xmlOf("<doctype><networks><network type=\"input\"><bay name=\"voice\" "
              "class=\"VoiceBayClass\" /></network></networks></doctype>"),
        app.get());
    const PrivateFolder folder;
    std::ofstream(folder.Path("file.xml")) << "<preset version=\"2.0\"></preset>";
    const auto load = [&](std::optional<std::string> path) {
        Choose(std::move(path));
        common->HandleZMessage(boost::make_shared<ZMessage>(ZPRESETLOAD));
    };
    const auto& told = boost::dynamic_pointer_cast<VoiceBay>(common->GetInputNetwork())->told;
    load(std::nullopt);
    EXPECT_EQ(std::count(told.begin(), told.end(), ZPRESETLOAD), 0);
    load(folder.Path("file.xml"));
    ASSERT_EQ(boxes.boxes.size(), 1u);
    EXPECT_EQ(boxes.boxes[0].text, "Incorrect Preset version.");
    EXPECT_EQ(std::count(told.begin(), told.end(), ZPRESETLOAD), 1);
    EXPECT_EQ(asked[0].prompt.ToNarrow(), "Select Preset");
    EXPECT_EQ(asked[0].types[0]->description.ToNarrow(), "Glim preset xml");
}

}  // namespace orvane
