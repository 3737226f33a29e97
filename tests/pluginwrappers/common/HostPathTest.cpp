// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "support/BoxRecorder.h"
#include "support/Eventually.h"
#include "support/Signals.h"
#include "support/SmallPlugin.h"
#include "support/TestHost.h"
#include "zdsp/common/ZVectorSupport.h"
#include "zlib/common/documents/ZAudioManager.h"
#include "zlib/common/signals/ZInputBay.h"
#include "zlib/common/signals/ZOutputBay.h"
#include "zlib/common/signals/ZSignalLooper.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstring>
#include <functional>
#include <future>
#include <limits>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

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

/// Returns whether a call on another thread ends while this thread holds the interface lock.
bool endsWhileTheInterfaceIsLocked(const std::function<void()>& call)
{
    std::future<void> done;
    std::future_status status;
    {
        const ZInterfaceLock lock;
        done = std::async(std::launch::async, call);
        status = done.wait_for(std::chrono::milliseconds(50));
    }
    done.wait();
    return status == std::future_status::ready;
}

template <typename T>
T fieldOf(const ZMessage& message, const char* name)
{
    T value{};
    EXPECT_TRUE(message.Find(name, value)) << name;
    return value;
}

/// The effect object over a small application, without the library and its entry function.
class HostPathTest : public testing::Test
{
protected:
    static constexpr std::int32_t kLatency = 441;  // at 44.1 kHz

    HostPathTest()
    {
        TestHost::On(TestHost::kEveryCall,
                     [](AEffect*) { EXPECT_FALSE(ZInterfaceLock::IsHeld()); });
        const ZInterfaceLock lock;
        auto made = SmallPlugin::Make();
        app = made.get();
        looper = app->GetAudioManager()->GetSignalLooper().get();
        plugin = std::make_unique<ZVSTPlugin>(TestHost::callback, std::move(made));
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
    void SetGain(float gain)
    {
        const ZInterfaceLock lock;
        app->Gain()->SetZFloat(gain, false);
    }
    void StartTicking()
    {
        const ZInterfaceLock lock;
        app->InitLooper();
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
    std::unique_ptr<ZVSTPlugin> plugin;
    AEffect* effect = nullptr;
};

}  // namespace

TEST_F(HostPathTest, ProcessAddsInDoublePrecisionWhatProcessReplacingWouldWrite)
{
    Begin(441);
    Stereo in = noise(441, 4);
    Replace(in);
    Stereo sum = noise(441, 5);
    const Stereo before = sum;
    effect->process(effect, pointersTo(in).data(), pointersTo(sum).data(), 441);
    for (std::size_t channel = 0; channel < 2; ++channel)
        for (std::size_t i = 0; i < 441; ++i)
            ASSERT_EQ(sum[channel][i], static_cast<float>(static_cast<double>(before[channel][i]) +
                                                          static_cast<double>(in[channel][i])));
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
    Stereo kept = noise(100, 8);
    const Stereo before = kept;
    effect->process(effect, pointersTo(in).data(), pointersTo(kept).data(), 100);
    EXPECT_EQ(kept, before);

    Begin(441);
    std::array<float*, 2> none{nullptr, nullptr};
    std::array<float*, 2> one{in[0].data(), nullptr};
    effect->processReplacing(effect, none.data(), one.data(), 100);
    effect->processReplacing(effect, nullptr, nullptr, 100);
    effect->processReplacing(effect, one.data(), none.data(), 100);
    for (const std::int32_t frames : {0, -1, INT32_MIN})
        effect->processReplacing(effect, nullptr, pointersTo(kept).data(), frames);
    EXPECT_EQ(kept, before);
    EXPECT_EQ(looper->InputFree(0), looper->InputFree(1)) << "the channels stay in step";
    EXPECT_EQ(looper->OutputAvailable(0), looper->OutputAvailable(1));
}

TEST_F(HostPathTest, NaNInfinityAndDenormalsComeOutAsZero)
{
    Begin(441);
    Stereo in = ones(441);
    Stereo expected = ones(441);
    const auto odd = [&](std::size_t channel, std::size_t place, float value) {
        in[channel][place] = value;
        expected[channel][place] = 0.0f;
    };
    odd(0, 3, std::numeric_limits<float>::quiet_NaN());
    odd(0, 440, std::numeric_limits<float>::quiet_NaN());
    odd(1, 4, std::numeric_limits<float>::infinity());
    odd(1, 5, -std::numeric_limits<float>::infinity());
    if (ZVectorSupport::ProcessorClass() != ZVectorSupport::kPlain)
        odd(1, 6, 1e-40f);
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
    Stereo next = noise(300, 10);
    Replace(next);
    Stereo after = noise(300, 11);
    EXPECT_EQ(Replace(after)[0][141], next[0][0]) << "the audio goes on";
}

TEST_F(HostPathTest, ABlockSizeReachesFifosNetworkAndTransferAndEmptiesTheFifos)
{
    const auto network =
        boost::dynamic_pointer_cast<ZSignalBay>(app->Document()->GetOutputNetwork());
    for (const std::intptr_t refused :
         {std::intptr_t{0}, std::intptr_t{-1}, std::intptr_t{1} << 21, std::intptr_t{1} << 40})
        Ask(effSetBlockSize, refused);
    EXPECT_EQ(looper->GetPreferredBuffer(), 512u);
    EXPECT_EQ(network->GetMaxBuffer(), 512);
    Ask(effSetBlockSize, 300);
    EXPECT_EQ(looper->GetMaxBuffer(), 512u);
    EXPECT_EQ(network->GetMaxBuffer(), 300);
    Ask(effSetBlockSize, 100);
    EXPECT_EQ(looper->InputFree(1), 128u);
    EXPECT_EQ(network->GetMaxBuffer(), 100);

    looper->InputWrite(std::vector<float>(100), 0);
    Ask(effSetBlockSize, 100);
    EXPECT_EQ(looper->InputFree(0), 128u);
}

TEST_F(HostPathTest, ARateReachesTheNetworkAndTheHostIsNotifiedOfTheLatencyOnce)
{
    for (const float refused : {0.0f, -44100.0f, 44100.0f, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()})
        Ask(effSetSampleRate, 0, nullptr, refused);
    EXPECT_EQ(TestHost::CountOf(audioMasterIOChanged), 0);
    Ask(effSetSampleRate, 0, nullptr, 48000.0f);
    EXPECT_EQ(effect->initialDelay, 480);
    EXPECT_EQ(TestHost::CountOf(audioMasterIOChanged), 1);
    EXPECT_EQ(looper->GetSampleRate(), 48000.0f);
    EXPECT_EQ(looper->GetOutputBay()->GetSampleRate(), 48000.0f);
    Ask(effSetSampleRate, 0, nullptr, 48000.0f);
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
        Ask(effMainsChanged, 1);
        Stereo zeros{std::vector<float>(441), std::vector<float>(441)};
        EXPECT_EQ(Replace(in), zeros);
    }
    EXPECT_EQ(TestHost::CountOf(audioMasterWantMidi), 6);
}

