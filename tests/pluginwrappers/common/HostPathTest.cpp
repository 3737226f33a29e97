// SPDX-License-Identifier: GPL-3.0-or-later
// Sound, events and notifications between a host and the plug-in, over a small application.

#include "pluginwrappers/common/ProductInstance.h"
#include "support/BoxRecorder.h"
#include "support/Eventually.h"
#include "support/Signals.h"
#include "support/SmallPlugin.h"
#include "support/Test.h"
#include "zdsp/common/ZVectorSupport.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <boost/smart_ptr/weak_ptr.hpp>

#include <future>

using namespace orvane;

namespace
{

using namespace std::chrono_literals;
using Notes = std::vector<std::string>;
using Stereo = std::array<std::vector<float>, 2>;

std::array<float*, 2> pointersTo(Stereo& block)
{
    return {block[0].data(), block[1].data()};
}

Stereo noise(int frames, unsigned seed)
{
    return {whiteNoise(1.0f, frames, seed), whiteNoise(1.0f, frames, seed + 1000)};
}

Stereo ones(std::size_t frames)
{
    return {std::vector<float>(frames, 1.0f), std::vector<float>(frames, 1.0f)};
}

struct HostPathTest : testing::Test
{
    static constexpr std::int32_t kLatency = 441;  // at 44.1 kHz

    HostPathTest() { Open(); }
    ~HostPathTest() override
    {
        if (!document.expired())
            Ask(effClose);
    }

    /// Opens an effect with one parameter, the gain, from -1 to 1.
    void Open()
    {
        TestHost::On(TestHost::kEveryCall,
                     [](AEffect*) { EXPECT_FALSE(ZInterfaceLock::IsHeld()); });
        const ZInterfaceLock lock;
        auto made = SmallPlugin::Make();
        app = made.get();
        looper = app->GetAudioManager()->GetSignalLooper().get();
        document = made->Document();
        const auto element = app->Gain();
        element->SetExposed(true);
        app->AddExposedElement(element);
        gain = element.get();
        app->Tick();
        auto* const plugin = new ZVSTPlugin(TestHost::callback, std::move(made));
        plugin->SetWantsMidi(true);
        effect = plugin->getAeffect();
    }

    std::intptr_t Ask(std::int32_t opcode, std::intptr_t value = 0, void* ptr = nullptr,
                      float opt = 0.0f)
    {
        return ask(effect, opcode, 0, value, ptr, opt);
    }
    void Begin(std::int32_t blockSize)
    {
        Ask(effSetBlockSize, blockSize);
        Ask(effMainsChanged, 1);
    }
    Stereo Replace(Stereo& in)
    {
        Stereo out = noise(static_cast<int>(in[0].size()), 99);
        effect->processReplacing(effect, pointersTo(in).data(), pointersTo(out).data(),
                                 static_cast<std::int32_t>(in[0].size()));
        return out;
    }
    /// Sets the gain as the user does.
    void SetGain(float value) const
    {
        locked([&] { gain->SetZFloat(value, false); });
    }
    void StartTicking()
    {
        locked([&] { app->InitLooper(); });
    }
    static bool HostIsNotified()
    {
        return eventually([] { return TestHost::CountOf(audioMasterAutomate) > 0; });
    }
    void ExpectDeletion() const
    {
        EXPECT_TRUE(eventually([this] { return document.expired(); }));
    }
    /// Returns the gain that is in force, by a block of ones.
    float HeardGain()
    {
        Stereo in = ones(kLatency);
        Replace(in);
        return Replace(in)[0].back();
    }

    const TestHost host;
    SmallPlugin* app = nullptr;
    ZSignalLooper* looper = nullptr;
    AEffect* effect = nullptr;
    ZElement* gain = nullptr;  // the document's, which a thread of the library may delete
    boost::weak_ptr<SmallDocument> document;
};

using HostCallsTest = HostPathTest;

struct StateNoticeTest : testing::Test
{
    void SetUp() override
    {
        locked([&] { product.app->InitLooper(); });
        WaitForTicks();
        TestHost::TakeNotes();
    }

    /// Waits until changes are delivered and reported, also those that follow from them.
    static void WaitForTicks() { std::this_thread::sleep_for(300ms); }
    static int Notices() { return TestHost::CountOf(audioMasterUpdateDisplay); }

