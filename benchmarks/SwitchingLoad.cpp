// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/BenchPlugin.h"
#include "tools/singer/Singer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace orvane
{

// A function of its own, so that the counter can be read after each call.
[[gnu::noinline]] void playCall(AEffect* effect, float** in, float** out, int frames)
{
    effect->processReplacing(effect, in, out, frames);
    // Keeps this a call that returns here.
    asm volatile("" ::: "memory");
}

}  // namespace orvane

/// Plays a sung voice through the library in calls of 64 frames, corrected: 0.7 s with Classic, the
/// same after going over to Fine and the same after going back: switching_load LIBRARY SOURCE, the
/// latter a value of the element `sourceType`. For counting the instructions of each call: the same
/// part of the song is heard each time, and calls of 64 frames are the shortest that are common.
int main(int argc, char** argv)
{
    using namespace orvane;
    void* const library = argc > 2 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library) {
        std::fputs("switching_load LIBRARY SOURCE: the library does not load\n", stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<PluginEntry>(::dlsym(library, "VSTPluginMain"));
    AEffect* const effect = entry(benchHost);
    if (!effect)
        return 2;
    constexpr int kSource = 3;
    constexpr int kCall = 64;
    constexpr int kCalls = 480;  // of each part, 60 blocks
    effect->setParameter(effect, kSource, static_cast<float>(std::atoi(argv[2])) / 4.0f);
    startPlugin(effect, true);
    const std::vector<float> voice = renderSong(demoSong(), static_cast<double>(kBenchRate));
    std::vector<float> left(kCall);
    std::vector<float> right(kCall);
    for (const bool isFine : {false, true, false}) {
        chooseTracking(effect, isFine);
        // Elements tell the bay of their new values on another thread.
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        for (int call = 0; call < kCalls; ++call) {
            std::vector<float> in(voice.begin() + kCall * (500 + call),
                                  voice.begin() + kCall * (501 + call));
            float* inputs[] = {in.data(), in.data()};
            float* outputs[] = {left.data(), right.data()};
            playCall(effect, inputs, outputs, kCall);
        }
    }
    ask(effect, effClose);
    ::dlclose(library);
    return 0;
}