TEST_F(HostPathTest, ChangesApplyAtATickOrWhenTheLoadingThreadBeginsAStream)
{
    Begin(441);
    SetGain(0.5f);
    EXPECT_EQ(HeardGain(), 1.0f) << "no tick yet";
    std::thread([this] { Ask(effMainsChanged, 1); }).join();
    EXPECT_EQ(HeardGain(), 1.0f) << "left to the ticks";
    Ask(effMainsChanged, 1);
    EXPECT_EQ(HeardGain(), 0.5f);

    StartTicking();  // by the wall clock, while the host plays
    SetGain(0.25f);
    EXPECT_TRUE(eventually([this] { return !app->Gain()->IsMarkedChanged(); }));
    {
        const ZInterfaceLock tickIsOver;
    }
    EXPECT_EQ(HeardGain(), 0.25f);
}

TEST_F(HostPathTest, CallsOfTheAudioThreadDoNotWaitForTheInterfaceLock)
{
    EXPECT_TRUE(endsWhileTheInterfaceIsLocked([this] {
        Ask(effMainsChanged, 0);
        Ask(effStartProcess);
        Ask(effStopProcess);
        Ask(effProcessEvents);
        effect->processReplacing(effect, nullptr, nullptr, 0);
        effect->process(effect, nullptr, nullptr, 0);
        effect->setParameter(effect, 0, 0.0f);
        effect->getParameter(effect, 0);
    }));
    EXPECT_FALSE(endsWhileTheInterfaceIsLocked([this] { Ask(effGetProgram); }));
}

TEST_F(HostPathTest, MidiEventsReachTheDocumentAsMessages)
{
    struct Row
    {
        int status;
        int first;
        int second;
        std::int32_t id;  // 0: no message
        int bigAmount;
    };
    constexpr Row kRows[] = {
        {0x83, 60, 64, ZMIDINOTEOFF, 0},
        {0x9f, 60, 64, ZMIDINOTEON, 0},
        {0x90, 60, 0, ZMIDINOTEOFF, 0},
        {0xa1, 61, 7, ZMIDIPOLYPRESSURE, 0},
        {0xb2, 1, 127, ZMIDICONTROLLER, 0},
        {0x7f, 1, 2, 0, 0},
        {0xc0, 5, 0, ZMIDIPROGRAMCHANGE, 0},
        {0xd0, 99, 0, ZMIDICHANNELPRESSURE, 0},
        {0xf0, 1, 2, 0, 0},
        {0xe0, 1, 0x40, ZMIDIPITCHBEND, 0x2001},
    };
    const auto& midi = app->Document()->midi;
    VstEvent systemExclusive{};
    systemExclusive.type = 6;
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.status);
        VstMidiEvent event{};
        event.type = kVstMidiType;
        event.midiData[0] = static_cast<char>(row.status);
        event.midiData[1] = static_cast<char>(row.first);
        event.midiData[2] = static_cast<char>(row.second);
        std::array<char, sizeof event + 1> bytes;
        char* const oddAddress = bytes.data() + 1 - reinterpret_cast<std::uintptr_t>(&bytes) % 2;
        std::memcpy(oddAddress, &event, sizeof event);
        VstEvents events{2, 0, {&systemExclusive, reinterpret_cast<VstEvent*>(oddAddress)}};
        const std::size_t before = midi.size();
        EXPECT_EQ(Ask(effProcessEvents, 0, &events), 1);
        ASSERT_EQ(midi.size(), before + (row.id != 0 ? 1 : 0));
        if (row.id == 0)
            continue;
        const ZMessage& message = *midi.back();
        EXPECT_EQ(message.GetId(), row.id);
        EXPECT_EQ(fieldOf<std::uint8_t>(message, "Channel"), row.status & 0x0f);
        EXPECT_EQ(fieldOf<std::uint8_t>(message, "Which"), row.first);
        EXPECT_EQ(fieldOf<std::uint8_t>(message, "Amount"), row.second);
        EXPECT_EQ(fieldOf<std::uint16_t>(message, "BigAmount"), row.bigAmount);
    }
    const std::size_t before = midi.size();
    for (const std::int32_t count : {0, -1, 1}) {
        VstEvents events{count, 0, {nullptr, nullptr}};
        EXPECT_EQ(Ask(effProcessEvents, 0, &events), 1);
        EXPECT_EQ(midi.size(), before);
    }
}

}  // namespace orvane
