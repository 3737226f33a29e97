// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"
#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

using namespace orvane;

namespace
{

using Clock = std::chrono::steady_clock;
using Entry = AEffect* (*)(audioMasterCallback);

constexpr float kRate = 44100.0f;
constexpr int kHop = 512;
constexpr int kCorrectPitch = 0;

std::intptr_t host(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                   std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    return opcode == audioMasterVersion ? 2400 : 0;
}

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::intptr_t value = 0, float opt = 0.0f)
{
    return effect->dispatcher(effect, opcode, 0, value, nullptr, opt);
}

AEffect* open(Entry entry)
{
    AEffect* const effect = entry(host);
    if (!effect) {
        std::fputs("plugin_figures: the plug-in does not open\n", stderr);
        std::exit(2);
    }
    return effect;
}

void start(AEffect* effect, bool correct)
{
    effect->setParameter(effect, kCorrectPitch, correct ? 1.0f : 0.0f);
    ask(effect, effSetSampleRate, 0, kRate);
    ask(effect, effSetBlockSize, kHop);
    ask(effect, effMainsChanged, 1);
}

/// Calls block with 0 to blocks - 1 and gives microseconds a block, of the fastest of rounds.
template <class Block>
double microsecondsABlock(int blocks, Block block)
{
    double best = 1e9;
    for (int round = 0; round < 10; ++round) {
        const auto begin = Clock::now();
        for (int i = 0; i < blocks; ++i)
            block(i);
        best = std::min(best, 1000.0 * milliseconds(Clock::now() - begin) / blocks);
    }
    return best;
}

int blocksOf(const std::vector<float>& voice)
{
    return static_cast<int>(voice.size()) / kHop;
}

double engineCost(const std::vector<float>& voice)
{
    PsolaClass engine;
    ZBuffer ignored(12, "ZBuffer");
    if (!engine.Initialize(kRate, kHop))
        std::exit(2);
    engine.SetFrequencyRange(73.0f, 1318.0f);
    engine.SetPitchReference(2);
    engine.SetIgnoredNotes(&ignored);
    engine.SetCorrectionEnabled(true);
    std::vector<float> left(kHop);
    std::vector<float> right(kHop);
    return microsecondsABlock(blocksOf(voice), [&](int i) {
        const float* const samples = voice.data() + i * kHop;
        const float* const in[] = {samples, samples};
        float* const out[] = {left.data(), right.data()};
        engine.Process(in, out, kHop);
    });
}

double wetCost(Entry entry, std::vector<float> voice)
{
    AEffect* const effect = open(entry);
    start(effect, true);
    std::vector<float> left(kHop);
    std::vector<float> right(kHop);
    const double cost = microsecondsABlock(blocksOf(voice), [&](int i) {
        float* const samples = voice.data() + i * kHop;
        float* in[] = {samples, samples};
        float* out[] = {left.data(), right.data()};
        effect->processReplacing(effect, in, out, kHop);
    });
    ask(effect, effClose);
    return cost;
}

/// Of a stream that was dry from its start. What is in the samples makes no difference to it.
double dryCost(Entry entry)
{
    AEffect* const effect = open(entry);
    start(effect, false);
    std::vector<float> channels(4 * kHop, 0.1f);
    float* in[] = {channels.data(), channels.data() + kHop};
    float* out[] = {in[1] + kHop, in[1] + 2 * kHop};
    const double cost =
        microsecondsABlock(5000, [&](int) { effect->processReplacing(effect, in, out, kHop); });
    ask(effect, effClose);
    return cost;
}

/// The copies on a dry block's road and nothing else: from the host into a FIFO, a port, the block,
/// the delay line and back, eight for each channel. No road of these copies costs less.
double copiesAlone()
{
    constexpr std::size_t kLine = 65536;
    constexpr std::size_t kDelay = 18432;
    struct Channel
    {
        std::array<std::array<float, kHop>, 8> stops{};
        std::vector<float> line = std::vector<float>(kLine);
    };
    std::vector<Channel> channels(2);
    // Read afresh each time, so that no copy is left out.
    const auto copy = [](float* to, const float* from) {
        std::memcpy(to, from, kHop * sizeof(float));
        benchmark::ClobberMemory();
    };
    return microsecondsABlock(5000, [&](int i) {
        const std::size_t write = static_cast<std::size_t>(i) * kHop % kLine;
        for (Channel& channel : channels) {
            auto& stops = channel.stops;
            for (const std::size_t stop : {1, 2, 3, 5, 6, 7})
                copy(stops[stop].data(), stops[stop - 1].data());
            copy(channel.line.data() + write, stops[3].data());
            copy(stops[4].data(), channel.line.data() + (write + kLine - kDelay) % kLine);
        }
    });
}

