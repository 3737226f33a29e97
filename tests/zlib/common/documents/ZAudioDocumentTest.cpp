// SPDX-License-Identifier: GPL-3.0-or-later
// The document's networks, and saving and loading its presets.

#include "zlib/common/documents/ZAudioDocument.h"

#include "support/BoxRecorder.h"
#include "support/ExpectZException.h"
#include "support/PrivateFolder.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZFileChooser.h"
#include "zlib/common/documents/ZPluginAudioDocument.h"
#include "zlib/common/documents/ZTransaction.h"
#include "zlib/common/documents/ZTransactionManager.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/signals/ZSignalBay.h"

using namespace orvane;

namespace
{

using Ids = std::vector<std::int32_t>;

/// A bay with a float and a buffer element and a latency; it records the messages it gets.
struct GainBay : ZSignalBay
{
    GainBay(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application)
        : ZSignalBay(xml, application)
    {
        SetLatency(xml->GetInt32("latency"));
        AddElement(
            boost::make_shared<ZElement>("gain of " + GetName(), ZElement::ZFLOAT, application));
        AddElement(boost::make_shared<ZElement>("tones", ZElement::ZBUFFER, application, 4));
    }
    [[nodiscard]] const char* GetClassName() const override { return "GainBayClass"; }
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
    Ids told;
};

const char* const kContent =
    "<elements><element name=\"own\" class=\"ZElementClass\" type=\"ZFLOAT\" archivable=\"true\" />"
    "<element name=\"unsaved\" class=\"ZElementClass\" type=\"ZFLOAT\" /></elements>"
    "<networks>"
    "<network type=\"output\"><bay name=\"old\" class=\"GainBayClass\" latency=\"9\" /></network>"
    "<network type=\"none\"><bay name=\"skipped\" class=\"NobodyClass\" /></network>"
    "<network type=\"output\"><bay name=\"whole\" class=\"ZSignalBayClass\"><bays>"
    "<bay name=\"one\" class=\"GainBayClass\" latency=\"3\" />"
    "<bay name=\"two\" class=\"GainBayClass\" latency=\"4\" /></bays></bay></network>"
    "<network type=\"input\"><bay name=\"in\" class=\"GainBayClass\" latency=\"5\" /></network>"
    "</networks>";

struct Listener : ZHandler
{
    using ZHandler::ZHandler;
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override
    {
        if (message->GetId() != ZATTACHEDTOELEMENT && message->GetId() != ZELEMENTUPDATED)
            heard.push_back(message->GetId());
    }
    Ids heard;
};

struct ZAudioDocumentTest : testing::Test
{
    ZAudioDocumentTest() { app->GetClassRegistry().AddStandard<GainBay>("GainBayClass"); }
    ~ZAudioDocumentTest() override { ZFileChooser::SetPresenter(nullptr); }

    template <typename Document>
    boost::shared_ptr<Document> Make(const std::string& content)
    {
        return boost::make_shared<Document>(xmlOf("<doctype>" + content + "</doctype>"), app.get());
    }
    /// Sends a message; the file dialog that opens gives the path, or is cancelled without one.
    void Send(ZDocument& document, std::int32_t id, std::optional<std::string> path)
    {
        ZFileChooser::SetPresenter([path](const ZFileRequest&) { return path; });
        document.HandleZMessage(boost::make_shared<ZMessage>(id));
    }

    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    BoxRecorder boxes;
};

std::string setOwn(const std::string& value)
{
    return "<element name=\"own\" floatvalue=\"" + value + "\" />";
}

float own(const ZDocument& document)
{
    return document.FindElement("own")->GetZFloat();
}

}  // namespace

TEST_F(ZAudioDocumentTest, PreparesItsNetworksAndPassesMessagesToThem)
{
    const auto document = Make<ZAudioDocument>(kContent);
    EXPECT_EQ(document->GetLatency(), 7);
    for (const char* name : {"one", "two"}) {
        const auto bay =
            boost::dynamic_pointer_cast<GainBay>(document->GetOutputNetwork()->FindBay(name));
        ASSERT_NE(bay, nullptr);
        EXPECT_TRUE(bay->prepared);
        EXPECT_EQ(bay->GetDocument(), document.get());
    }
    EXPECT_NE(document->FindElement("gain of two"), nullptr);
    EXPECT_EQ(document->FindElement("gain of old"), nullptr) << "of the replaced network";

    for (const std::int32_t id : {ZSETDEFAULTS, ZRESET, ZPLAY})
        document->HandleZMessage(boost::make_shared<ZMessage>(id));
    const auto input = boost::dynamic_pointer_cast<GainBay>(document->GetInputNetwork());
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->told, (Ids{ZSETDEFAULTS, ZRESET}));
}

