// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/BenchPlugin.h"
#include "benchmarks/WetEngine.h"
#include "support/Measure.h"
#include "support/Signals.h"
#include "tools/singer/Singer.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

using namespace orvane;

namespace
{

AEffect* open(PluginEntry entry)
{
    AEffect* const effect = entry(benchHost);
    if (!effect) {
        std::fputs("plugin_figures: the plug-in does not open\n", stderr);
        std::exit(2);
    }
    return effect;
}

/// Calls block(0) to block(blocks - 1) in ten rounds; returns the microseconds of a block in the
/// fastest.
template <class Block>
double microsecondsABlock(int blocks, Block block)
{
    double best = 1e9;
    for (int round = 0; round < 10; ++round) {
        const auto begin = BenchClock::now();
        for (int i = 0; i < blocks; ++i)
            block(i);
        best = std::min(best, 1000.0 * milliseconds(BenchClock::now() - begin) / blocks);
    }
    return best;
}

int blocksOf(const std::vector<float>& voice)
{
    return static_cast<int>(voice.size()) / kBenchBlock;
}

double engineCost(const std::vector<float>& voice)
{
    WetEngine engine(kBenchRate);
    return microsecondsABlock(blocksOf(voice),
                              [&](int i) { engine.Process(voice, static_cast<std::size_t>(i)); });
}

double wetCost(PluginEntry entry, std::vector<float> voice)
{
    AEffect* const effect = open(entry);
    startPlugin(effect, true);
    std::vector<float> left(kBenchBlock);
    std::vector<float> right(kBenchBlock);
    const double cost = microsecondsABlock(blocksOf(voice), [&](int i) {
        float* const samples = voice.data() + i * kBenchBlock;
        float* in[] = {samples, samples};
        float* out[] = {left.data(), right.data()};
        effect->processReplacing(effect, in, out, kBenchBlock);
    });
    ask(effect, effClose);
    return cost;
}

/// Cost of a stream that is dry from its start. The values of the samples do not change it.
double dryCost(PluginEntry entry)
{
    AEffect* const effect = open(entry);
    startPlugin(effect, false);
    std::vector<float> channels(4 * kBenchBlock, 0.1f);
    float* in[] = {channels.data(), channels.data() + kBenchBlock};
    float* out[] = {in[1] + kBenchBlock, in[1] + 2 * kBenchBlock};
    const double cost = microsecondsABlock(
        5000, [&](int) { effect->processReplacing(effect, in, out, kBenchBlock); });
    ask(effect, effClose);
    return cost;
}

/// Cost of the copies alone that a dry block passes through: from the host into a FIFO, a port, the
/// block, the delay line and back, eight for each channel. This is the least that a dry block can
/// cost.
double copiesAlone()
{
    constexpr std::size_t kLine = 65536;
    constexpr std::size_t kDelay = 18432;
    struct Channel
    {
        std::array<std::array<float, kBenchBlock>, 8> stops{};
        std::vector<float> line = std::vector<float>(kLine);
    };
    std::vector<Channel> channels(2);
    // ClobberMemory keeps the compiler from removing copies.
    const auto copy = [](float* to, const float* from) {
        std::memcpy(to, from, kBenchBlock * sizeof(float));
        benchmark::ClobberMemory();
    };
    return microsecondsABlock(5000, [&](int i) {
        const std::size_t write = static_cast<std::size_t>(i) * kBenchBlock % kLine;
        for (Channel& channel : channels) {
            auto& stops = channel.stops;
            for (const std::size_t stop : {1U, 2U, 3U, 5U, 6U, 7U})
                copy(stops[stop].data(), stops[stop - 1].data());
            copy(channel.line.data() + write, stops[3].data());
            copy(stops[4].data(), channel.line.data() + (write + kLine - kDelay) % kLine);
        }
    });
}

void printOpening(PluginEntry entry)
{
    double first = 0.0;
    double later = 0.0;
    for (int i = 0; i < 20; ++i) {
        const auto begin = BenchClock::now();
        AEffect* const effect = open(entry);
        const double time = milliseconds(BenchClock::now() - begin);
        (i == 0 ? first : later) = std::max(i == 0 ? first : later, time);
        ask(effect, effClose);
    }
    std::printf("  from the entry call to a ready effect: first %.1f ms, later at most %.1f ms "
                "(good: below "
                "100 and 20 ms)\n",
                first, later);
}

void printMemory(PluginEntry entry)
{
    constexpr int kInstances = 16;
    std::vector<AEffect*> effects{open(entry)};
    startPlugin(effects.front(), true);
    const auto used = [] {
        const auto state = mallinfo2();
        return static_cast<double>(state.uordblks + state.hblkhd);
    };
    const double before = used();
    for (int i = 0; i < kInstances; ++i) {
        effects.push_back(open(entry));
        startPlugin(effects.back(), true);
    }
    std::printf("  memory of each further instance: %.2f MB (good: below 5 MB)\n",
                (used() - before) / kInstances / 1e6);
    for (AEffect* const effect : effects)
        ask(effect, effClose);
}

/// Opens 64 instances, runs them on two audio threads and closes them in random order, in rounds.
void printCrowd(PluginEntry entry, int rounds)
{
    std::mt19937 random(1);
    const auto begin = BenchClock::now();
    for (int round = 0; round < rounds; ++round) {
        std::vector<AEffect*> effects;
        for (int i = 0; i < 64; ++i) {
            effects.push_back(open(entry));
            startPlugin(effects.back(), true);
        }
        const auto play = [&effects](std::size_t from) {
            std::vector<float> channel(kBenchBlock, 0.1f);
            float* channels[] = {channel.data(), channel.data()};
            for (int block = 0; block < 4; ++block)
                for (std::size_t i = from; i < effects.size(); i += 2)
                    effects[i]->processReplacing(effects[i], channels, channels, kBenchBlock);
        };
        std::thread odd(play, 1);
        play(0);
        odd.join();
        std::shuffle(effects.begin(), effects.end(), random);
        for (AEffect* const effect : effects)
            ask(effect, effClose);
    }
    std::printf(
        "  64 instances, two audio threads, closed in random order, %d rounds: %.1f s (good: "
        "below %.0f s)\n",
        rounds, milliseconds(BenchClock::now() - begin) / 1000.0, 0.5 * rounds);
}

/// A host that renders offline: changes are delivered between the blocks, in every run alike.
std::intptr_t offlineHost(AEffect* effect, std::int32_t opcode, std::int32_t index,
                          std::intptr_t value, void* ptr, float opt)
{
    return opcode == audioMasterGetCurrentProcessLevel
               ? kVstProcessLevelOffline
               : benchHost(effect, opcode, index, value, ptr, opt);
}

/// The loudest click above 7 kHz in dB, while transposition by an octave is switched on and off.
double switchClicks(PluginEntry entry, bool isFine)
{
    constexpr int kTranspose = 1;
    constexpr int kPitch = 5;
    AEffect* const effect = entry(offlineHost);
    if (isFine)
        chooseTracking(effect, true);
    effect->setParameter(effect, kPitch, 0.0f);
    startPlugin(effect, false);
    constexpr int kBlocks = 600;
    std::vector<float> tone =
        harmonicTone(227.0, static_cast<double>(kBenchRate), kBlocks * kBenchBlock, 1200.0);
    std::vector<float> left(tone.size());
    std::vector<float> right(kBenchBlock);
    for (int block = 0; block < kBlocks; ++block) {
        if (block % 100 == 99)
            effect->setParameter(effect, kTranspose, block % 200 == 99 ? 1.0f : 0.0f);
        float* in[] = {tone.data() + block * kBenchBlock, tone.data() + block * kBenchBlock};
        float* out[] = {left.data() + block * kBenchBlock, right.data()};
        effect->processReplacing(effect, in, out, kBenchBlock);
    }
    ask(effect, effClose);
    constexpr std::size_t kStart = 60 * kBenchBlock;  // of the tone itself, with the latency
    return clickDecibels(std::span(left).subspan(kStart), static_cast<double>(kBenchRate));
}

}  // namespace

