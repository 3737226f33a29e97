// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/common/PluginEntry.h"
#include "pluginwrappers/interface/VstEvents.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/RealtimeGuard.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <random>
#include <thread>
#include <vector>

namespace orvane
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr float kRate = 44100.0f;
constexpr std::int32_t kLargestBlock = 2048;

std::intptr_t callback(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                       std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    return opcode == audioMasterVersion ? 2400 : 0;
}

/// Two seconds, or what KESTRUNE_SOAK_SECONDS says.
std::chrono::duration<double> soakTime()
{
    const char* const seconds = std::getenv("KESTRUNE_SOAK_SECONDS");
    return std::chrono::duration<double>(seconds != nullptr ? std::atof(seconds) : 2.0);
}

std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::int32_t index = 0,
                  std::intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f)
{
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

/// What a host's other threads do while a stream plays.
void changeParameters(AEffect* effect, unsigned seed, const std::atomic<bool>& playing)
{
    std::mt19937 random(seed);
    std::array<char, 24> text;
    while (playing) {
        const auto index =
            static_cast<std::int32_t>(random() % static_cast<unsigned>(effect->numParams));
        effect->setParameter(effect, index, static_cast<float>(random() % 101) / 100.0f);
        effect->getParameter(effect, index);
        ask(effect, effGetParamDisplay, index, 0, text.data());
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
    }
}

/// What a host does that saves its project and switches programs while a stream plays.
void saveAndLoad(AEffect* effect, const std::atomic<bool>& playing)
{
    std::mt19937 random(4);
    while (playing) {
        const std::int32_t isPreset = random() % 2 != 0 ? 1 : 0;
        void* data = nullptr;
        const std::intptr_t size = ask(effect, effGetChunk, isPreset, 0, &data);
        std::vector<char> chunk(static_cast<char*>(data), static_cast<char*>(data) + size);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 50));
        EXPECT_EQ(ask(effect, effSetChunk, isPreset, size, chunk.data()), 1);
        ask(effect, effSetProgram, 0, static_cast<std::intptr_t>(random() % 7));
    }
}

/// What comes between two blocks on the audio thread: notes, automation, now and then a new start.
void betweenBlocks(AEffect* effect, int block)
{
    VstMidiEvent note{};
    note.type = kVstMidiType;
    note.midiData[0] = static_cast<char>(0x90);
    note.midiData[1] = static_cast<char>(block % 128);
    note.midiData[2] = 100;
    VstEvents events{1, 0, {reinterpret_cast<VstEvent*>(&note)}};
    ask(effect, effProcessEvents, 0, 0, &events);
    effect->setParameter(effect, block % 7, static_cast<float>(block % 25) / 24.0f);
    if (block % 40 == 39)
        ask(effect, effMainsChanged, 0, 1);
}

/// What the stream of the audio thread was like.
struct Stream
{
    unsigned violations = 0;
    bool finite = true;
};

/// Plays a voice for a while, in blocks of all sizes.
Stream play(AEffect* effect)
{
    const auto voice = harmonicTone(196.0, kRate, 44100);
    std::vector<float> left(kLargestBlock);
    std::vector<float> right(kLargestBlock);
    float* outputs[] = {left.data(), right.data()};
    std::mt19937 random(3);
    Stream stream;
    const auto begin = Clock::now();
    const auto end = begin + soakTime();
    double played = 0.0;  // seconds
    for (int block = 0; Clock::now() < end; ++block) {
        betweenBlocks(effect, block);
        const auto frames = static_cast<std::int32_t>(random() % kLargestBlock) + 1;
        std::vector<float> samples(voice.begin(), voice.begin() + frames);
        float* inputs[] = {samples.data(), samples.data()};
        {
            RealtimeGuard guard;
            effect->processReplacing(effect, inputs, outputs, frames);
            stream.violations += guard.violations();
        }
        stream.finite =
            stream.finite && std::all_of(left.begin(), left.begin() + frames,
                                         [](float sample) { return std::fabs(sample) < 8.0f; });
        // At the pace of a host that plays: one that runs ahead has its ticks inside the blocks.
        played += frames / static_cast<double>(kRate);
        std::this_thread::sleep_until(begin + std::chrono::duration<double>(played));
    }
    return stream;
}

}  // namespace

TEST(SoakTest, AStreamNeitherAllocatesNorWaitsWhileOthersTurnTheKnobsAndSave)
{
    AEffect* const effect = openPlugin(callback);
    ASSERT_NE(effect, nullptr);
    ask(effect, effSetSampleRate, 0, 0, nullptr, kRate);
    ask(effect, effSetBlockSize, 0, kLargestBlock);
    ask(effect, effMainsChanged, 0, 1);

    std::atomic<bool> playing{true};
    std::thread automation([&] { changeParameters(effect, 1, playing); });
    std::thread editor([&] { changeParameters(effect, 2, playing); });
    std::thread project([&] { saveAndLoad(effect, playing); });
    // Not on the thread that opened the effect: a chunk that was given is good until that begins
    // processing.
    Stream stream;
    std::thread([&] { stream = play(effect); }).join();
    playing = false;
    automation.join();
    editor.join();
    project.join();
    ask(effect, effMainsChanged, 0, 0);
    ask(effect, effClose, 0, 0);
    EXPECT_EQ(stream.violations, 0u);
    EXPECT_TRUE(stream.finite);
}

}  // namespace orvane
