// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/views/ZWindowManager.h"

#include "support/ExpectZException.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/views/WindowFixture.h"
#include "zlib/common/views/ZDialog.h"

using namespace orvane;

namespace
{

using Log = TestView::Log;

/// Two types; the second holds a manager of its own.
const std::string kWindowTypes =
    "<windowtypes>" + windowType(" child=\"true\" title=\"Front\"") +
    "<windowtype name=\"Side\" class=\"ZWindowClass\" hidden=\"true\">"
    "<rect left=\"0\" top=\"0\" width=\"10\" height=\"10\" />"
    "<windowmanagers><windowmanager name=\"inner\"><documenttypes>"
    "<documenttype docname=\"Note\" winname=\"Inner\" show=\"true\" /></documenttypes>"
    "<windowtypes><windowtype name=\"Inner\" class=\"ZWindowClass\" child=\"true\">"
    "<rect left=\"0\" top=\"0\" width=\"10\" height=\"10\" /></windowtype></windowtypes>"
    "</windowmanager></windowmanagers></windowtype></windowtypes>";

std::string manager(const std::string& maps)
{
    return "<windowmanager name=\"Windows\"><documenttypes>" + maps + "</documenttypes>" +
           kWindowTypes + "</windowmanager>";
}

struct ZWindowManagerTest : WindowFixture
{
    boost::shared_ptr<ZDocument> MakeDocument(const std::string& typeName)
    {
        const auto document =
            boost::make_shared<ZDocument>(xmlOf("<doctype name=\"D\"></doctype>"), mApp.get());
        document->SetTypeName(typeName);
        return document;
    }
    std::unique_ptr<ZWindowManager> Make(const std::string& maps)
    {
        return std::make_unique<ZWindowManager>(xmlOf(manager(maps)), mApp.get());
    }
    static void Tell(ZHandler& handler, std::int32_t id, const char* field,
                     const boost::shared_ptr<ZDocument>& document)
    {
        handler.HandleZMessage(messageWith(id, field, document));
    }
    void MakeWindow(ZWindowManager& windows, const char* name) const
    {
        windows.HandleZMessage(
            messageWith(ZWINNEW, "NewDocument", mDocument, "WindowName", ZString(name)));
    }

    const boost::shared_ptr<ZDocument> mDocument = MakeDocument("Song");
};

constexpr const char* kSongMap = "<documenttype docname=\"Song\" winname=\"Main\" />";

}  // namespace

TEST_F(ZWindowManagerTest, DocumentHasAWindowForEachMatchingMapUntilItCloses)
{
    const auto windows = Make(std::string(kSongMap) +
                              "<documenttype docclass=\"ZDocumentClass\" winname=\"Main\" />"
                              "<documenttype docname=\"Note\" winname=\"Main\" />"
                              "<documenttype docclass=\"ZAudioDocumentClass\" winname=\"Main\" />"
                              "<documenttype winname=\"Nobody\" />");
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    ASSERT_EQ(windows->GetWindowCount(), 2);
    const auto held = windows->GetWindow(1);
    EXPECT_EQ(held->GetDocument(), mDocument.get());
    EXPECT_EQ(View(*held, "a").GetDocument(), mDocument.get());
    EXPECT_FALSE(held->IsAttached());

    Tell(*windows, ZDOCUMENTNEW, "Document", MakeDocument("Other"));
    const auto other = windows->GetWindow(2);
    Tell(*windows, ZDOCUMENTCLOSED, "CloseDocument", mDocument);
    EXPECT_EQ(windows->GetWindowCount(), 1);
    EXPECT_EQ(windows->GetCurrentWindow(), other);
    EXPECT_EQ(held->GetDocument(), nullptr);
    EXPECT_EQ(View(*held, "a").GetDocument(), nullptr);
}

TEST_F(ZWindowManagerTest, WindowTakesOverADocumentOfItsType)
{
    const auto windows = Make("<documenttype docname=\"Song\" winname=\"Main\" show=\"true\" />");
    windows->AddWindowTypes(
        *xmlOf("<windowtypes>" +
               windowType(" child=\"true\"", "<documentchange><documenttype docname=\"Song\" />"
                                             "</documentchange>") +
               "</windowtypes>"));
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    ASSERT_EQ(windows->GetWindowCount(), 2);
    EXPECT_TRUE(windows->GetWindow(0)->IsAttached());
    const auto second = MakeDocument("Song");
    Tell(*windows, ZDOCUMENTCHANGED, "NewDocument", second);
    Tell(*windows, ZDOCUMENTCHANGED, "NewDocument", MakeDocument("Note"));
    EXPECT_EQ(windows->GetWindow(0)->GetDocument(), mDocument.get());
    EXPECT_EQ(windows->GetWindow(1)->GetDocument(), second.get());
}

