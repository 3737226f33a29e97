// SPDX-License-Identifier: GPL-3.0-or-later
// Many instances of all forms in one process, on threads of a host. KESTRUNE_SOAK_SECONDS sets the
// length, two seconds otherwise.

#include "PluginForm.h"
#include "support/DisplayProbe.h"
#include "support/VirtualDisplay.h"

using namespace orvane;

namespace
{

constexpr std::size_t kInstances = 64;
constexpr int kMostWindows = 6;

// Points on the window that open no menu: boxes, the slider, keys.
constexpr std::array<std::array<int, 2>, 4> kControls{{{20, 98}, {20, 163}, {240, 200}, {50, 310}}};

/// A host with room for kInstances, whose two audio threads run blocks of all that are there.
struct House
{
    House()
    {
        for (std::size_t i = 0; i < mThreads.size(); ++i)
            mThreads[i] = std::jthread([this, i](const std::stop_token& stop) { Play(stop, i); });
    }
    House(House&&) = delete;
    ~House()
    {
        for (std::jthread& thread : mThreads)
            thread = {};
        EXPECT_TRUE(mIsSound) << "a sample that is not finite, or louder than 8";
    }

    // Of the main thread.
    [[nodiscard]] bool IsThere(std::size_t place) const { return mRooms[place].form != nullptr; }
    [[nodiscard]] PluginForm& At(std::size_t place) { return *mRooms[place].form; }
    void Open(std::size_t place, bool isOffline)
    {
        const FormKind kind = kFormKinds[place % 3];
        auto form = mHost.Make(kind, isOffline && kind != FormKind::kVst);
        form->Start();
        const std::lock_guard lock(mRooms[place].mutex);
        mRooms[place].form = std::move(form);
    }
    void Close(std::size_t place)
    {
        Hide(place);
        const std::lock_guard lock(mRooms[place].mutex);
        mRooms[place].form->Stop();
        mRooms[place].form.reset();
    }
    void SaveAndLoad(std::size_t place)
    {
        const std::string text = At(place).Text();
        const std::lock_guard lock(mRooms[place].mutex);
        EXPECT_TRUE(At(place).Restore(text));
    }
    void SetKey(std::size_t place, std::size_t key)
    {
        const std::lock_guard lock(mRooms[place].mutex);
        At(place).Set(PluginForm::kKey, static_cast<float>(key));
    }
    /// Shows or hides the window in a new window of the probe.
    void ToggleWindow(std::size_t place, DisplayProbe& probe)
    {
        Room& room = mRooms[place];
        if (room.hasWindow) {
            Hide(place);
        } else if (mWindows < kMostWindows) {
            const auto corner = static_cast<std::int16_t>(20 * place % 320);
            EXPECT_TRUE(room.form->Show(probe.MakeWindow({corner, corner, 454, 430})));
            room.hasWindow = true;
            ++mWindows;
        }
    }
    void Idle()
    {
        for (Room& room : mRooms)
            if (room.form)
                room.form->Idle();
    }
    /// Returns the key in the saved program; -1 for none.
    [[nodiscard]] int SavedKey(std::size_t place)
    {
        const std::string text = At(place).Text();
        const std::size_t element = text.find("name=\"key\"");
        const std::size_t value = text.find("int32value=\"", element);
        return value < text.size() ? std::atoi(text.c_str() + value + 12) : -1;
    }

private:
    struct Room
    {
        std::mutex mutex;  // held by an audio thread while it runs a block, and to come or go
        std::unique_ptr<PluginForm> form;
        bool hasWindow = false;  // of the main thread
    };

    void Hide(std::size_t place)
    {
        if (!std::exchange(mRooms[place].hasWindow, false))
            return;
        At(place).Hide();
        --mWindows;
    }
    void Play(const std::stop_token& stop, std::size_t thread)
    {
        const std::vector<float> voice = harmonicTone(196.0, 44100.0, 256);
        for (std::size_t place = thread; !stop.stop_requested();) {
            Room& room = mRooms[place];
            if (const std::unique_lock lock(room.mutex, std::try_to_lock); lock && room.form) {
                std::vector<float> left = voice;
                std::vector<float> right = voice;
                room.form->Run(left.data(), right.data(), left.size());
                for (const float sample : left)
                    if (!(std::fabs(sample) < 8.0f))
                        mIsSound = false;
            }
            place += mThreads.size();
            if (place >= mRooms.size()) {
                place = thread;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    }

    FormsHost mHost;
    std::array<Room, kInstances> mRooms;
    int mWindows = 0;
    std::atomic<bool> mIsSound{true};
    std::array<std::jthread, 2> mThreads;
};

std::vector<std::size_t> allPlaces(std::mt19937& random)
{
    std::vector<std::size_t> places(kInstances);
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::shuffle(places.begin(), places.end(), random);
    return places;
}

void act(House& house, DisplayProbe* probe, std::mt19937& random)
{
    const std::size_t place = random() % kInstances;
    const auto what = random() % 8;
    if (!house.IsThere(place))
        house.Open(place, random() % 4 == 0);
    else if (what == 0)
        house.Close(place);
    else if (what <= 2)
        house.SaveAndLoad(place);
    else if (what <= 4 || probe == nullptr)
        house.SetKey(place, random() % 12);
    else if (what <= 6)
        house.ToggleWindow(place, *probe);
    else {
        const auto [x, y] = kControls[random() % kControls.size()];
        const auto corner = static_cast<int>(20 * place % 320);
        probe->MovePointer(corner + x, corner + y);
        probe->Click(1);
    }
    house.Idle();
}

}  // namespace

TEST(MixedFormsTest, AllFormsAreOneLibraryWithOneInterfaceThread)
{
    const std::size_t threads = threadCount();
    {
        FormsHost host;
        std::vector<std::unique_ptr<PluginForm>> forms;
        for (const FormKind kind : kFormKinds)
            forms.push_back(host.Make(kind));
        EXPECT_EQ(threadCount(), threads + 1);
    }
    EXPECT_TRUE(threadsFallTo(threads));
    EXPECT_FALSE(PluginLibrary::IsLoaded());
}

TEST(MixedFormsTest, InstancesOfAllFormsComeAndGoInOneProcessInAnyOrderAndKeepToThemselves)
{
    std::unique_ptr<VirtualDisplay> screen;
    std::unique_ptr<DisplayProbe> probe;
    if (VirtualDisplay::IsAvailable()) {
        screen = std::make_unique<VirtualDisplay>();
        probe = std::make_unique<DisplayProbe>();
    }
    {
        std::mt19937 random(11);
        House house;
        for (const std::size_t place : allPlaces(random))
            house.Open(place, random() % 4 == 0);
        using Clock = std::chrono::steady_clock;
        for (const auto end = Clock::now() + soakTime(); Clock::now() < end;)
            act(house, probe.get(), random);
        for (std::size_t place = 0; place < kInstances; ++place) {
            if (!house.IsThere(place))
                house.Open(place, false);
            house.SetKey(place, place % 12);
        }
        for (std::size_t place = 0; place < kInstances; ++place)
            EXPECT_TRUE(eventually([&] {
                house.Idle();
                return house.SavedKey(place) == static_cast<int>(place % 12);
            })) << "instance "
                << place << " holds the key " << house.SavedKey(place);
        for (const std::size_t place : allPlaces(random))
            house.Close(place);
    }
    EXPECT_FALSE(PluginLibrary::IsLoaded());
}