void printOpening(Entry entry)
{
    double first = 0.0;
    double later = 0.0;
    for (int i = 0; i < 20; ++i) {
        const auto begin = Clock::now();
        AEffect* const effect = open(entry);
        const double time = milliseconds(Clock::now() - begin);
        (i == 0 ? first : later) = std::max(i == 0 ? first : later, time);
        ask(effect, effClose);
    }
    std::printf("  from the entry call to a ready effect: first %.1f ms, at most %.1f ms after\n",
                first, later);
}

void printMemory(Entry entry)
{
    constexpr int kInstances = 16;
    std::vector<AEffect*> effects{open(entry)};
    start(effects.front(), true);
    const auto used = [] {
        const auto state = mallinfo2();
        return static_cast<double>(state.uordblks + state.hblkhd);
    };
    const double before = used();
    for (int i = 0; i < kInstances; ++i) {
        effects.push_back(open(entry));
        start(effects.back(), true);
    }
    std::printf("  memory of each further instance: %.2f MB\n",
                (used() - before) / kInstances / 1e6);
    for (AEffect* const effect : effects)
        ask(effect, effClose);
}

/// Sixty-four instances, run from two audio threads, closed in random order, again and again.
void printCrowd(Entry entry, int rounds)
{
    std::mt19937 random(1);
    const auto begin = Clock::now();
    for (int round = 0; round < rounds; ++round) {
        std::vector<AEffect*> effects;
        for (int i = 0; i < 64; ++i) {
            effects.push_back(open(entry));
            start(effects.back(), true);
        }
        const auto play = [&effects](std::size_t from) {
            std::vector<float> channel(kHop, 0.1f);
            float* channels[] = {channel.data(), channel.data()};
            for (int block = 0; block < 4; ++block)
                for (std::size_t i = from; i < effects.size(); i += 2)
                    effects[i]->processReplacing(effects[i], channels, channels, kHop);
        };
        std::thread odd(play, 1);
        play(0);
        odd.join();
        std::shuffle(effects.begin(), effects.end(), random);
        for (AEffect* const effect : effects)
            ask(effect, effClose);
    }
    std::printf("  64 instances, two audio threads, closed in random order, %d rounds: %.1f s\n",
                rounds, milliseconds(Clock::now() - begin) / 1000.0);
}

}  // namespace

/// Prints what the whole plug-in costs, beside the engine alone: plugin_figures LIBRARY [ROUNDS].
int main(int argc, char** argv)
{
    void* const library = argc > 1 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library) {
        std::fputs("plugin_figures LIBRARY [ROUNDS]: the library does not load\n", stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<Entry>(::dlsym(library, "VSTPluginMain"));
    std::puts("The whole plug-in");
    printOpening(entry);
    printMemory(entry);
    const std::vector<float> voice = renderSong(demoSong(), kRate);
    const double engine = engineCost(voice);
    const double wet = wetCost(entry, voice);
    const double dry = dryCost(entry);
    const double copies = copiesAlone();
    std::puts("A block of 512 at 44100 Hz");
    std::printf("  engine alone %.2f us, plug-in wet %.2f us (%+.1f %%)\n", engine, wet,
                100.0 * (wet / engine - 1.0));
    std::printf(
        "  settled dry %.2f us (%.1f %% of wet), of which the copies alone %.2f us (%.1f %%)\n",
        dry, 100.0 * dry / wet, copies, 100.0 * copies / wet);
    printCrowd(entry, argc > 2 ? std::atoi(argv[2]) : 100);
    ::dlclose(library);
    return 0;
}