    const TestHost host;
    const ProductInstance product{TestHost::callback};
};

}  // namespace

TEST_F(HostPathTest, ADescriptionWithoutAWindowHasNoEditor)
{
    EXPECT_EQ(effect->flags, 0x38);  // of mono, replacing and chunks
    void* rect = nullptr;
    EXPECT_EQ(Ask(effEditGetRect, 0, &rect), 0);
    EXPECT_EQ(rect, nullptr);
}

TEST_F(HostPathTest, ProcessAddsInDoublePrecisionWhatProcessReplacingWouldWrite)
{
    Begin(441);
    Stereo in = noise(441, 4);
    Replace(in);
    Stereo sum = noise(441, 5);
    const Stereo before = sum;
    effect->process(effect, pointersTo(in).data(), pointersTo(sum).data(), 441);
    for (std::size_t i = 0; i < 441; ++i)
        ASSERT_EQ(sum[1][i], static_cast<float>(static_cast<double>(before[1][i]) +
                                                static_cast<double>(in[1][i])));
}

TEST_F(HostPathTest, InputsAndOutputsMayBeTheSameArraysCrosswise)
{
    Begin(441);
    Stereo block = noise(441, 6);
    const Stereo before = block;
    std::array<float*, 2> out{block[1].data(), block[0].data()};
    effect->processReplacing(effect, pointersTo(block).data(), out.data(), 441);
    EXPECT_EQ(Replace(block), before);
}

TEST_F(HostPathTest, MissingArraysAndBlockSizesDoNoHarm)
{
    Stereo in = noise(100, 7);
    EXPECT_EQ(Replace(in)[0], std::vector<float>(100, 0.0f)) << "no block size yet";
    Begin(441);
    std::array<float*, 2> none{nullptr, nullptr};
    std::array<float*, 2> one{in[0].data(), nullptr};
    effect->processReplacing(effect, none.data(), one.data(), 100);
    effect->processReplacing(effect, nullptr, nullptr, 100);
    effect->processReplacing(effect, one.data(), none.data(), 100);
    for (const std::int32_t frames : {0, -1, INT32_MIN})
        effect->processReplacing(effect, one.data(), one.data(), frames);
    EXPECT_EQ(looper->InputFree(0), looper->InputFree(1)) << "the channels stay in step";
    EXPECT_EQ(looper->OutputAvailable(0), looper->OutputAvailable(1));
}

TEST_F(HostPathTest, NaNInfinityAndDenormalsComeOutAsZero)
{
    Begin(441);
    Stereo in = ones(441);
    Stereo expected = ones(441);
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const auto& [place, value] :
         {std::pair{3, std::nanf("")},
          {4, kInfinity},
          {5, -kInfinity},
          {6, ZVectorSupport::ProcessorClass() != ZVectorSupport::kPlain ? 1e-40f : kInfinity},
          {440, std::nanf("")}})
    {
        in[1][static_cast<std::size_t>(place)] = value;
        expected[1][static_cast<std::size_t>(place)] = 0.0f;
    }
    Replace(in);
    EXPECT_EQ(Replace(in), expected);
    volatile float tiny = 1e-40f;
    EXPECT_GT(tiny * 1.0f, 0.0f) << "the host's floating-point mode is restored";
}

TEST_F(HostPathTest, ABlockLongerThanAnnouncedIsReportedOnTheInterfaceThread)
{
    BoxRecorder recorder;
    std::atomic<int> shown{0};
    recorder.whileOpen = [&shown] { ++shown; };
    Begin(300);
    Stereo in = noise(301, 9);
    for (int fault = 0; fault < 3; ++fault)
        EXPECT_EQ(Replace(in), noise(301, 99)) << "the output is unchanged";
    EXPECT_EQ(shown, 0) << "nothing is shown on the audio thread";
    StartTicking();
    ASSERT_TRUE(eventually([&] { return shown == 1; })) << "one report for all three";
    Replace(in);
    ASSERT_TRUE(eventually([&] { return shown == 2; }));
    EXPECT_TRUE(recorder.boxes[1].text.starts_with("Trying to load a Zbuffer with too much data."));
}

