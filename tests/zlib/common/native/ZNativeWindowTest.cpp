// SPDX-License-Identifier: GPL-3.0-or-later
// Windows of the system on a display of the test's own, with a host's windows around them and a
// user's mouse and keys.

#include "zlib/common/native/ZNativeWindow.h"

#include "support/DisplayTest.h"
#include "zlib/common/drawing/ZImage.h"

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace orvane;

namespace
{

using Action = ZNativeMouseEvent::Action;

constexpr std::uint32_t kParentColor = 0x808080;
constexpr std::uint32_t kGreen = 0x20A040;

std::unique_ptr<ZImage> makeImage(std::int32_t width, std::int32_t height, std::uint32_t color)
{
    auto image = ZImage::Create(width, height);
    const std::vector<std::uint32_t> pixels(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0xFF000000U | color);
    image->WritePixels(pixels);
    return image;
}

/// Fills its window with a colour, and writes down what happens to it. Tests look at it under the
/// interface lock.
struct Client : ZNativeWindowClient
{
    explicit Client(const ZNativeWindow::Settings& settings)
        : window(ZNativeWindow::Create(settings, *this))
    {
    }

    void NativePaint(const ZRect& update) override
    {
        paints.push_back(update);
        if (window)
            window->Present(*image, update);
        Happen();
    }
    void NativeMouse(const ZNativeMouseEvent& event) override
    {
        mouse.push_back(event);
        Happen();
    }
    bool NativeKey(const ZNativeKeyEvent& event) override
    {
        keys.push_back(event);
        const bool taken = takesKeys;
        Happen();
        return taken;
    }
    void NativeMoved(const ZPoint& position) override { moves.push_back(position); }
    void NativeSized(std::int32_t width, std::int32_t height) override
    {
        sizes.push_back({width, height});
    }
    void NativeFocus(bool on) override { focused = on; }
    void NativeCloseRequested() override {}
    void NativeDestroyed() override
    {
        ++destroyed;
        Happen();
    }

    [[nodiscard]] std::vector<Action> Actions() const
    {
        std::vector<Action> actions;
        for (const ZNativeMouseEvent& each : mouse)
            actions.push_back(each.action);
        return actions;
    }

    std::unique_ptr<ZNativeWindow> window;
    std::unique_ptr<ZImage> image = makeImage(200, 100, kGreen);
    std::vector<ZRect> paints;
    std::vector<ZNativeMouseEvent> mouse;
    std::vector<ZNativeKeyEvent> keys;
    std::vector<ZPoint> moves;
    std::vector<ZPoint> sizes;
    bool takesKeys = true;
    bool focused = false;
    int destroyed = 0;
    std::function<void()> onNext;  // called once, at the end of what happens next

private:
    void Happen()
    {
        if (const auto callback = std::exchange(onNext, nullptr))
            callback();
    }
};

struct ZNativeWindowTest : DisplayTest
{
    void Begin() override { parent = probe->MakeWindow({100, 100, 400, 300}); }
    void TearDown() override
    {
        const ZInterfaceLock lock;
        client.reset();
    }
    /// A child at 10, 20 in the parent, 200 x 100, on screen at 110, 120.
    void MakeChild()
    {
        const ZInterfaceLock lock;
        client = std::make_unique<Client>(ChildSettings());
        ASSERT_TRUE(client->window);
    }
    void ShowChild()
    {
        if (!client)
            MakeChild();
        locked([&] { client->window->Show(); });
        ASSERT_TRUE(ShowsAt(115, 125, kGreen));
    }
    [[nodiscard]] ZNativeWindow::Settings
    ChildSettings(ZNativeWindow::Kind kind = ZNativeWindow::Kind::kChild) const
    {
        return {kind, parent, {10, 20, 210, 120}, ""};
    }
    /// The keys that reached the host's windows, at least one.
    [[nodiscard]] std::vector<std::uint32_t> HostKeys(std::uint8_t type = XCB_KEY_PRESS)
    {
        std::vector<std::uint32_t> keys;
        EXPECT_TRUE(waitFor([&] { return !(keys = probe->TakeKeys(type)).empty(); }));
        return keys;
    }
    [[nodiscard]] bool HasKeys(std::size_t count) const
    {
        return Comes([&] { return client->keys.size() == count; });
    }
    [[nodiscard]] bool ActionsAre(const std::vector<Action>& actions) const
    {
        return Comes([&] { return client->Actions() == actions; });
    }

