// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/BenchPlugin.h"
#include "pluginwrappers/interface/ERect.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"
#include "tools/singer/Singer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace orvane;
using namespace std::chrono_literals;

namespace
{

constexpr double kTicksASecond = 24.0;
constexpr std::uint32_t kGrey = 0x808080;  // colour of the probe's windows

/// Processor use of the library's interface thread, from /proc.
struct InterfaceUse
{
    double milliseconds = 0.0;  // of processor time
    long wakes = 0;
};

InterfaceUse operator-(const InterfaceUse& a, const InterfaceUse& b)
{
    return {a.milliseconds - b.milliseconds, a.wakes - b.wakes};
}

InterfaceUse interfaceUse()
{
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm"), name);
        if (name != "interface")
            continue;
        InterfaceUse use;
        double waiting = 0.0;
        std::ifstream(task.path() / "schedstat") >> use.milliseconds >> waiting >> use.wakes;
        use.milliseconds /= 1e6;
        return use;
    }
    return {};
}

/// Resident memory of the process, in KiB.
long residentKiB()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * ::sysconf(_SC_PAGESIZE) / 1024;
}

/// Returns an area as large as the plug-in wants its window.
xcb_rectangle_t placeFor(AEffect* effect, int x, int y)
{
    ERect* rect = nullptr;
    ask(effect, effEditGetRect, 0, static_cast<void*>(&rect));
    return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
            static_cast<std::uint16_t>(rect->right), static_cast<std::uint16_t>(rect->bottom)};
}

/// An instance with its editor in a parent window of its own.
class Editor
{
public:
    Editor(PluginEntry entry, DisplayProbe& probe, int x, int y)
        : effect(entry(benchHost))
        , place(placeFor(effect, x, y))
        , parent(probe.MakeWindow(place))
    {
        startPlugin(effect, true);  // corrects, so that the meter moves
    }
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;
    ~Editor() { ask(effect, effClose); }

    void Open() const
    {
        ask(effect, effEditOpen, 0, reinterpret_cast<void*>(std::uintptr_t{parent}));
    }
    void Close() const { ask(effect, effEditClose); }
    void Process(const float* samples) const
    {
        std::array<float, kBenchBlock> left{};
        std::array<float, kBenchBlock> right{};
        std::copy_n(samples, kBenchBlock, left.begin());
        std::array<float*, 2> channels{left.data(), right.data()};
        std::copy_n(samples, kBenchBlock, right.begin());
        effect->processReplacing(effect, channels.data(), channels.data(), kBenchBlock);
    }
    [[nodiscard]] bool IsSeen(DisplayProbe& probe) const
    {
        return probe.PixelAt(place.x + 300, place.y + 15) != kGrey;
    }

    AEffect* const effect;
    const xcb_rectangle_t place;
    const xcb_window_t parent;
};

void printOpening(PluginEntry entry, DisplayProbe& probe)
{
    const Editor editor(entry, probe, 0, 0);
    const long before = residentKiB();
    long memory = 0;
    double first = 0.0;
    double later = 0.0;
    double call = 0.0;
    for (int i = 0; i < 20; ++i) {
        const auto begin = BenchClock::now();
        editor.Open();
        const auto returned = BenchClock::now();
        while (!editor.IsSeen(probe))
            std::this_thread::sleep_for(50us);
        const double time = milliseconds(BenchClock::now() - begin);
        (i == 0 ? first : later) = std::max(i == 0 ? first : later, time);
        if (i == 0)
            memory = residentKiB() - before;
        call = std::max(call, milliseconds(returned - begin));
        editor.Close();
        static_cast<void>(waitFor([&] { return !editor.IsSeen(probe); }));
    }
    std::printf(
        "  from opening to the first picture on the screen: first %.1f ms, later at most %.1f "
        "ms (good: below 200 and 60 ms); the call takes at most %.1f ms; %ld KiB of memory\n",
        first, later, call, memory);
}

