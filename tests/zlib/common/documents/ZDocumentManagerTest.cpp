// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDocumentManager.h"

#include "support/BoxRecorder.h"
#include "support/ExpectZException.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/documents/ZFileDocumentManager.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/objects/ZFile.h"

#include <boost/smart_ptr/weak_ptr.hpp>

using namespace orvane;

namespace
{

/// A document that can refuse to close and records its name at the first hook.
struct StubbornDocument : ZDocument
{
    using ZDocument::ZDocument;
    [[nodiscard]] bool AgreesToClose() override { return agrees; }
    void DocumentMade() override { nameWhenMade = GetName(); }
    bool ReadFile(ZFile& file) override { return file.GetName().ToNarrow() == "good"; }

    bool agrees = true;
    std::string nameWhenMade;
};

const char* const kManager =
    "<documentmanager name=\"Media File\" type=\"sdi\" class=\"ZFileDocumentManager\">"
    "<documenttypes><doctype class=\"StubbornDocumentClass\" name=\"Stubborn\" />"
    "<doctype class=\"NobodyClass\" name=\"Unknown\" />"
    "<doctype class=\"ZElementClass\" name=\"Element\" /></documenttypes>"
    "<filetypes><filetype docclass=\"StubbornDocumentClass\" winext=\"stub\" mactype=\"Stub\" "
    "mimetype=\"text/stub\" /></filetypes></documentmanager>";

struct ZDocumentManagerTest : testing::Test
{
    ZDocumentManagerTest()
    {
        app->GetClassRegistry().AddStandard<StubbornDocument>("StubbornDocumentClass");
        app->AddDocumentManager(xmlOf(kManager));
    }
    boost::shared_ptr<StubbornDocument> New()
    {
        manager().HandleZMessage(messageWith<ZString>(ZFILENEW, "filename", "Stubborn"));
        return boost::dynamic_pointer_cast<StubbornDocument>(manager().GetCurrentDocument());
    }
    [[nodiscard]] ZDocumentManager& manager() { return *app->GetDocumentManager(); }

    const TestResources resources{""};
    const std::unique_ptr<ZPlugin> app = makePlugin(resources);
    WindowRecorder& windows = addWindows(*app);
};

}  // namespace

TEST_F(ZDocumentManagerTest, NamesDocumentsByACountThatNeverFalls)
{
    const auto first = New();
    EXPECT_EQ(first->GetName(), "Untitled Media File 1");
    EXPECT_EQ(first->nameWhenMade, "Untitled Media File 1");
    auto second = New();
    manager().HandleZMessage(messageWith<ZString>(ZDOCNEXT, "DocNextName", "x"));
    EXPECT_EQ(manager().GetCurrentDocument(), first) << "next of the last is the first";
    manager().HandleZMessage(messageWith<ZString>(ZDOCPREV, "DocPrevName", "x"));
    EXPECT_EQ(manager().GetCurrentDocument(), second);

    const boost::weak_ptr<ZDocument> gone = second;
    auto close = messageWith<boost::shared_ptr<ZDocument>>(ZDOCCLOSE, "Document", second);
    second->agrees = false;
    manager().HandleZMessage(close);
    EXPECT_EQ(manager().GetDocumentCount(), 2);
    second->agrees = true;
    windows.told.clear();
    manager().HandleZMessage(close);
    EXPECT_EQ(windows.Ids(), (std::vector<std::int32_t>{ZDOCUMENTCLOSED, ZDOCUMENTCHANGED}));
    EXPECT_EQ(manager().GetCurrentDocument(), first);
    EXPECT_FALSE(manager().CloseDocument(second));
    windows.told.clear();
    second.reset();
    close.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(New()->GetName(), "Untitled Media File 3");
}

TEST_F(ZDocumentManagerTest, FailedRequestChangesNothing)
{
    manager().HandleZMessage(messageWith<ZString>(ZFILENEW, "filename", "stubborn"));
    expectZException("Unregistered Class NobodyClass found in xml\n", [&] {
        manager().HandleZMessage(messageWith<ZString>(ZFILENEW, "filename", "Unknown"));
    });
    expectZException("Document type failed to instanciate.", [&] {
        manager().HandleZMessage(messageWith<ZString>(ZFILENEW, "filename", "Element"));
    });
    for (const std::int32_t id : {ZFILENEW, ZDOCNEXT, ZDOCCLOSE, ZFILEOPEN})
        EXPECT_THROW(manager().HandleZMessage(boost::make_shared<ZMessage>(id)), ZException) << id;
    EXPECT_TRUE(windows.told.empty());
    EXPECT_EQ(New()->GetName(), "Untitled Media File 1");
}

TEST_F(ZDocumentManagerTest, OpensAFileInADocumentOfTheFittingType)
{
    auto& files = dynamic_cast<ZFileDocumentManager&>(manager());
    const auto good = boost::make_shared<ZFile>("good", "/nowhere/good.stub", "STUB");
    const auto bad = boost::make_shared<ZFile>("bad", "/nowhere/bad.stub", "stub");

    files.HandleZMessage(messageWith<ZString>(ZFILEOPEN, "doctype", "Unknown", "file", good));
    ASSERT_EQ(files.GetDocumentCount(), 1);
    EXPECT_EQ(files.GetCurrentDocument()->GetTitle().ToNarrow(), "good");

    BoxRecorder recorder;
    files.OpenDocument(bad, files.GetTypes().front());
    EXPECT_EQ(files.GetDocumentCount(), 1);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].title, "Error Opening Document");
}