    xcb_window_t parent = XCB_NONE;
    std::unique_ptr<Client> client;
};

}  // namespace

TEST_F(ZNativeWindowTest, PaintsWhatIsUncoveredOrInvalid)
{
    ShowChild();
    const xcb_window_t cover = probe->MakeWindow({120, 130, 30, 20});
    locked([&] { client->paints.clear(); });
    probe->Destroy(cover);
    ASSERT_TRUE(Comes([&] { return !client->paints.empty(); }));
    EXPECT_TRUE(ShowsAt(125, 135, kGreen));
    const ZInterfaceLock lock;
    EXPECT_EQ(client->paints, (std::vector<ZRect>{{10, 10, 40, 30}}));
    client->paints.clear();
    client->window->Hide();
    client->window->Invalidate({5, 5, 10, 10});
    client->window->Invalidate({50, 60, 70, 80});
    client->window->Show();
    client->window->Update();
    client->window->Update();
    EXPECT_EQ(client->paints, (std::vector<ZRect>{{5, 5, 70, 80}})) << "without the server's word";
}

TEST_F(ZNativeWindowTest, ParentMayHaveAnotherDepth)
{
    parent = probe->MakeDeepWindow({100, 100, 400, 300});
    if (parent == XCB_NONE)
        GTEST_SKIP() << "no such window on this server";
    ShowChild();
}

TEST_F(ZNativeWindowTest, ReportsMovesAndSizes)
{
    ShowChild();
    locked([&] { client->window->SetRect({30, 40, 180, 120}); });
    EXPECT_TRUE(Comes([&] { return client->sizes == std::vector<ZPoint>{{150, 80}}; }));
    EXPECT_EQ(client->moves, (std::vector<ZPoint>{{30, 40}}));
    EXPECT_TRUE(ShowsAt(111, 121, kParentColor));
}

TEST_F(ZNativeWindowTest, ReportsButtonsWheelAndHeldKeys)
{
    ShowChild();
    probe->MovePointer(120, 140);
    ASSERT_TRUE(ActionsAre({Action::kMove}));
    EXPECT_EQ(client->mouse[0].position, (ZPoint{10, 20}));
    EXPECT_EQ(client->mouse[0].modifiers, 1u);
    for (std::uint8_t button = 3; button <= 6; ++button)
        probe->Click(button);
    const std::uint32_t held[] = {XKB_KEY_Shift_L, XKB_KEY_Control_L, XKB_KEY_Alt_L};
    for (const std::uint32_t key : held)
        probe->PressKey(key);
    probe->Click(2);
    for (const std::uint32_t key : held)
        probe->ReleaseKey(key);
    probe->MovePointer(99, 99);
    ASSERT_TRUE(ActionsAre({Action::kMove, Action::kContext, Action::kContextUp, Action::kWheel,
                            Action::kWheel, Action::kDown, Action::kUp, Action::kLeave}));
    EXPECT_EQ(client->mouse[3].wheelNotches, 1);
    EXPECT_EQ(client->mouse[4].wheelNotches, -1);
    EXPECT_EQ(client->mouse[5].modifiers, 1u | 2u | 8u | 0x10u);
}

TEST_F(ZNativeWindowTest, CaptureBringsTheMouseFromEverywhere)
{
    ShowChild();
    static_cast<void>(probe->MakeWindow({600, 100, 100, 100}));
    probe->MovePointer(120, 140);
    ASSERT_TRUE(ActionsAre({Action::kMove}));
    locked([&] { client->onNext = [&] { EXPECT_TRUE(client->window->SetCapture(true)); }; });
    probe->Press(1);
    ASSERT_TRUE(ActionsAre({Action::kMove, Action::kDown}));
    probe->Release(1);
    probe->MovePointer(610, 150);
    ASSERT_TRUE(ActionsAre({Action::kMove, Action::kDown, Action::kUp, Action::kMove}));
    EXPECT_EQ(client->mouse[3].position, (ZPoint{500, 30}));
    EXPECT_FALSE(probe->Grab()) << "the capture is the window's";
    locked([&] { client->window->SetCapture(false); });
    ASSERT_TRUE(waitFor([&] { return probe->Grab(); }));
    const ZInterfaceLock lock;
    EXPECT_FALSE(client->window->SetCapture(true)) << "another program has the mouse";
    client->window->SetCapture(false);
}

