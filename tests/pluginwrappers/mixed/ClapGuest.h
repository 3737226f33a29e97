// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/clap/ClapTestHost.h"
#include "pluginwrappers/mixed/Guest.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>

namespace orvane
{

/// The CLAP form in a host that knows its threads; a line in its log fails the test.
class ClapGuest : public Guest
{
public:
    explicit ClapGuest(bool isOffline)
    {
        const auto& factory = mLibrary.Get<clap_plugin_factory>(kClapPluginFactory);
        mPlugin = factory.create_plugin(&factory, &mHost, "orvane.cantorel-mini");
        if (mPlugin == nullptr || !mPlugin->init(mPlugin))
            throw std::runtime_error("the library makes no instance");
        mState = static_cast<const clap_plugin_state*>(mPlugin->get_extension(mPlugin, kClapState));
        mGui = static_cast<const clap_plugin_gui*>(mPlugin->get_extension(mPlugin, kClapGui));
        static_cast<const clap_plugin_render*>(mPlugin->get_extension(mPlugin, kClapRender))
            ->set(mPlugin, isOffline ? CLAP_RENDER_OFFLINE : CLAP_RENDER_REALTIME);
        EXPECT_TRUE(mPlugin->activate(mPlugin, 44100.0, 1, kBlock));
        const AudioRole audio;
        EXPECT_TRUE(mPlugin->start_processing(mPlugin));
    }
    ~ClapGuest() override
    {
        {
            const AudioRole audio;
            mPlugin->stop_processing(mPlugin);
        }
        mPlugin->deactivate(mPlugin);
        mPlugin->destroy(mPlugin);
    }

    void Run(Block& left, Block& right) override
    {
        const AudioRole audio;
        std::array<float*, 2> channels{left.data(), right.data()};
        const clap_audio_buffer in{channels.data(), nullptr, 2, 0, 0};
        clap_audio_buffer out{channels.data(), nullptr, 2, 0, 0};
        if (const int key = mKey.exchange(-1); key >= 0)
            mEvents.Value(2, key, /*time*/ 0);
        const clap_process block{-1, kBlock, nullptr, &in, &out, 1, 1, &mEvents.in, &mEvents.out};
        EXPECT_NE(mPlugin->process(mPlugin, &block), CLAP_PROCESS_ERROR);
        mEvents.Clear();
        static_cast<void>(mEvents.TakeNotes());
    }
    void SetKey(int key) override { mKey = key; }
    [[nodiscard]] std::string Save() override
    {
        ClapText stream;
        EXPECT_TRUE(mState->save(mPlugin, &stream.out));
        return stream.text;
    }
    [[nodiscard]] bool Load(const std::string& text) override
    {
        ClapText stream(text);
        return mState->load(mPlugin, &stream.in);
    }
    [[nodiscard]] bool Show(xcb_window_t parent) override
    {
        const clap_window window{kClapWindowX11, {parent}};
        return mGui->create(mPlugin, kClapWindowX11, false) && mGui->set_parent(mPlugin, &window) &&
               mGui->show(mPlugin);
    }
    void Idle() override
    {
        if (mWantsCall.exchange(false))
            mPlugin->on_main_thread(mPlugin);
    }
    void Hide() override { mGui->destroy(mPlugin); }

private:
    /// While it lives its thread is the audio thread of an instance.
    struct AudioRole
    {
        AudioRole() { IsAudio() = true; }
        AudioRole(const AudioRole&) = delete;
        AudioRole& operator=(const AudioRole&) = delete;
        ~AudioRole() { IsAudio() = false; }
    };
    static bool& IsAudio()
    {
        static thread_local bool isAudio = false;
        return isAudio;
    }
    static ClapGuest& From(const clap_host* host)
    {
        return *static_cast<ClapGuest*>(host->host_data);
    }
    static const void* getExtension(const clap_host*, const char* name)
    {
        static const clap_host_log log{
            [](const clap_host*, std::int32_t, const char* text) { ADD_FAILURE() << text; }};
        static const clap_host_thread_check threads{
            [](const clap_host* self) {
                return std::this_thread::get_id() == From(self).mMain && !IsAudio();
            },
            [](const clap_host*) { return IsAudio(); }};
        if (std::strcmp(name, kClapLog) == 0)
            return &log;
        return std::strcmp(name, kClapThreadCheck) == 0 ? &threads : nullptr;
    }

    const ClapLibrary mLibrary;
    const std::thread::id mMain = std::this_thread::get_id();
    std::atomic<bool> mWantsCall{false};
    std::atomic<int> mKey{-1};  // for the next block; -1 for none
    ClapEvents mEvents;         // of the audio thread
    const clap_host mHost{kClapVersion,
                          this,
                          "test",
                          "",
                          "",
                          "1",
                          getExtension,
                          [](const clap_host*) {},
                          [](const clap_host*) {},
                          [](const clap_host* self) { From(self).mWantsCall = true; }};
    const clap_plugin* mPlugin = nullptr;
    const clap_plugin_state* mState = nullptr;
    const clap_plugin_gui* mGui = nullptr;
};

}  // namespace orvane
