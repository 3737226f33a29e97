#include "zlib/common/ZWindowManager.h"

#include "support/ExpectZException.h"
#include "zlib/WindowFixture.h"
#include "zlib/common/ZDocument.h"
#include "zlib/common/ZDocumentManager.h"
#include "zlib/common/ZInterfaceLock.h"

#include <gtest/gtest.h>

namespace orvane
{

namespace
{

using Log = std::vector<std::string>;

const std::string kNestedProbe = probe("n", "left=\"0\" top=\"0\" width=\"9\" height=\"9\"");

/// Two types, of which one is named twice; the second holds a manager of its own.
const std::string kWindowTypes =
    "<windowtypes>" + windowType(" child=\"true\" title=\"Front\"") +
    "<windowtype name=\"Side\" class=\"ZWindowClass\" hidden=\"true\" title=\"Beside\">"
    "<rect left=\"0\" top=\"0\" width=\"10\" height=\"10\" />"
    "<windowmanagers><windowmanager name=\"inner\"><documenttypes>"
    "<documenttype docname=\"Note\" winname=\"Inner\" show=\"true\" /></documenttypes>"
    "<windowtypes><windowtype name=\"Inner\" class=\"ZWindowClass\" child=\"true\">"
    "<rect left=\"0\" top=\"0\" width=\"10\" height=\"10\" /><subviews>" +
    kNestedProbe +
    "</subviews></windowtype></windowtypes></windowmanager></windowmanagers></windowtype>"
    "</windowtypes>";

std::string manager(const std::string& maps)
{
    return "<windowmanager name=\"Windows\"><documenttypes>" + maps + "</documenttypes>" +
           kWindowTypes + "</windowmanager>";
}

class ZWindowManagerTest : public testing::Test
{
protected:
    ZWindowManagerTest()
    {
        registerWindowClasses(mApp->GetClassRegistry());
        mApp->SetWindowKeeperMaker(&ZWindowManager::Make);
        start(*mApp);
        mDocument = MakeDocument("Song");
        ProbeView::log.clear();
    }

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
        handler.HandleZMessage(messageWith<boost::shared_ptr<ZDocument>>(id, field, document));
    }
    boost::shared_ptr<ZMessage> NewWindow(const std::string& name) const
    {
        auto message = boost::make_shared<ZMessage>(ZWINNEW);
        message->Add<boost::shared_ptr<ZDocument>>("NewDocument", mDocument);
        message->Add<ZString>("WindowName", ZString(name));
        return message;
    }

    const ZInterfaceLock mLock;
    const TestResources mResources{""};
    const std::unique_ptr<ZPlugin> mApp = makePlugin(mResources);
    boost::shared_ptr<ZDocument> mDocument;
};

constexpr const char* kSongMap = "<documenttype docname=\"Song\" winname=\"Main\" />";

}  // namespace

TEST_F(ZWindowManagerTest, ANewDocumentGetsAWindowForEachMapThatMatches)
{
    TraceRecorder trace;
    const auto windows = Make(std::string(kSongMap) +
                              "<documenttype docclass=\"ZDocumentClass\" winname=\"Main\" />"
                              "<documenttype docname=\"Note\" winname=\"Main\" />"
                              "<documenttype docclass=\"ZAudioDocumentClass\" winname=\"Main\" />"
                              "<documenttype winname=\"Nobody\" />");
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    ASSERT_EQ(windows->GetWindowCount(), 2);
    EXPECT_EQ(windows->GetCurrentWindow(), windows->GetWindow(0));
    EXPECT_EQ(windows->GetWindow(2), nullptr);
    const auto window = windows->GetWindow(1);
    EXPECT_EQ(window->GetDocument(), mDocument.get());
    EXPECT_EQ(window->GetRootView()->FindSubview("a")->GetDocument(), mDocument.get());
    EXPECT_FALSE(window->IsAttached());
    EXPECT_EQ(window->GetNativeWindow(), nullptr);
    EXPECT_TRUE(trace.Has("Creating window class = ZWindowClass name = Main\n"));
}

TEST_F(ZWindowManagerTest, ADocumentOfNoMapAndNoDocumentGetNoWindow)
{
    TraceRecorder trace;
    const auto windows = Make(kSongMap);
    Tell(*windows, ZDOCUMENTNEW, "Document", MakeDocument("Note"));
    Tell(*windows, ZDOCUMENTNEW, "Document", nullptr);
    EXPECT_EQ(windows->GetWindowCount(), 0);
    EXPECT_EQ(windows->GetCurrentWindow(), nullptr);
    EXPECT_TRUE(trace.Has("\nError: ZWindowManager::HandleZMessage [ZDOCUMENTNEW] 'New document "
                          "actually NULL'\n"));
}