TEST_F(HostPathTest, ABlockSizeReachesFifosAndNetworkAndEmptiesTheFifos)
{
    const auto network =
        boost::dynamic_pointer_cast<ZSignalBay>(app->Document()->GetOutputNetwork());
    for (const std::intptr_t refused :
         {std::intptr_t{0}, std::intptr_t{-1}, std::intptr_t{1} << 21, std::intptr_t{1} << 40})
        Ask(effSetBlockSize, refused);
    EXPECT_EQ(network->GetMaxBuffer(), 512);
    Ask(effSetBlockSize, 300);
    EXPECT_EQ(looper->GetMaxBuffer(), 512u);
    EXPECT_EQ(network->GetMaxBuffer(), 300);
    for (int i = 0; i < 2; ++i) {
        Ask(effSetBlockSize, 100);
        EXPECT_EQ(looper->InputFree(0), 128u);
        looper->InputWrite(std::vector<float>(100), 0);
    }
    EXPECT_EQ(network->GetMaxBuffer(), 100);
}

TEST_F(HostPathTest, ARateReachesTheNetworkAndTheHostIsNotifiedOfTheLatencyOnce)
{
    for (const float rate : {0.0f, -44100.0f, 44100.0f, std::nanf(""),
                             std::numeric_limits<float>::infinity(), 48000.0f, 48000.0f})
    {
        Ask(effSetSampleRate, 0, nullptr, rate);
        EXPECT_EQ(TestHost::CountOf(audioMasterIOChanged), rate == 48000.0f ? 1 : 0);
    }
    EXPECT_EQ(effect->initialDelay, 480);
    EXPECT_EQ(looper->GetSampleRate(), 48000.0f);
    EXPECT_EQ(looper->GetOutputBay()->GetSampleRate(), 48000.0f);
    Ask(effSetBlockSize, 64);
    EXPECT_EQ(TestHost::CountOf(audioMasterIOChanged), 1);
}

TEST_F(HostPathTest, SuspendEmptiesTheSignalPathOnAnyThread)
{
    for (const bool onAudioThread : {false, true}) {
        Begin(441);
        Stereo in = ones(441);
        Replace(in);
        const std::function<void()> suspend = [this] { Ask(effMainsChanged, 0); };
        {
            const ZInterfaceLock busy;
            onAudioThread ? std::thread(suspend).join() : suspend();
        }
        Ask(effMainsChanged, 1);
        EXPECT_EQ(Replace(in)[0], std::vector<float>(441));
    }
    EXPECT_EQ(TestHost::CountOf(audioMasterWantMidi), 4);
}

TEST_F(HostPathTest, ChangesApplyAtATickOrWhenTheLoadingThreadBeginsAStream)
{
    Begin(441);
    SetGain(0.5f);
    std::thread([this] { Ask(effMainsChanged, 1); }).join();
    EXPECT_EQ(HeardGain(), 1.0f) << "left to the ticks";
    Ask(effMainsChanged, 1);
    EXPECT_EQ(HeardGain(), 0.5f);

    StartTicking();  // by the wall clock, while the host plays
    SetGain(0.25f);
    EXPECT_TRUE(eventually([this] { return !gain->IsMarkedChanged(); }));
    locked([] {});  // the tick is over
    EXPECT_EQ(HeardGain(), 0.25f);
}

TEST_F(HostPathTest, CallsOfTheAudioThreadDoNotWaitForTheInterfaceLock)
{
    std::future<void> done;
    const ZInterfaceLock busy;
    done = std::async(std::launch::async, [this] {
        Ask(effMainsChanged, 0);
        Ask(effStartProcess);
        Ask(effStopProcess);
        Ask(effProcessEvents);
        effect->processReplacing(effect, nullptr, nullptr, 0);
        effect->process(effect, nullptr, nullptr, 0);
        effect->setParameter(effect, 0, 0.0f);
        effect->getParameter(effect, 0);
    });
    EXPECT_EQ(done.wait_for(5s), std::future_status::ready);
}