TEST_F(ZWindowManagerTest, MakesWindowsByNameHereOrInNestedManagers)
{
    const auto windows = Make("<documenttype docname=\"Note\" winname=\"Side\" />");
    MakeWindow(*windows, "Nobody");
    EXPECT_EQ(windows->GetWindowCount(), 0);
    const auto note = MakeDocument("Note");
    Tell(*windows, ZDOCUMENTNEW, "Document", note);
    MakeWindow(*windows, "Main");
    ASSERT_EQ(windows->GetWindowCount(), 2);
    EXPECT_TRUE(windows->GetWindow(1)->IsAttached());
    EXPECT_EQ(windows->GetWindow(1)->GetDocument(), mDocument.get());

    const auto nested = windows->GetWindow(0)->GetWindowManagers();
    ASSERT_EQ(nested.size(), 1u);
    EXPECT_EQ(nested.front()->GetWindowCount(), 1);
    MakeWindow(*windows, "Inner");
    EXPECT_EQ(windows->GetWindowCount(), 2);
    EXPECT_EQ(nested.front()->GetWindowCount(), 2);
}

TEST_F(ZWindowManagerTest, AWindowThatIsNotVisibleWhenCreatedWaitsForShow)
{
    const auto windows = Make("<documenttype winname=\"Later\" show=\"true\" />");
    windows->AddWindowTypes(
        *xmlOf("<windowtypes><windowtype name=\"Later\" class=\"ZWindowClass\" child=\"true\" "
               "visiblewhencreated=\"false\"><rect left=\"0\" top=\"0\" width=\"10\" "
               "height=\"10\" /></windowtype></windowtypes>"));
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    ASSERT_EQ(windows->GetWindowCount(), 1);
    EXPECT_FALSE(windows->GetWindow(0)->IsAttached());
    windows->HandleZMessage(messageWith<ZString>(ZSHOW, "WindowName", ZString("Later")));
    EXPECT_TRUE(windows->GetWindow(0)->IsAttached());
}

TEST_F(ZWindowManagerTest, MessagesReachTheirWindows)
{
    const auto windows = Make(kSongMap);
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    Tell(*windows, ZDOCUMENTNEW, "Document", MakeDocument("Song"));
    const auto received = [&](std::int32_t index) {
        return View(*windows->GetWindow(index), "a").messages.back()->GetId();
    };
    Tell(*windows, ZDISABLE, "Document", mDocument);
    EXPECT_EQ(received(0), ZDISABLE);
    EXPECT_EQ(received(1), ZDOCUMENTNEW);
    windows->HandleZMessage(boost::make_shared<ZMessage>(ZQTEVENT));
    EXPECT_EQ(received(0), ZQTEVENT);
    EXPECT_EQ(received(1), ZQTEVENT);
    windows->HandleZMessage(
        messageWith<ZString>(ZWINDOUBLENORMALSIZE, "WindowName", ZString("Main")));
    EXPECT_EQ(windows->GetWindow(1)->GetWidth(), 200);

    windows->HandleZMessage(messageWith<ZString>(ZSHOW, "WindowTitle", ZString("Front")));
    EXPECT_TRUE(windows->GetWindow(0)->IsAttached());

    EXPECT_EQ(windows->GetTopLevel(0), 0) << "no window of the system";
    const auto dialog = messageWith<ZString>(ZSHOWDIALOG, "DialogName", "None", "SourceXML",
                                             ZString("XML"), "CmdWindow", std::int32_t{0});
    expectZException("WindowManager failed to load XML dialog resource.",
                     [&] { windows->HandleZMessage(dialog); });
}

TEST(ZDialogTest, RefusesResourcesThatAreNotSigned)
{
    constexpr std::string_view kBare = "<windowtype></windowtype>";
    constexpr std::string_view kUnsigned =
        "<?xml version=\"1.0\" standalone=\"yes\" ?>\n<windowtype></windowtype>\n";
    const std::array entries{
        ZResources::Entry{"XML", "Bare", kBare.begin(), kBare.end()},
        ZResources::Entry{"XML", "Unsigned", kUnsigned.begin(), kUnsigned.end()},
    };
    const ZResources resources{entries};
    const auto app = makePlugin(resources);
    expectZException("WindowManager failed to load XML dialog resource.",
                     [&] { ZDialog(*app, "None"); });
    expectZException("A resource file does not begin with a valid XML document declaration.",
                     [&] { ZDialog(*app, "Bare"); });
    expectZException(ZException::kBadSignature,
                     "XML setup file does not contain a valid signature.",
                     [&] { ZDialog(*app, "Unsigned"); });
}
