// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/WetEngine.h"
#include "tools/singer/Singer.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace orvane
{

namespace
{

/// One stereo block of a sung voice, corrected and, with transpose 1, transposed. "load%" is the
/// time that it takes in percent of the block's duration.
void wetBlock(benchmark::State& state)
{
    const auto rate = static_cast<float>(state.range(0));
    const std::vector<float> voice = renderSong(demoSong(), rate);
    WetEngine engine(rate);
    engine.Engine().SetTransposeEnabled(state.range(1) != 0);
    engine.Engine().SetPitchShift(3.0f / 12.0f);
    engine.Engine().SetFormantShift(-1.0f / 12.0f);

    std::size_t block = 0;
    for (auto _ : state) {
        engine.Process(voice, block);
        block = (block + 1) % engine.BlocksIn(voice);
    }
    state.counters["load%"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * engine.Hop() / static_cast<double>(rate) / 100.0,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(wetBlock)
    ->ArgNames({"rate", "transpose"})
    ->ArgsProduct({{44100, 48000, 88200, 96000, 192000}, {0, 1}});

}  // namespace orvane