TEST_F(HostPathTest, MidiEventsReachTheDocumentAsMessages)
{
    using Fields = std::array<int, 5>;  // id, channel, note or controller, amount, bend
    constexpr std::int32_t kNone = 0;
    const std::pair<std::array<int, 3>, Fields> rows[] = {
        {{0x83, 60, 64}, {ZMIDINOTEOFF, 3, 60, 64, 0}},
        {{0x9f, 60, 64}, {ZMIDINOTEON, 15, 60, 64, 0}},
        {{0x90, 60, 0}, {ZMIDINOTEOFF, 0, 60, 0, 0}},
        {{0xa1, 61, 7}, {ZMIDIPOLYPRESSURE, 1, 61, 7, 0}},
        {{0xb2, 1, 127}, {ZMIDICONTROLLER, 2, 1, 127, 0}},
        {{0x7f, 1, 2}, {kNone}},
        {{0xc0, 5, 0}, {ZMIDIPROGRAMCHANGE, 0, 5, 0, 0}},
        {{0xd0, 99, 0}, {ZMIDICHANNELPRESSURE, 0, 99, 0, 0}},
        {{0xf0, 1, 2}, {kNone}},
        {{0xe0, 1, 0x40}, {ZMIDIPITCHBEND, 0, 1, 0x40, 0x2001}},
    };
    auto& midi = app->Document()->midi;
    VstEvent systemExclusive{};
    systemExclusive.type = 6;
    for (const auto& [sent, expected] : rows) {
        VstMidiEvent event{};
        event.type = kVstMidiType;
        for (std::size_t i = 0; i < sent.size(); ++i)
            event.midiData[i] = static_cast<char>(sent[i]);
        std::array<char, sizeof event + 1> bytes;
        char* const oddAddress = bytes.data() + 1 - reinterpret_cast<std::uintptr_t>(&bytes) % 2;
        std::memcpy(oddAddress, &event, sizeof event);
        VstEvents events{2, 0, {&systemExclusive, reinterpret_cast<VstEvent*>(oddAddress)}};
        EXPECT_EQ(Ask(effProcessEvents, 0, &events), 1);
        Fields fields{};
        for (const auto& message : std::exchange(midi, {})) {
            std::array<std::uint8_t, 3> part{};
            std::uint16_t bend = 0;
            EXPECT_TRUE(message->Find("Channel", part[0]) && message->Find("Which", part[1]) &&
                        message->Find("Amount", part[2]) && message->Find("BigAmount", bend));
            fields = {message->GetId(), part[0], part[1], part[2], bend};
        }
        EXPECT_EQ(fields, expected) << sent[0];
    }
    VstEvents none{1, 0, {nullptr, nullptr}};
    EXPECT_EQ(Ask(effProcessEvents, 0, &none), 1);
}

TEST_F(HostCallsTest, ChangesAreSentOncePerTickAndTheHostCannotSetParametersMeanwhile)
{
    std::atomic<float> read{-1.0f};
    TestHost::On(audioMasterAutomate, [&](AEffect*) {
        effect->setParameter(effect, 0, 0.0f);
        read = effect->getParameter(effect, 0);
    });
    StartTicking();
    locked([&] {
        app->BeginEdit(gain);
        for (const float value : {0.1f, 0.2f, 0.5f})
            gain->SetZFloat(value, false);
    });
    ASSERT_TRUE(eventually([&] { return read != -1.0f; }));
    EXPECT_FLOAT_EQ(read, 0.75f);
    EXPECT_EQ(gain->GetZFloat(), 0.5f);
    // A pending change is sent before the end of its gesture, and not again at the tick.
    locked([&] {
        gain->SetZFloat(-0.5f, false);
        app->EndEdit(gain);
        app->Tick();
    });
    EXPECT_EQ(TestHost::TakeNotes(), (Notes{"begin 0", "0=750", "0=250", "end 0"}));
}

TEST_F(HostCallsTest, ATickOfTheStreamLeavesTheNotificationToTheInterfaceThread)
{
    TestHost::SetOffline(true);
    StartTicking();
    Ask(effSetBlockSize, 4410);
    SetGain(-0.5f);
    Stereo in = ones(4410);
    Replace(in);
    ASSERT_TRUE(HostIsNotified());
    const HostCall call = TestHost::Calls().front();
    EXPECT_NE(call.thread, std::this_thread::get_id());
    EXPECT_FLOAT_EQ(call.opt, 0.25f);
}

TEST_F(HostCallsTest, ClosingWaitsForACallOfTheHostInProgress)
{
    std::atomic<bool> isBack{false};
    TestHost::On(audioMasterAutomate, [&](AEffect*) {
        std::this_thread::sleep_for(100ms);
        isBack = true;
    });
    StartTicking();
    SetGain(0.5f);
    ASSERT_TRUE(HostIsNotified());
    Ask(effClose);
    EXPECT_TRUE(isBack);
    EXPECT_TRUE(document.expired());
}