TEST_F(ZNativeWindowTest, HeldButtonIsReleasedWhenTheWindowHides)
{
    ShowChild();
    probe->MovePointer(120, 140);
    locked([&] { client->onNext = [&] { client->window->SetCapture(true); }; });
    probe->Press(1);
    ASSERT_TRUE(ActionsAre({Action::kMove, Action::kDown}));
    probe->Hide(parent);
    locked([&] { client->window->Hide(); });
    ASSERT_TRUE(Comes([&] { return client->Actions().back() == Action::kUp; }));
    EXPECT_TRUE(probe->Grab());
}

TEST_F(ZNativeWindowTest, KeysComeWithCodeAndText)
{
    ShowChild();
    locked([&] { client->window->SetFocus(); });
    ASSERT_TRUE(Comes([&] { return client->focused; }));
    probe->Type("a");
    probe->TypeWith(XKB_KEY_Shift_L, XKB_KEY_q);
    probe->TypeWith(XKB_KEY_Control_L, XKB_KEY_z);
    probe->Type("<\r");
    ASSERT_TRUE(HasKeys(7));
    std::string told;
    for (const ZNativeKeyEvent& key : client->keys)
        told += std::to_string(key.code) + (key.shift ? "s" : "") + (key.control ? "c" : "") + "'" +
                key.text.ToNarrow() + "' ";
    EXPECT_EQ(told, "65'a' 16'' 81s'Q' 17'' 90c'' 37'' 13'' ");
    EXPECT_TRUE(probe->TakeKeys().empty()) << "all were taken";

    probe->ChangeKey(XKB_KEY_q, XKB_KEY_adiaeresis);
    probe->TypeKey(XKB_KEY_q);
    ASSERT_TRUE(HasKeys(8));
    EXPECT_EQ(client->keys.back().text.ToNarrow(), "\xC3\xA4") << "the user's new map";
    probe->ChangeKey(XKB_KEY_w, XKB_KEY_dead_acute);
    probe->Type("wee");
    ASSERT_TRUE(HasKeys(11));
    EXPECT_TRUE(client->keys[8].text.IsEmpty());
    EXPECT_EQ(client->keys[9].text.ToNarrow(), "\xC3\xA9") << "an accent and its letter";
    EXPECT_EQ(client->keys[10].text.ToNarrow(), "e");
    probe->Focus(parent);
    ASSERT_TRUE(Comes([&] { return !client->focused; }));
}

TEST_F(ZNativeWindowTest, UnusedKeysReachTheHostOnce)
{
    MakeChild();
    client->takesKeys = false;
    ShowChild();
    for (const bool ours : {true, false}) {
        // The pointer over the window brings it the keys of the host's focus, too.
        probe->MovePointer(120, 140);
        probe->Focus(ours ? static_cast<xcb_window_t>(client->window->GetHandle()) : parent);
        probe->TypeKey(XKB_KEY_space);
        ASSERT_TRUE(HasKeys(ours ? 1 : 2));
        EXPECT_EQ(HostKeys(), (std::vector<std::uint32_t>{XKB_KEY_space}));
    }
    probe->SendKey(static_cast<xcb_window_t>(client->window->GetHandle()), XKB_KEY_space);
    ASSERT_TRUE(HasKeys(3));
    EXPECT_TRUE(probe->TakeKeys().empty()) << "a sent key may be one that was passed on";
}

TEST_F(ZNativeWindowTest, ReleaseOfAClosingKeyDoesNotReachTheHost)
{
    MakeChild();
    client->takesKeys = false;
    ShowChild();
    std::unique_ptr<Client> popup;
    {
        const ZInterfaceLock lock;
        popup = std::make_unique<Client>(ChildSettings(ZNativeWindow::Kind::kPopup));
        popup->window->Show();
        popup->window->SetFocus();
    }
    ASSERT_TRUE(Comes([&] { return popup->focused && !popup->paints.empty(); }));
    locked([&] { popup->onNext = [&] { popup->window.reset(); }; });
    probe->PressKey(XKB_KEY_Return);
    ASSERT_TRUE(Comes([&] { return popup->keys.size() == 1; }));
    probe->Focus(static_cast<xcb_window_t>(client->window->GetHandle()));
    probe->ReleaseKey(XKB_KEY_Return);
    probe->TypeKey(XKB_KEY_space);
    EXPECT_EQ(HostKeys(XCB_KEY_RELEASE), (std::vector<std::uint32_t>{XKB_KEY_space}));
    const ZInterfaceLock lock;
    popup.reset();
}