TEST_F(ZAudioDocumentTest, CallsItsHookWhenCurrentAndOnUndoAndRedo)
{
    struct Counting : ZAudioDocument
    {
        using ZAudioDocument::ZAudioDocument;
        void BecameCurrent() override { ++turns; }
        int turns = 0;
    };
    static std::string steps;
    steps.clear();
    struct Step : ZTransaction
    {
        void Undo() override { steps += "undo "; }
        void Redo() override { steps += "redo "; }
    };
    const auto document = Make<Counting>("");
    for (const boost::shared_ptr<ZDocument> to : {document, Make<Counting>("")})
        document->HandleZMessage(
            messageWith<boost::shared_ptr<ZDocument>>(ZDOCUMENTCHANGED, "NewDocument", to));
    EXPECT_EQ(document->turns, 1);

    document->GetTransactionManager()->Add(std::make_unique<Step>());
    for (const std::int32_t id : {ZREDO, ZUNDO, ZUNDO, ZREDO, ZREDO, ZUNDO})
        document->HandleZMessage(boost::make_shared<ZMessage>(id));
    EXPECT_EQ(steps, "undo redo undo ");
    EXPECT_EQ(document->turns, 7);
}

TEST_F(ZAudioDocumentTest, LoadDeliversPendingChangesBeforeItsOwn)
{
    const auto document = Make<ZAudioDocument>(kContent);
    const auto unsaved = document->FindElement("unsaved");
    Listener listener("listener", app.get());
    for (const auto& element : {document->FindElement("own"), unsaved})
        element->AddObserver(&listener);
    app->ProcessQueue();
    unsaved->SetZFloat(0.5f, false);
    // Elements are found at any depth; unknown ones are skipped.
    document->LoadPreset(xmlOf("<any><what><element name=\"nobody\">" + setOwn("0.4") +
                               "</element></what><Element name=\"unsaved\" floatvalue=\"1\" />"
                               "<element floatvalue=\"1\" />" +
                               setOwn("0.5") + "</any>"));
    EXPECT_EQ(own(*document), 0.5f);
    EXPECT_EQ(unsaved->GetZFloat(), 0.5f);
    EXPECT_EQ(std::exchange(listener.heard, {}),
              (Ids{ZELEMENTCHANGED, ZPRESETLOADBEGIN, ZELEMENTCHANGED, ZPRESETLOADEND}));

    const std::string wrongTones = "<element name=\"tones\"><buffer length=\"5\"><data values=\"" +
                                   std::string(40, '0') + "\" /></buffer></element>";
    expectZException("Incompatible buffer restore. Buffers are of different size.", [&] {
        document->LoadPreset(
            xmlOf("<preset>" + setOwn("0.6") + wrongTones + setOwn("0.7") + "</preset>"));
    });
    EXPECT_EQ(own(*document), 0.6f) << "set before the faulty element";
    EXPECT_EQ(listener.heard, (Ids{ZPRESETLOADBEGIN, ZELEMENTCHANGED, ZPRESETLOADEND}));
    for (const auto& element : {document->FindElement("own"), unsaved})
        element->RemoveObserver(&listener);
}

