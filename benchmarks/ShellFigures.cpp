// SPDX-License-Identifier: GPL-3.0-or-later
// What the shell of a plug-in interface costs: the same work behind each of them.

#include "benchmarks/BenchPlugin.h"
#include "pluginwrappers/lv2/Lv2Ports.h"
#include "tools/render/UridMap.h"
#include "tools/singer/Singer.h"

#include <lv2/core/lv2.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

using namespace orvane;

namespace
{

constexpr int kBlock = 256;  // frames

/// An instance behind one interface, in a host that renders offline, so that changes are delivered
/// at the same places of the stream in every run. It corrects in its first block.
class Shell
{
public:
    Shell() = default;
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;
    virtual ~Shell() = default;
    virtual void Run(float* left, float* right) = 0;
};

class VstShell : public Shell
{
public:
    explicit VstShell(void* library)
        : mEffect(reinterpret_cast<PluginEntry>(::dlsym(library, "VSTPluginMain"))(offlineHost))
    {
        startPlugin(mEffect, true);
        ask(mEffect, effSetBlockSize, kBlock);
    }
    ~VstShell() override { ask(mEffect, effClose); }
    void Run(float* left, float* right) override
    {
        std::array<float*, 2> channels{left, right};
        mEffect->processReplacing(mEffect, channels.data(), channels.data(), kBlock);
    }

private:
    static std::intptr_t offlineHost(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                     std::intptr_t value, void* ptr, float opt)
    {
        return opcode == audioMasterGetCurrentProcessLevel
                   ? kVstProcessLevelOffline
                   : benchHost(effect, opcode, index, value, ptr, opt);
    }

    AEffect* const mEffect;
};

class Lv2Shell : public Shell
{
public:
    explicit Lv2Shell(void* library)
        : mDescriptor(
              *reinterpret_cast<LV2_Descriptor_Function>(::dlsym(library, "lv2_descriptor"))(0))
    {
        static UridMap urids;
        const LV2_Feature map{LV2_URID__map, &urids.map};
        const std::array<const LV2_Feature*, 2> features{&map, nullptr};
        mInstance = mDescriptor.instantiate(&mDescriptor, static_cast<double>(kBenchRate), "",
                                            features.data());
        mDescriptor.connect_port(mInstance, kLv2FreeWheel, &mOn);
        mDescriptor.connect_port(mInstance, kLv2FirstParameter, &mOn);
        mDescriptor.connect_port(mInstance, kLv2Latency, &mLatency);
        mDescriptor.activate(mInstance);
    }
    ~Lv2Shell() override { mDescriptor.cleanup(mInstance); }
    void Run(float* left, float* right) override
    {
        for (const std::uint32_t port : {kLv2AudioIn, kLv2AudioOut}) {
            mDescriptor.connect_port(mInstance, port, left);
            mDescriptor.connect_port(mInstance, port + 1, right);
        }
        mDescriptor.run(mInstance, kBlock);
    }

private:
    const LV2_Descriptor& mDescriptor;
    LV2_Handle mInstance = nullptr;
    float mOn = 1.0f;
    float mLatency = 0.0f;
};

/// Opens an instance by one of the interfaces of a library.
using Open = std::function<std::unique_ptr<Shell>()>;

void runBlocks(const Open& open, int blocks)
{
    const std::vector<float> voice = renderSong(demoSong(), kBenchRate);
    const auto shell = open();
    std::array<float, kBlock> left{};
    std::array<float, kBlock> right{};
    for (int i = 0; i < blocks; ++i) {
        const auto at = voice.begin() + i * kBlock % static_cast<int>(voice.size() - kBlock);
        std::copy_n(at, kBlock, left.begin());
        std::copy_n(at, kBlock, right.begin());
        shell->Run(left.data(), right.data());
    }
}

double openingMilliseconds(const Open& open)
{
    double longest = 0.0;
    for (int i = 0; i < 20; ++i) {
        const auto begin = BenchClock::now();
        const auto shell = open();
        if (i > 0)  // the first one reads what all use
            longest = std::max(longest, milliseconds(BenchClock::now() - begin));
    }
    return longest;
}

double megabytesOfAnInstance(const Open& open)
{
    constexpr int kInstances = 16;
    const auto used = [] {
        const auto state = mallinfo2();
        return static_cast<double>(state.uordblks + state.hblkhd);
    };
    std::vector<std::unique_ptr<Shell>> shells;
    shells.push_back(open());
    const double before = used();
    for (int i = 0; i < kInstances; ++i)
        shells.push_back(open());
    return (used() - before) / kInstances / 1e6;
}

}  // namespace

/// Prints opening time and memory of the plug-in by an interface, VST or LV2; with a number, only
/// runs that many blocks, for counting instructions: shell_figures LIBRARY INTERFACE [BLOCKS].
int main(int argc, char** argv)
{
    void* const library = argc > 2 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    const std::string_view interface = library ? argv[2] : "";
    if (interface != "VST" && interface != "LV2") {
        std::fputs(
            "shell_figures LIBRARY VST|LV2 [BLOCKS]: no library that loads, or another word\n",
            stderr);
        return 2;
    }
    const auto open = [&]() -> std::unique_ptr<Shell> {
        if (interface == "LV2")
            return std::make_unique<Lv2Shell>(library);
        return std::make_unique<VstShell>(library);
    };
    if (argc > 3) {
        runBlocks(open, std::atoi(argv[3]));
    } else {
        std::printf("  %-4s opens in at most %.1f ms, takes %.2f MB an instance (good: below 20 ms "
                    "and 5 MB)\n",
                    argv[2], openingMilliseconds(open), megabytesOfAnInstance(open));
    }
    ::dlclose(library);
    return 0;
}
