// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginwrappers/interface/AEffect.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"
#include "tools/singer/Singer.h"

#include <dlfcn.h>

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

using Clock = std::chrono::steady_clock;
using Entry = AEffect* (*)(audioMasterCallback);

constexpr float kRate = 44100.0f;
constexpr int kBlock = 512;
constexpr double kTicksASecond = 24.0;
constexpr std::uint32_t kGrey = 0x808080;  // the probe's windows

std::intptr_t host(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                   std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    return opcode == audioMasterVersion ? 2400 : 0;
}

std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::intptr_t value = 0,
                  void* ptr = nullptr, float opt = 0.0f)
{
    return effect->dispatcher(effect, opcode, 0, value, ptr, opt);
}

double milliseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

/// What the system tells of the library's interface thread.
struct InterfaceUse
{
    double milliseconds = 0.0;  // on a processor
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

/// An instance with its window in a parent of its own.
class Editor
{
public:
    Editor(Entry entry, DisplayProbe& probe, int x, int y)
        : place{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 454, 430}
        , parent(probe.MakeWindow(place))
        , effect(entry(host))
    {
        effect->setParameter(effect, 0, 1.0f);  // corrects, so that the meter moves
        ask(effect, effSetSampleRate, 0, nullptr, kRate);
        ask(effect, effSetBlockSize, kBlock);
        ask(effect, effMainsChanged, 1);
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
        std::array<float, kBlock> left{};
        std::array<float, kBlock> right{};
        std::copy_n(samples, kBlock, left.begin());
        std::array<float*, 2> channels{left.data(), right.data()};
        std::copy_n(samples, kBlock, right.begin());
        effect->processReplacing(effect, channels.data(), channels.data(), kBlock);
    }
    [[nodiscard]] bool IsSeen(DisplayProbe& probe) const
    {
        return probe.PixelAt(place.x + 300, place.y + 15) != kGrey;
    }

    const xcb_rectangle_t place;
    const xcb_window_t parent;
    AEffect* const effect;
};

void printOpening(Entry entry, DisplayProbe& probe)
{
    const Editor editor(entry, probe, 0, 0);
    double first = 0.0;
    double later = 0.0;
    double call = 0.0;
    for (int i = 0; i < 20; ++i) {
        const auto begin = Clock::now();
        editor.Open();
        const auto returned = Clock::now();
        while (!editor.IsSeen(probe))
            std::this_thread::sleep_for(50us);
        const double time = milliseconds(Clock::now() - begin);
        (i == 0 ? first : later) = std::max(i == 0 ? first : later, time);
        call = std::max(call, milliseconds(returned - begin));
        editor.Close();
        static_cast<void>(waitFor([&] { return !editor.IsSeen(probe); }));
    }
    std::printf("  from opening to the first picture on the screen: first %.1f ms, at most %.1f ms "
                "after; the call at most %.1f ms\n",
                first, later, call);
}

/// By covering the window and uncovering it.
void printRepaint(Entry entry, DisplayProbe& probe)
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
    std::printf("  a full repaint: %.2f ms\n", (interfaceUse() - before).milliseconds / kTimes);
}

/// Milliseconds of the interface thread in a second, while the voice is heard in real time.
double loadOf(const std::vector<const Editor*>& editors, const std::vector<float>& voice)
{
    constexpr int kSeconds = 8;
    const auto begin = Clock::now();
    const auto before = interfaceUse();
    const int blocks = kSeconds * static_cast<int>(kRate) / kBlock;
    const std::size_t room = voice.size() - kBlock;
    for (int i = 0; i < blocks; ++i) {
        const auto at = static_cast<std::size_t>(i) * kBlock % room;
        for (const Editor* const editor : editors)
            editor->Process(voice.data() + at);
        std::this_thread::sleep_until(begin + std::chrono::microseconds(11'610) * (i + 1));
    }
    return (interfaceUse() - before).milliseconds / kSeconds;
}

void printMeter(Entry entry, DisplayProbe& probe, const std::vector<float>& voice)
{
    const Editor editor(entry, probe, 0, 0);
    const double closed = loadOf({&editor}, voice);
    editor.Open();
    const double open = loadOf({&editor}, voice);
    std::printf("  a tick while the meter moves: %.3f ms with the window, %.3f ms without\n",
                open / kTicksASecond, closed / kTicksASecond);
}

void printIdle(Entry entry, DisplayProbe& probe)
{
    const Editor editor(entry, probe, 0, 0);
    editor.Open();
    std::this_thread::sleep_for(1s);
    const auto before = interfaceUse();
    std::this_thread::sleep_for(10s);
    const InterfaceUse use = interfaceUse() - before;
    std::printf("  an open window at rest: %.2f ms and %.1f wakes a second\n",
                use.milliseconds / 10.0, static_cast<double>(use.wakes) / 10.0);
}

void printCrowd(Entry entry, DisplayProbe& probe, const std::vector<float>& voice)
{
    std::vector<std::unique_ptr<Editor>> owned;
    std::vector<const Editor*> editors;
    for (int i = 0; i < 20; ++i) {
        owned.push_back(std::make_unique<Editor>(entry, probe, 30 * (i % 5), 20 * i));
        owned.back()->Open();
        editors.push_back(owned.back().get());
    }
    std::printf("  twenty windows whose meters move: %.1f %% of a processor\n",
                loadOf(editors, voice) / 10.0);
}

}  // namespace

/// Prints what the window costs, on a display that nobody sees: window_figures LIBRARY.
int main(int argc, char** argv)
{
    void* const library = argc > 1 ? ::dlopen(argv[1], RTLD_NOW) : nullptr;
    if (!library || !VirtualDisplay::IsAvailable()) {
        std::fputs("window_figures LIBRARY: no library or no X server for tests\n", stderr);
        return 2;
    }
    const auto entry = reinterpret_cast<Entry>(::dlsym(library, "VSTPluginMain"));
    const VirtualDisplay display;
    DisplayProbe probe;
    const std::vector<float> voice = renderSong(demoSong(), kRate);
    std::puts("The window");
    printOpening(entry, probe);
    printRepaint(entry, probe);
    printMeter(entry, probe, voice);
    printIdle(entry, probe);
    printCrowd(entry, probe, voice);
    ::dlclose(library);
    return 0;
}
