// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/PsolaClass.h"
#include "tools/singer/Singer.h"
#include "zlib/common/buffers/ZBuffer.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace orvane
{

namespace
{

/// One wet stereo block of a sung voice, corrected and transposed. "load" is the share of the
/// block's own time that it takes.
void wetBlock(benchmark::State& state)
{
    const auto rate = static_cast<float>(state.range(0));
    const int hop = static_cast<int>(rate * 0.0116f + 0.5f);
    const std::vector<float> voice = renderSong(demoSong(), rate);
    const std::size_t blocks = voice.size() / static_cast<std::size_t>(hop);

    PsolaClass engine;
    ZBuffer ignored(12, "ZBuffer");
    if (!engine.Initialize(rate, hop))
        return state.SkipWithError("the engine does not take this rate");
    engine.SetFrequencyRange(73.0f, 1318.0f);
    engine.SetPitchReference(2);
    engine.SetIgnoredNotes(&ignored);
    engine.SetCorrectionEnabled(true);
    engine.SetTransposeEnabled(state.range(1) != 0);
    engine.SetPitchShift(3.0f / 12.0f);
    engine.SetFormantShift(-1.0f / 12.0f);

    std::vector<float> left(static_cast<std::size_t>(hop));
    std::vector<float> right(static_cast<std::size_t>(hop));
    std::size_t block = 0;
    for (auto _ : state) {
        const float* const from = voice.data() + block * static_cast<std::size_t>(hop);
        const float* const inputs[] = {from, from};
        float* const outputs[] = {left.data(), right.data()};
        engine.Process(inputs, outputs, hop);
        block = (block + 1) % blocks;
    }
    state.counters["load"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * hop / static_cast<double>(rate),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(wetBlock)
    ->ArgNames({"rate", "transpose"})
    ->ArgsProduct({{44100, 48000, 88200, 96000, 192000}, {0, 1}});

}  // namespace orvane