TEST_F(ZWindowManagerTest, AWindowTakesOverADocumentThatItsTypeNames)
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
    EXPECT_EQ(windows->GetWindow(0)->GetDocument(), mDocument.get());
    EXPECT_EQ(windows->GetWindow(1)->GetDocument(), second.get());
    Tell(*windows, ZDOCUMENTCHANGED, "NewDocument", MakeDocument("Note"));
    EXPECT_EQ(windows->GetWindow(1)->GetDocument(), second.get());
}

TEST_F(ZWindowManagerTest, TheWindowsOfAClosedDocumentGoAndLetGoOfIt)
{
    TraceRecorder trace;
    const auto windows = Make(kSongMap);
    const auto second = MakeDocument("Song");
    for (const auto& document : {mDocument, second, mDocument})
        Tell(*windows, ZDOCUMENTNEW, "Document", document);
    const auto held = windows->GetWindow(0);
    const auto other = windows->GetWindow(1);
    Tell(*windows, ZDOCUMENTCLOSED, "CloseDocument", mDocument);
    ASSERT_EQ(windows->GetWindowCount(), 1);
    EXPECT_EQ(windows->GetCurrentWindow(), other);
    EXPECT_EQ(held->GetDocument(), nullptr);
    EXPECT_EQ(held->GetRootView()->FindSubview("a")->GetDocument(), nullptr);
    EXPECT_TRUE(trace.Has("Removing window Main\n"));
}

TEST_F(ZWindowManagerTest, AWindowIsMadeByItsName)
{
    const auto windows = Make("");
    windows->HandleZMessage(NewWindow("Main"));
    ASSERT_EQ(windows->GetWindowCount(), 1);
    EXPECT_EQ(ProbeView::TakeLog(), (Log{"a:attached", "b:attached"}));
    EXPECT_EQ(windows->GetWindow(0)->GetDocument(), mDocument.get());

    windows->HandleZMessage(NewWindow("Nobody"));
    windows->HandleZMessage(NewWindow("Inner"));
    EXPECT_EQ(windows->GetWindowCount(), 1);
    EXPECT_EQ(ProbeView::TakeLog(), Log{});
}

TEST_F(ZWindowManagerTest, NestedManagersGetWhatTheirWindowsManagerHasNoUseFor)
{
    const auto windows = Make("<documenttype docname=\"Note\" winname=\"Side\" />");
    const auto note = MakeDocument("Note");
    Tell(*windows, ZDOCUMENTNEW, "Document", note);
    ASSERT_EQ(windows->GetWindowCount(), 1);
    const auto nested = windows->GetWindow(0)->GetWindowManagers();
    ASSERT_EQ(nested.size(), 1u);
    EXPECT_EQ(nested.front()->GetWindowCount(), 1);
    EXPECT_EQ(ProbeView::TakeLog(), Log{"n:attached"});
    windows->HandleZMessage(NewWindow("Inner"));
    EXPECT_EQ(windows->GetWindowCount(), 1);
    EXPECT_EQ(nested.front()->GetWindowCount(), 2);
    windows->HandleZMessage(boost::make_shared<ZMessage>(ZMODALDISABLE));
    EXPECT_TRUE(windows->GetWindow(0)->IsModalDisabled());
    EXPECT_TRUE(nested.front()->GetWindow(1)->IsModalDisabled());
    Tell(*windows, ZDOCUMENTCLOSED, "CloseDocument", note);
    EXPECT_EQ(windows->GetWindowCount(), 0);
}

TEST_F(ZWindowManagerTest, ShowsWindowsByNameOrTitle)
{
    const auto windows = Make(kSongMap);
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    const auto show = [&](const char* field, const char* text) {
        windows->HandleZMessage(messageWith<ZString>(ZSHOW, field, ZString(text)));
        return windows->GetWindow(0)->IsAttached();
    };
    EXPECT_FALSE(show("WindowName", "Front"));
    EXPECT_FALSE(show("WindowTitle", "Main"));
    EXPECT_TRUE(show("WindowTitle", "Front"));
    expectZException(-1, "Couldn't find WindowName or WindowTitle in message",
                     [&] { windows->HandleZMessage(boost::make_shared<ZMessage>(ZSHOW)); });
}