TEST_F(ZAudioDocumentTest, LoadsTheFileThatItSavedWhichReplacesAnother)
{
    const auto document = Make<ZPluginAudioDocument>(kContent);
    const PrivateFolder folder;
    document->SetName("Take \"1\"");
    document->FindElement("own")->SetZFloat(0.25f, false);
    Send(*document, ZPRESETSAVE, folder.Path("mine.xml"));
    const std::string text = readTextFile(folder.Path("mine.xml"));
    EXPECT_TRUE(text.starts_with(
        "<preset name=\"Take '1'\" class=\"ZAudioDocumentClass\" version=\"1.0\">\n"));
    EXPECT_EQ(text.find("unsaved"), std::string::npos);
    document->FindElement("own")->SetZFloat(0.5f, false);
    Send(*document, ZPRESETLOAD, folder.Path("mine.xml"));
    EXPECT_EQ(own(*document), 0.25f);
    Send(*document, ZPRESETSAVE, std::nullopt);
    Send(*document, ZPRESETLOAD, std::nullopt);
    EXPECT_EQ(folder.Count(), 1);
    EXPECT_TRUE(boxes.boxes.empty());

    Send(*document, ZPRESETSAVE, folder.Path("take 1.5"));
    EXPECT_TRUE(std::filesystem::exists(folder.Path("take 1.5.xml")));
    for (const std::string& refused : {folder.Path("mine"), folder.Path() + "/"}) {
        Send(*document, ZPRESETSAVE, refused);
        ASSERT_FALSE(boxes.boxes.empty()) << refused;
        EXPECT_EQ(boxes.boxes.back().title, "File Error");
        boxes.boxes.clear();
    }
    EXPECT_EQ(folder.Count(), 2);
    EXPECT_THROW(Send(*document, ZPRESETSAVE, folder.Path("none/file.xml")), ZException);
    // A file is replaced, not written into.
    writeTextFile(folder.Path("mine.xml"), "old");
    std::filesystem::create_hard_link(folder.Path("mine.xml"), folder.Path("old.xml"));
    Send(*document, ZPRESETSAVE, folder.Path("mine.xml"));
    EXPECT_TRUE(readTextFile(folder.Path("mine.xml")).starts_with("<preset "));
    EXPECT_EQ(readTextFile(folder.Path("old.xml")), "old");
}

TEST_F(ZAudioDocumentTest, RefusesFilesThatAreNoPreset)
{
    const auto document = Make<ZPluginAudioDocument>(kContent);
    const PrivateFolder folder;
    Send(*document, ZPRESETLOAD, folder.Path("missing.xml"));
    for (const std::string& text : {std::string(), std::string("\xff no XML < at all"),
                                    "<other>" + setOwn("0.5") + "</other>"})
    {
        writeTextFile(folder.Path("file.xml"), text);
        Send(*document, ZPRESETLOAD, folder.Path("file.xml"));
    }
    ASSERT_EQ(boxes.boxes.size(), 4u);
    for (const ShownBox& box : boxes.boxes)
        EXPECT_EQ(box.title + ": " + box.text, "Invalid File: Invalid Preset File.");
    EXPECT_EQ(own(*document), 0.0f);
    std::filesystem::resize_file(folder.Path("file.xml"), ZXMLDocument::kMaxBytes + 1);  // a hole
    Send(*document, ZPRESETLOAD, folder.Path("file.xml"));
    EXPECT_TRUE(boxes.boxes.back().text.starts_with("This preset has 16777217 bytes."));

    writeTextFile(folder.Path("file.xml"), "<!-- by hand, of any version --><preset "
                                           "version=\"2.0\">" +
                                               setOwn("0.5") + "</preset>");
    Send(*document, ZPRESETLOAD, folder.Path("file.xml"));
    EXPECT_EQ(own(*document), 0.5f);
}

TEST_F(ZAudioDocumentTest, BaseClassChecksTheVersion)
{
    const auto document = Make<ZAudioDocument>(kContent);
    const auto input = boost::dynamic_pointer_cast<GainBay>(document->GetInputNetwork());
    const PrivateFolder folder;
    writeTextFile(folder.Path("file.xml"), "<preset>" + setOwn("0.5") + "</preset>");
    Send(*document, ZPRESETLOAD, std::nullopt);
    const auto loads = [&] {
        return std::count(input->told.begin(), input->told.end(), ZPRESETLOAD);
    };
    EXPECT_EQ(loads(), 0);
    Send(*document, ZPRESETLOAD, folder.Path("file.xml"));
    EXPECT_EQ(loads(), 1);
    EXPECT_EQ(own(*document), 0.0f);
    ASSERT_EQ(boxes.boxes.size(), 1u);
    EXPECT_EQ(boxes.boxes[0].title, "Could not load preset");
    EXPECT_EQ(boxes.boxes[0].text, "Incorrect Preset version.");
}