TEST_F(HostCallsTest, AnEffectClosedInsideItsOwnCallIsDeletedAfterThatCall)
{
    // The calls in which the host closes the effect, and what causes them.
    const std::pair<std::int32_t, std::function<void()>> rows[] = {
        {audioMasterAutomate, [this] { SetGain(0.5f); }},
        {audioMasterBeginEdit,
         [this] {
             const ZInterfaceLock lock;  // as around each event of the window
             app->BeginEdit(gain);
             app->EndEdit(gain);
         }},
        {audioMasterIOChanged, [this] { Ask(effSetSampleRate, 0, nullptr, 48e3f); }},
        {audioMasterWantMidi, [this] { Ask(effMainsChanged, 1); }},
        {audioMasterWantMidi, [this] { std::thread([this] { Ask(effMainsChanged, 1); }).join(); }},
    };
    for (const auto& [opcode, cause] : rows) {
        SCOPED_TRACE(opcode);
        const TestHost fresh;
        std::atomic<bool> isClosed{false};
        std::atomic<bool> livedInside{false};
        std::atomic<int> callsAfter{0};
        TestHost::On(TestHost::kEveryCall, [&](AEffect*) { callsAfter += isClosed ? 1 : 0; });
        TestHost::On(opcode, [&](AEffect*) {
            if (isClosed.exchange(true))
                return;
            Ask(effClose);
            std::this_thread::sleep_for(10ms);
            livedInside = !document.expired();
        });
        StartTicking();
        cause();
        ExpectDeletion();
        EXPECT_TRUE(livedInside);
        EXPECT_EQ(callsAfter, 0);
        Open();
    }
}

TEST_F(HostCallsTest, AHostMayCloseOnTheThreadThatItsCallWaitsFor)
{
    std::atomic<bool> isCalled{false};
    std::atomic<bool> isAnswered{false};
    std::atomic<bool> livedInside{false};
    TestHost::On(audioMasterAutomate, [&](AEffect*) {
        isCalled = true;
        livedInside = eventually([&] { return isAnswered.load(); }) && !document.expired();
    });
    StartTicking();
    SetGain(0.5f);
    ASSERT_TRUE(eventually([&] { return isCalled.load(); }));
    Ask(effClose);
    isAnswered = true;
    ExpectDeletion();
    EXPECT_TRUE(livedInside);
}

TEST_F(StateNoticeTest, TheHostIsToldOnceOfChangesThatComeTogetherAndOfARecalledMemory)
{
    locked([&] {
        product.Element("intonation").SetDiscrete(2, false);
        product.Element("detune").SetZFloat(10.0f, false);
        product.Tick();  // on this thread, where the host must not be called
    });
    ASSERT_TRUE(eventually([] { return Notices() > 0; }));
    WaitForTicks();
    EXPECT_EQ(Notices(), 1);
    EXPECT_NE(TestHost::Calls().front().thread, std::this_thread::get_id());
    for (const std::int32_t id : {PLUGINSAVETOPRESETA, PLUGINRECALLPRESETA})
        locked([&] {
            product.app->GetCurrentDocument()->HandleZMessage(boost::make_shared<ZMessage>(id));
        });
    EXPECT_TRUE(eventually([] { return Notices() == 2; }));
}

TEST_F(StateNoticeTest, TheHostIsToldOfAChoiceThatIsSavedOnlyWhileItIsNotTheDefault)
{
    for (const std::int32_t tracking : {1, 0}) {
        WaitForTicks();
        const int before = Notices();
        locked([&] { product.Element("tracking").SetDiscrete(tracking, false); });
        EXPECT_TRUE(eventually([before] { return Notices() == before + 1; })) << tracking;
    }
}

TEST_F(StateNoticeTest, ParametersAndWhatTheHostLoadsAreNoNotice)
{
    product.effect->setParameter(product.effect, 1, 1.0f);
    locked([&] { product.Element("pitchTranspose").SetDiscrete(4, false); });
    WaitForTicks();
    product.Ask(effSetProgram, 0, 3);
    WaitForTicks();
    EXPECT_EQ(product.LoadBank(product.Bank()), 1);
    WaitForTicks();
    EXPECT_EQ(Notices(), 0);
}
