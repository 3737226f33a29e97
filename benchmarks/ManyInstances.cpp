// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/BenchPlugin.h"
#include "tools/singer/Singer.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace orvane
{
namespace
{

constexpr int kCall = 64;  // frames
constexpr int kThreads = 2;
constexpr std::chrono::duration<double> kPeriod(kCall / static_cast<double>(kBenchRate));

/// An instance that corrects, heard at a place of its own in the song.
class Instance
{
public:
    Instance(PluginEntry entry, const std::vector<float>& song, std::size_t start)
        : mEffect(entry(benchHost))
        , mSong(song)
        , mPosition(start)
    {
        startPlugin(mEffect, true);
    }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;
    ~Instance() { ask(mEffect, effClose); }

    void Play()
    {
        std::copy_n(mSong.begin() + static_cast<std::ptrdiff_t>(mPosition), kCall, mSamples[0]);
        std::copy_n(mSamples[0], kCall, mSamples[1]);
        float* channels[] = {mSamples[0], mSamples[1]};
        mEffect->processReplacing(mEffect, channels, channels, kCall);
        mPosition = (mPosition + kCall) % (mSong.size() - kCall);
    }

private:
    AEffect* const mEffect;
    const std::vector<float>& mSong;
    std::size_t mPosition;
    float mSamples[2][kCall] = {};
};

/// Asks for the scheduling that hosts give to their audio threads. Without the right to it the
/// figures are those of the ordinary scheduler.
void becomeAudioThread()
{
    sched_param priority{};
    priority.sched_priority = 70;
    static_cast<void>(::pthread_setschedparam(::pthread_self(), SCHED_FIFO, &priority));
}

/// Calls work(thread) on each thread at the begin of every period, in real time; returns the
/// seconds from there until the last thread was done, for each period. A period that ends late
/// starts the next one late, as in a host that drops what it missed.
template <class Work>
std::vector<double> playInRealTime(int seconds, Work work)
{
    std::vector<double> busy;
    const auto count = static_cast<std::size_t>(seconds / kPeriod.count());
    busy.reserve(count);
    auto begin = BenchClock::now();
    const auto closePeriod = [&]() noexcept {
        const std::chrono::duration<double> time = BenchClock::now() - begin;
        busy.push_back(time.count());
        begin += std::chrono::duration_cast<BenchClock::duration>(std::max(time, kPeriod));
    };
    std::barrier end(kThreads, closePeriod);
    const auto run = [&](int thread) {
        becomeAudioThread();
        for (std::size_t i = 0; i < count; ++i) {
            std::this_thread::sleep_until(begin);
            work(thread);
            end.arrive_and_wait();
        }
    };
    std::thread other(run, 1);
    std::thread(run, 0).join();
    other.join();
    return busy;
}

/// Plays new instances, shared out evenly among the threads.
std::vector<double> playInstances(PluginEntry entry, const std::vector<float>& song, int instances,
                                  int seconds)
{
    std::vector<std::unique_ptr<Instance>> playing;
    for (int i = 0; i < instances; ++i) {
        const double place = static_cast<double>(i) / (instances + 1);
        playing.push_back(std::make_unique<Instance>(
            entry, song, static_cast<std::size_t>(place * static_cast<double>(song.size()))));
    }
    return playInRealTime(seconds, [&](int thread) {
        for (auto k = static_cast<std::size_t>(thread); k < playing.size(); k += kThreads)
            playing[k]->Play();
    });
}

/// Lets the threads run idle loops for a time in each period: what the machine itself makes late.
std::vector<double> playNothing(double seconds, int duration)
{
    return playInRealTime(duration, [&](int /*thread*/) {
        const auto begin = BenchClock::now();
        while (std::chrono::duration<double>(BenchClock::now() - begin).count() < seconds) {
        }
    });
}

double print(const char* name, std::vector<double> busy)
{
    const auto late = std::ranges::count_if(busy, [](double s) { return s > kPeriod.count(); });
    const auto count = static_cast<double>(busy.size());
    std::ranges::sort(busy);
    const auto at = [&](double share) {
        return busy[static_cast<std::size_t>(share * (count - 1.0))];
    };
    std::printf(
        "  %s: median %.2f ms, 99 %% within %.2f ms, 99.9 %% within %.2f ms; late in %.3f %%\n",
        name, 1000.0 * at(0.5), 1000.0 * at(0.99), 1000.0 * at(0.999),
        100.0 * static_cast<double>(late) / count);
    return at(0.5);
}

}  // namespace
}  // namespace orvane

/// Plays instances in real time on two threads in periods of 64 frames and prints how many periods
/// are late: many_instances LIBRARY [INSTANCES [SECONDS]]. The instances do the same work in each
/// of three rounds, so the shortest time of a period is what it takes when nothing disturbs it.
int main(int argc, char** argv)
{
    using namespace orvane;
    void* const library = argc > 1 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library) {
        std::fputs("many_instances LIBRARY [INSTANCES [SECONDS]]: the library does not load\n",
                   stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<PluginEntry>(::dlsym(library, "VSTPluginMain"));
    const int instances = argc > 2 ? std::atoi(argv[2]) : 200;
    const int seconds = argc > 3 ? std::atoi(argv[3]) : 20;
    const std::vector<float> song = renderSong(demoSong(), static_cast<double>(kBenchRate));
    std::printf("%d instances in periods of %d frames (%.2f ms) on %d threads, %d s\n", instances,
                kCall, 1000.0 * kPeriod.count(), kThreads, seconds);
    std::vector<double> shortest;
    double median = 0.0;
    for (int round = 0; round < 3; ++round) {
        const std::vector<double> busy = playInstances(entry, song, instances, seconds);
        median = print("instances (good: late in less than 0.1 %)", busy);
        if (shortest.empty())
            shortest = busy;
        std::ranges::transform(shortest, busy, shortest.begin(),
                               [](double a, double b) { return std::min(a, b); });
    }
    print("the shortest time of each period", shortest);
    print("idle loops of the same median", playNothing(median, seconds));
    ::dlclose(library);
    return 0;
}