TEST_F(ZNativeWindowTest, EventsQueuedBehindAReplyArrive)
{
    MakeChild();
    // On the loop's own thread, which cannot see meanwhile that there was something to read.
    thread.GetLoop().Post([&] {
        client->window->Show();
        static_cast<void>(waitFor([&] {
            static_cast<void>(client->window->ToScreen({}));
            client->window->Present(*client->image, {0, 0, 200, 100});
            return probe->PixelAt(115, 125) == kGreen;
        }));
    });
    EXPECT_TRUE(Comes([&] { return !client->paints.empty(); }));
}

TEST_F(ZNativeWindowTest, ClientMayDestroyItsWindowInAnyEvent)
{
    const std::vector<std::function<void()>> causes{
        [&] { client->window->Show(); },
        [&] {
            client->window->Show();
            probe->MovePointer(120, 140);
        },
        [&] { probe->Destroy(parent); },
    };
    for (const auto& cause : causes) {
        MakeChild();
        const ZInterfaceLock lock;
        client->onNext = [&] { client->window.reset(); };
        cause();
        const ZInterfaceUnlock released;
        EXPECT_TRUE(Comes([&] { return client->window == nullptr; }));
        EXPECT_TRUE(waitFor([&] { return probe->CountClients() == 0; })) << "the last one's end";
        probe->MovePointer(0, 0);
    }
}

TEST_F(ZNativeWindowTest, WindowsSurviveTheEndOfTheServer)
{
    ShowChild();
    {
        const ZInterfaceLock lock;
        auto second = std::make_unique<Client>(ChildSettings());
        probe.reset();
        display->Kill();
        // Nobody has noticed yet: these write to a socket that is closed.
        for (int i = 0; i < 100; ++i) {
            client->window->Present(*client->image, {0, 0, 200, 100});
            static_cast<void>(second->window->ToScreen({}));
        }
        const ZInterfaceUnlock released;
        EXPECT_TRUE(Comes([&] { return client->destroyed == 1 && second->destroyed == 1; }));
    }
    {
        const ZInterfaceLock lock;
        EXPECT_FALSE(client->window->IsVisible());
        client->window->Show();
        EXPECT_EQ(client->window->ToScreen({3, 4}), (ZPoint{3, 4}));
    }
    StartDisplay();
    parent = probe->MakeWindow({100, 100, 400, 300});
    const auto old = std::move(client);
    ShowChild();
    const ZInterfaceLock lock;
    old->window.reset();
    EXPECT_TRUE(client->window->IsAlive());
}

TEST_F(ZNativeWindowTest, ReportsAMissingParentOrDisplay)
{
    MakeChild();
    const ZInterfaceLock lock;
    const auto linesOf = [&](ZNativeHandle handle) {
        testing::internal::CaptureStderr();
        EXPECT_FALSE(ZNativeWindow::Create(
            {ZNativeWindow::Kind::kChild, handle, {0, 0, 10, 10}, ""}, *client));
        const std::string told = testing::internal::GetCapturedStderr();
        return std::count(told.begin(), told.end(), '\n');
    };
    EXPECT_EQ(linesOf(0x123456), 1);
    EXPECT_TRUE(client->window->IsAlive());
    client->window.reset();
    setenv("DISPLAY", ":none", 1);
    EXPECT_EQ(linesOf(parent), 1);
    EXPECT_EQ(linesOf(parent), 0) << "it has been told";
}

TEST_F(ZNativeWindowTest, DialogTellsTheWindowManagerWhatItIs)
{
    const ZInterfaceLock lock;
    client = std::make_unique<Client>(ZNativeWindow::Settings{
        ZNativeWindow::Kind::kDialog, parent, {300, 200, 500, 300}, "Name"});
    const auto window = static_cast<xcb_window_t>(client->window->GetHandle());
    client->window->SetTitle("Caf\xC3\xA9");
    EXPECT_TRUE(waitFor([&] { return probe->GetProperty(window, "_NET_WM_NAME").size() == 5; }));
    EXPECT_EQ(probe->GetProperty(window, "WM_TRANSIENT_FOR").size(), 4u);
    EXPECT_FALSE(probe->GetProperty(window, "WM_NORMAL_HINTS").empty());
}
