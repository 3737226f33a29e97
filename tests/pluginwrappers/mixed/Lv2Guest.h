// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/lv2/Lv2Host.h"
#include "pluginwrappers/mixed/Guest.h"

#include <dlfcn.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/ui/ui.h>

#include <atomic>
#include <utility>

namespace orvane
{

/// The LV2 form in a host made of lilv, which loads the library of the window by itself.
class Lv2Guest : public Guest
{
public:
    explicit Lv2Guest(Lv2Bundle& bundle, bool isOffline)
        : mInstance(bundle, 44100.0, kBlock)
        , mKeyPort(bundle.PortOf("key"))
        , mKey(static_cast<int>(mInstance.values.at(mKeyPort)))
        , mUrids(bundle.urids)
    {
        mInstance.Value("freewheel") = isOffline ? 1.0f : 0.0f;
        mInstance.Activate();
    }
    ~Lv2Guest() override
    {
        Hide();
        mInstance.Deactivate();
    }

    void Run(Block& left, Block& right) override
    {
        mInstance.values[mKeyPort] = static_cast<float>(mKey.load());
        // The ports of sound by their numbers: only the main thread may ask the bundle.
        for (std::uint32_t port = 0; port < 4; ++port)
            lilv_instance_connect_port(mInstance.instance, port,
                                       port % 2 == 0 ? left.data() : right.data());
        mInstance.Run(kBlock);
    }
    void SetKey(int key) override { mKey = key; }
    [[nodiscard]] std::string Save() override { return mInstance.Text(); }
    [[nodiscard]] bool Load(const std::string& text) override
    {
        return mInstance.RestoreText(text) == LV2_STATE_SUCCESS;
    }
    [[nodiscard]] bool Show(xcb_window_t parent) override
    {
        mLibrary = ::dlopen(KESTRUNE_LV2_BUNDLE "/cantorel-mini.so", RTLD_NOW | RTLD_LOCAL);
        if (mLibrary == nullptr)
            return false;
        const auto entry =
            reinterpret_cast<LV2UI_DescriptorFunction>(::dlsym(mLibrary, "lv2ui_descriptor"));
        mUi = entry(0);
        const std::array<LV2_Feature, 3> features{
            {{LV2_INSTANCE_ACCESS_URI, mInstance.Handle()},
             {LV2_UI__parent, reinterpret_cast<void*>(std::uintptr_t{parent})},
             {LV2_URID__map, &mUrids.map}}};
        const std::array<const LV2_Feature*, 4> list{&features[0], &features[1], &features[2],
                                                     nullptr};
        LV2UI_Widget widget = nullptr;
        const auto ignore = [](LV2UI_Controller, std::uint32_t, std::uint32_t, std::uint32_t,
                               const void*) {};
        mWindow = mUi->instantiate(mUi, "urn:orvane:cantorel-mini", "", ignore, this, &widget,
                                   list.data());
        return mWindow != nullptr;
    }
    void Idle() override
    {
        if (mWindow != nullptr)
            static_cast<const LV2UI_Idle_Interface*>(mUi->extension_data(LV2_UI__idleInterface))
                ->idle(mWindow);
    }
    void Hide() override
    {
        if (mWindow != nullptr)
            mUi->cleanup(std::exchange(mWindow, nullptr));
        if (mLibrary != nullptr)
            ::dlclose(std::exchange(mLibrary, nullptr));
    }

private:
    Lv2Instance mInstance;
    const std::uint32_t mKeyPort;
    std::atomic<int> mKey;
    UridMap& mUrids;
    void* mLibrary = nullptr;
    const LV2UI_Descriptor* mUi = nullptr;
    LV2UI_Handle mWindow = nullptr;
};

}  // namespace orvane