/// Prints what the plug-in costs, compared with the engine alone: plugin_figures LIBRARY [ROUNDS].
int main(int argc, char** argv)
{
    void* const library = argc > 1 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library) {
        std::fputs("plugin_figures LIBRARY [ROUNDS]: the library does not load\n", stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<PluginEntry>(::dlsym(library, "VSTPluginMain"));
    std::puts("The whole plug-in");
    printOpening(entry);
    printMemory(entry);
    const std::vector<float> voice = renderSong(demoSong(), kBenchRate);
    const double engine = engineCost(voice);
    const double wet = wetCost(entry, voice);
    const double dry = dryCost(entry);
    const double copies = copiesAlone();
    std::puts("A block of 512 at 44100 Hz");
    std::printf("  engine alone %.2f us, plug-in wet %.2f us (%+.1f %%; good: below 5 %%)\n",
                engine, wet, 100.0 * (wet / engine - 1.0));
    std::printf("  settled dry %.2f us (%.1f %% of wet; good: below 5 %%), of which the copies "
                "alone %.2f us "
                "(%.1f %%)\n",
                dry, 100.0 * dry / wet, copies, 100.0 * copies / wet);
    std::printf(
        "Loudest click above 7 kHz when transposition is switched: Classic %.1f, Fine %.1f dB "
        "(good: Fine below -60)\n",
        switchClicks(entry, false), switchClicks(entry, true));
    printCrowd(entry, argc > 2 ? std::atoi(argv[2]) : 100);
    ::dlclose(library);
    return 0;
}
