// SPDX-License-Identifier: GPL-3.0-or-later
// A stream plays while another thread and a user change everything. KESTRUNE_SOAK_SECONDS sets the
// length, two seconds otherwise.

#include "pluginwrappers/common/PluginEntry.h"
#include "support/PrivateFolder.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"
#include "support/TestHost.h"
#include "support/VirtualDisplayTest.h"
#include "zlib/common/documents/ZFileChooser.h"

#include <xkbcommon/xkbcommon-keysyms.h>

using namespace orvane;

namespace
{

using Clock = std::chrono::steady_clock;

constexpr float kRate = 44100.0f;
constexpr std::int32_t kLargestBlock = 2048;
// With room for the window at most of its scales.
constexpr xcb_rectangle_t kEditor{40, 30, 980, 730};
constexpr double kWindowWidth = 454.0;
constexpr std::uint8_t kRightButton = 3;

// Points of the window, in units, on its controls: menus, check boxes, the slider, buttons, a key,
// a box; on the meter, the ground, and the graph, which can be folded.
constexpr int kControls[][2] = {{100, 65},  {100, 121}, {240, 200}, {20, 98},   {20, 163},
                                {70, 204},  {50, 310},  {50, 352},  {200, 380}, {200, 300},
                                {420, 200}, {300, 60},  {200, 500}};

constexpr std::string_view kKeys = "acn5- \r\t\t_^<>[]{\b\x1b\x1b";

/// Ways from a context menu that has opened to an item or into a submenu: the scales, the graph,
/// values, resets, programs, memories, tracking, intonation, copied and pasted settings, about.
constexpr std::string_view kMenuPaths[] = {
    "w>", "w>1", "pppp", "e\r55", "r", "p>_", "ppp>_", "t>_", "i>__", "c", "pp", "s", "l", "a", ""};

void pause(unsigned long milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// An instance that plays a voice in blocks of random sizes on a thread of its own, in real time
/// and for stretches offline, with notes, automation and restarts between the blocks.
struct Stream
{
    Stream()
        : effect(openPlugin(TestHost::callback))
    {
        ask(effect, effSetSampleRate, 0, 0, nullptr, kRate);
        ask(effect, effSetBlockSize, 0, kLargestBlock);
        ask(effect, effMainsChanged, 0, 1);
        mThread = std::thread(&Stream::Play, this);
    }
    ~Stream()
    {
        mPlaying = false;
        mThread.join();
        ask(effect, effClose);
        EXPECT_EQ(mViolations, 0u);
        EXPECT_TRUE(mIsFinite);
    }

    AEffect* const effect;

private:
    void Play()
    {
        std::mt19937 random(3);
        const auto begin = Clock::now();
        double played = 0.0;  // seconds
        for (int block = 0; mPlaying; ++block) {
            const bool offline = block % 64 >= 56;
            TestHost::SetOffline(offline);
            sendMidi(effect, 0x90, block % 128, 100);
            effect->setParameter(effect, block % 7, static_cast<float>(block % 25) / 24.0f);
            for (const int on : {0, 1})
                if (block % 40 == 39)
                    ask(effect, effMainsChanged, 0, on);
            const auto frames = static_cast<std::int32_t>(random() % kLargestBlock) + 1;
            // Offline blocks are not guarded: they may tick.
            PlayBlock(frames, block % 2 == 0 ? effect->process : effect->processReplacing,
                      /*isGuarded*/ !offline);
            // A faster stream would become the clock and tick inside the blocks.
            played += frames / static_cast<double>(kRate);
            std::this_thread::sleep_until(begin + std::chrono::duration<double>(played));
        }
    }
    void PlayBlock(std::int32_t frames, AEffectProcessProc process, bool isGuarded)
    {
        std::vector<float> left(mVoice.begin(), mVoice.begin() + frames);
        std::vector<float> right = left;
        float* channels[] = {left.data(), right.data()};
        {
            RealtimeGuard guard;
            process(effect, channels, channels, frames);
            mViolations += isGuarded ? guard.violations() : 0;
        }
        mIsFinite = mIsFinite && std::ranges::all_of(left, [](float s) { return s * s < 64.0f; });
    }

    const std::vector<float> mVoice = harmonicTone(196.0, kRate, kLargestBlock);
    std::atomic<bool> mPlaying{true};
    unsigned mViolations = 0;
    bool mIsFinite = true;
    std::thread mThread;
};

/// Changes parameters at random until it is stopped.
void changeParameters(const std::stop_token& stop, AEffect* effect)
{
    std::mt19937 random(0);
    std::array<char, kVstMaxParamStrLen> text;
    while (!stop.stop_requested()) {
        const auto index = static_cast<std::int32_t>(random() % 7);
        effect->setParameter(effect, index, static_cast<float>(random() % 101) / 100.0f);
        effect->getParameter(effect, index);
        ask(effect, effGetParamDisplay, index, 0, text.data());
        pause(random() % 20);
    }
}

/// Works mouse, keys and context menus at random, the same in every run.
struct RandomUser
{

    /// Sets how many pixels a unit of the window has, which the user sees.
    void SetScale(double scale) { mScale = scale; }
    void Act()
    {
        const unsigned what = Below(100);
        if (what < 40)
            Move();
        else if (what < 60)
            ToggleButton(static_cast<std::uint8_t>(1 + Below(3)));
        else if (what < 66)
            mDisplay.Click(static_cast<std::uint8_t>(4 + Below(2)));  // the wheel
        else if (what < 86)
            TypeKey();
        else if (what < 92)
            UseContextMenu();
        else
            ReleaseAll();
        mDisplay.Sync();
        pause(Below(4));
    }
    void ReleaseAll()
    {
        for (const std::uint8_t button : std::exchange(mButtons, {}))
            mDisplay.Release(button);
    }

    unsigned Below(std::size_t end) { return static_cast<unsigned>(mRandom() % end); }
    /// Moves by a few pixels, as a drag does, or to a control or anywhere on the screen.
    void Move()
    {
        const unsigned where = Below(20);
        if (where < 10) {
            mX = std::clamp(mX + static_cast<int>(Below(41)) - 20, 0, 1000);
            mY = std::clamp(mY + static_cast<int>(Below(41)) - 20, 0, 760);
        } else if (where < 18) {
            return MoveToControl();
        } else {
            mX = static_cast<int>(Below(1024));
            mY = static_cast<int>(Below(768));
        }
        mDisplay.MovePointer(mX, mY);
    }
    void MoveToControl()
    {
        const auto [x, y] = kControls[Below(std::size(kControls))];
        mX = kEditor.x + static_cast<int>(x * mScale);
        mY = kEditor.y + static_cast<int>(y * mScale);
        mDisplay.MovePointer(mX, mY);
    }
    void ToggleButton(std::uint8_t button)
    {
        if (mButtons.erase(button) != 0) {
            mDisplay.Release(button);
            return;
        }
        mButtons.insert(button);
        mDisplay.Press(button);
    }
    void TypeKey()
    {
        const bool withShift = Below(4) == 0;
        if (withShift)
            mDisplay.PressKey(XKB_KEY_Shift_L);
        if (Below(20) == 0)
            mDisplay.TypeKey(withShift ? XKB_KEY_F10 : XKB_KEY_Menu);
        else
            mDisplay.Type(kKeys.substr(Below(kKeys.size()), 1));
        if (withShift)
            mDisplay.ReleaseKey(XKB_KEY_Shift_L);
    }
    /// Opens the menu, mostly waits for it, and chooses something in it, or closes it again.
    void UseContextMenu()
    {
        ReleaseAll();
        MoveToControl();
        mDisplay.Click(kRightButton);
        mDisplay.Sync();
        pause(Below(4) * 10);
        mDisplay.Type(kMenuPaths[Below(std::size(kMenuPaths))]);
        mDisplay.Type(std::string(Below(4), '_') + (Below(5) == 0 ? "\x1b" : "\r"));
    }

    DisplayProbe& mDisplay;
    std::mt19937 mRandom{7};
    int mX = 0;
    int mY = 0;
    double mScale = 1.0;
    std::set<std::uint8_t> mButtons{};
};

/// A host with the window of an instance that plays in one of its own. It makes room for it, or
/// refuses, and its file dialogs name one file to save to and to load, and now and then none.
struct SoakTest : VirtualDisplayTest
{
    void Begin() override
    {
        ZFileChooser::SetPresenter(
            [path = folder.Path("soak"), calls = 0](const ZFileRequest&) mutable {
                return ++calls % 3 == 0 ? std::nullopt : std::optional(path);
            });
        parent = probe->MakeWindow(kEditor);
        stream = std::make_unique<Stream>();
    }
    void TearDown() override { ZFileChooser::SetPresenter(nullptr); }

    void Open() const { ASSERT_EQ(openEditor(stream->effect, parent), 1); }
    void Close() const
    {
        ask(stream->effect, effEditClose);
        ASSERT_TRUE(GesturesEnd()) << "a window that closes ends the gestures in it: "
                                   << testing::PrintToString(TestHost::TakeNotes());
    }
    static bool GesturesEnd()
    {
        return waitFor([] { return TestHost::OpenGestures() == 0; });
    }
    const PrivateFolder folder;
    const EnvironmentVariable settings{"XDG_CONFIG_HOME", folder.Path().c_str()};
    const TestHost host;
    xcb_window_t parent = XCB_NONE;
    std::unique_ptr<Stream> stream;
};

}  // namespace

TEST_F(SoakTest, EveryGestureEndsWhateverMouseKeysAndContextMenusDo)
{
    Open();
    {
        const std::jthread automation(changeParameters, stream->effect);
        RandomUser user{*probe};
        int actions = 0;
        for (const auto end = Clock::now() + soakTime(); Clock::now() < end; ++actions) {
            user.Act();
            if (actions % 20 == 0) {
                TestHost::Answer(audioMasterSizeWindow, actions % 60 != 0 ? 1 : 0);
                ask(stream->effect, effEditIdle);
                user.SetScale(editorSize(stream->effect).first / kWindowWidth);
            }
            if (actions % 500 == 499) {
                Close();
                Open();
            }
        }
        user.ReleaseAll();
        RecordProperty("Actions", actions);
        RecordProperty("Sizes", TestHost::CountOf(audioMasterSizeWindow));
    }
    probe->MovePointer(1010, 20);
    probe->Type("\x1b\x1b\x1b");
    EXPECT_TRUE(GesturesEnd());
    EXPECT_TRUE(waitFor([&] { return probe->Grab(); })) << "the mouse is not grabbed any more";
    probe->Ungrab();
    ask(stream->effect, effEditClose);
    EXPECT_GT(TestHost::CountOf(audioMasterBeginEdit), 0);
}