/// Measures a repaint by covering and uncovering the window.
void printRepaint(PluginEntry entry, DisplayProbe& probe)
{
    constexpr int kTimes = 50;
    const Editor editor(entry, probe, 0, 0);
    editor.Open();
    static_cast<void>(waitFor([&] { return editor.IsSeen(probe); }));
    const auto before = interfaceUse();
    for (int i = 0; i < kTimes; ++i) {
        probe.Destroy(probe.MakeWindow(editor.place));
        static_cast<void>(waitFor([&] { return editor.IsSeen(probe); }));
    }
    std::printf("  a full repaint: %.2f ms (good: below 4 ms)\n",
                (interfaceUse() - before).milliseconds / kTimes);
}

/// Milliseconds for which the interface thread runs in each second, while the voice plays in real
/// time.
double loadOf(const std::vector<const Editor*>& editors, const std::vector<float>& voice)
{
    constexpr int kSeconds = 8;
    const auto begin = BenchClock::now();
    const auto before = interfaceUse();
    const int blocks = kSeconds * static_cast<int>(kBenchRate) / kBenchBlock;
    const std::size_t room = voice.size() - kBenchBlock;
    for (int i = 0; i < blocks; ++i) {
        const auto at = static_cast<std::size_t>(i) * kBenchBlock % room;
        for (const Editor* const editor : editors)
            editor->Process(voice.data() + at);
        std::this_thread::sleep_until(begin + std::chrono::microseconds(11'610) * (i + 1));
    }
    return (interfaceUse() - before).milliseconds / kSeconds;
}

void printMeter(PluginEntry entry, DisplayProbe& probe, const std::vector<float>& voice)
{
    const Editor editor(entry, probe, 0, 0);
    const double closed = loadOf({&editor}, voice);
    editor.Open();
    const double open = loadOf({&editor}, voice);
    std::printf(
        "  a tick while the meter moves: %.3f ms with the window, %.3f ms without (good: below 2 "
        "and 0.2 ms)\n",
        open / kTicksASecond, closed / kTicksASecond);
}

void printIdle(PluginEntry entry, DisplayProbe& probe)
{
    const Editor editor(entry, probe, 0, 0);
    editor.Open();
    std::this_thread::sleep_for(1s);
    const auto before = interfaceUse();
    std::this_thread::sleep_for(10s);
    const InterfaceUse use = interfaceUse() - before;
    // The looper's ticks and the frames of the meter; their periods have no common grid, and frames
    // that waited for a tick would move the meter and the graph unevenly.
    std::printf(
        "  an open window at rest: %.2f ms and %.1f wakes in each second (good: below 5 ms and 40 "
        "wakes, of 24 ticks and 15 frames)\n",
        use.milliseconds / 10.0, static_cast<double>(use.wakes) / 10.0);
}

void printCrowd(PluginEntry entry, DisplayProbe& probe, const std::vector<float>& voice)
{
    std::vector<std::unique_ptr<Editor>> owned;
    std::vector<const Editor*> editors;
    for (int i = 0; i < 20; ++i) {
        owned.push_back(std::make_unique<Editor>(entry, probe, 30 * (i % 5), 20 * i));
        owned.back()->Open();
        editors.push_back(owned.back().get());
    }
    std::printf("  twenty windows whose meters move: %.1f %% of a core (good: below 50 %%)\n",
                loadOf(editors, voice) / 10.0);
}

}  // namespace

/// Prints what the window costs at a scale, on a virtual display: window_figures LIBRARY PERCENT.
/// A scale is measured in a process of its own, so that the first opening there finds nothing
/// loaded.
int main(int argc, char** argv)
{
    void* const library = argc > 2 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library || !VirtualDisplay::IsAvailable()) {
        std::fputs("window_figures LIBRARY PERCENT: no library or no X server for tests\n", stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<PluginEntry>(::dlsym(library, "VSTPluginMain"));
    const VirtualDisplay display;
    DisplayProbe probe;
    const std::vector<float> voice = renderSong(demoSong(), kBenchRate);
    const int percent = std::atoi(argv[2]);
    probe.SetResources("Xft.dpi:\t" + std::to_string(96 * percent / 100) + "\n");
    std::printf("The window at %d %%\n", percent);
    printOpening(entry, probe);
    printRepaint(entry, probe);
    printMeter(entry, probe, voice);
    printIdle(entry, probe);
    printCrowd(entry, probe, voice);
    ::dlclose(library);
    return 0;
}