TEST_F(ZWindowManagerTest, EnablingReachesTheWindowsOfTheDocumentAndOtherMessagesAll)
{
    const auto windows = Make(kSongMap);
    Tell(*windows, ZDOCUMENTNEW, "Document", mDocument);
    Tell(*windows, ZDOCUMENTNEW, "Document", MakeDocument("Song"));
    const auto received = [&](std::int32_t index) {
        auto view = windows->GetWindow(index)->GetRootView()->FindSubview("a");
        return dynamic_cast<ProbeView&>(*view).messages.back()->GetId();
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
    for (const std::int32_t id : {ZWINFORCEREDRAW, ZWINRESTORE, ZWINTILEH})
        windows->HandleZMessage(boost::make_shared<ZMessage>(id));
    EXPECT_EQ(received(0), ZQTEVENT);
}

TEST_F(ZWindowManagerTest, AMissingFieldIsTold)
{
    const auto windows = Make(kSongMap);
    const auto expectMissing = [&](const boost::shared_ptr<const ZMessage>& message,
                                   const char* text) {
        expectZException(-1, text, [&] { windows->HandleZMessage(message); });
    };
    const auto bare = [](std::int32_t id) { return boost::make_shared<ZMessage>(id); };
    expectMissing(bare(ZDOCUMENTNEW), "Couldn't find Document in message");
    expectMissing(bare(ZDOCUMENTCHANGED), "Couldn't find NewDocument in msg");
    expectMissing(bare(ZDOCUMENTCLOSED), "Couldn't find CloseDocument in message");
    expectMissing(bare(ZWINNEW), "Couldn't find NewDocument in message");
    expectMissing(messageWith<boost::shared_ptr<ZDocument>>(ZWINNEW, "NewDocument", mDocument),
                  "Couldn't find WindowName in message");
    expectMissing(bare(ZWINNORMALSIZE), "Couldn't find WindowName in message");
    expectMissing(bare(ZENABLE), "Couldn't find Document in message");
}

TEST_F(ZWindowManagerTest, AnotherTagIsTracedAndPassedOver)
{
    TraceRecorder trace;
    const auto other = xmlOf("<other><other /></other>");
    ZWindowManager windows(other, mApp.get());
    windows.AddDocumentMapTypes(*other);
    windows.AddWindowTypes(*other);
    windows.AddDocumentMapTypes(*xmlOf("<documenttypes><other /></documenttypes>"));
    windows.AddWindowTypes(*xmlOf("<windowtypes><other /></windowtypes>"));
    ZWindow window(xmlOf(windowType()), mApp.get());
    window.AddDocumentTypes(*other);
    window.AddWindowManagers(*other);
    for (const char* const text :
         {"ZWindowManager::ZWindowManager,  XML tag is not a <windowmanager>",
          "ZWindowManager::AddDocumentMapTypes,  XML tag is not a <documenttypes>",
          "ZWindowType::AddWindowTypes,  XML tag is not a <windowtypes>",
          "ZDocumentMap::ZDocumentMap,  XML tag is not a <documenttype>",
          "ZWindowType::ZWindowType,  XML tag is not a <windowtype>",
          "ZWindowType::AddDocumentTypes,  XML tag is not a <documentchange>",
          "ZWindow::AddWindowManagers,  XML tag is not a <windowmanagers>"})
        EXPECT_TRUE(trace.Has("\nError: " + std::string(text) + ".\n")) << text;
}

TEST_F(ZWindowManagerTest, AnApplicationOwnsItsManagerAndHasAMainWindow)
{
    mApp->AddWindowManager(xmlOf(manager(kSongMap)));
    EXPECT_EQ(mApp->GetMainWindow(), nullptr);
    Tell(*mApp->GetWindowManager(), ZDOCUMENTNEW, "Document", mDocument);
    ASSERT_NE(mApp->GetMainWindow(), nullptr);
    EXPECT_EQ(mApp->GetMainWindow()->GetName(), "Main");
}

TEST_F(ZWindowManagerTest, ATypeOfNoWindowIsAnError)
{
    const auto windows = Make("<documenttype winname=\"Odd\" />");
    windows->AddWindowTypes(
        *xmlOf("<windowtypes><windowtype name=\"Odd\" class=\"ProbeViewClass\" /></windowtypes>"));
    expectZException(-1, "Class 'ProbeViewClass' of window type 'Odd' is no window",
                     [&] { Tell(*windows, ZDOCUMENTNEW, "Document", mDocument); });
    EXPECT_EQ(windows->GetWindowCount(), 0);
}

}  // namespace orvane
