// SPDX-License-Identifier: GPL-3.0-or-later
// Time for which a host waits while it saves or loads a bank or switches programs, when every
// program holds nearly as many custom scales as a preset can store. Good: below 20 ms each, the
// length of a frame on the screen.

#include "kestrune/common/pitch/KestruneScaleTable.h"
#include "kestrune/common/pitch/ZPsolaBay.h"
#include "pluginwrappers/common/ProductInstance.h"
#include "zlib/common/documents/ZAudioDocument.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace orvane
{

namespace
{

void addScales(const ProductInstance& plugin)
{
    const ZInterfaceLock lock;
    const auto document =
        boost::dynamic_pointer_cast<ZAudioDocument>(plugin.app->GetCurrentDocument());
    const auto bay =
        boost::dynamic_pointer_cast<ZPsolaBay>(document->GetOutputNetwork()->FindBay("PsolaBay"));
    constexpr std::int32_t kDegreesOfScale[] = {2, 3, 5, 7, 10};
    constexpr int kScales =
        KestruneScaleTable::kCustomRows - 2;  // one more would show a message box
    for (int i = 0; i < kScales; ++i)
        bay->AddCustomScale("A scale of my own " + std::to_string(i), kDegreesOfScale);
}

/// An instance with custom scales in every program.
class FullBank
{
public:
    FullBank()
    {
        addScales(plugin);
        const std::string program = plugin.Program();
        for (std::int32_t i = 0; i < plugin.effect->numPrograms; ++i) {
            plugin.Ask(effSetProgram, 0, i);
            plugin.LoadProgram(program);
        }
    }

    ProductInstance plugin;
};

void saveBank(benchmark::State& state)
{
    const FullBank bank;
    for (auto _ : state) {
        void* data = nullptr;
        benchmark::DoNotOptimize(bank.plugin.Ask(effGetChunk, 0, 0, &data));
    }
    state.counters["bytes"] = static_cast<double>(bank.plugin.Bank().size());
}

void loadBank(benchmark::State& state)
{
    const FullBank bank;
    std::string chunk = bank.plugin.Bank();
    for (auto _ : state)
        benchmark::DoNotOptimize(bank.plugin.Ask(
            effSetChunk, 0, static_cast<std::intptr_t>(chunk.size()), chunk.data()));
}

void switchPrograms(benchmark::State& state)
{
    const FullBank bank;
    std::intptr_t program = 0;
    for (auto _ : state)
        bank.plugin.Ask(effSetProgram, 0, program++ % 7);
}

BENCHMARK(saveBank)->Unit(benchmark::kMillisecond);
BENCHMARK(loadBank)->Unit(benchmark::kMillisecond);
BENCHMARK(switchPrograms)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace orvane
