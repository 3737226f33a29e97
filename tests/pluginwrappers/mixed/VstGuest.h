// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/host/PluginLibrary.h"
#include "pluginwrappers/mixed/Guest.h"

namespace orvane
{

/// The VST 2.4 form; a test keeps a TestHost while it has one.
class VstGuest : public Guest
{
public:
    VstGuest()
    {
        ask(mEffect, effSetSampleRate, 0, 0, nullptr, 44100.0f);
        ask(mEffect, effSetBlockSize, 0, kBlock);
        ask(mEffect, effMainsChanged, 0, 1);
    }
    ~VstGuest() override
    {
        ask(mEffect, effMainsChanged, 0, 0);
        closeEffect(mEffect);
    }

    void Run(Block& left, Block& right) override
    {
        std::array<float*, 2> channels{left.data(), right.data()};
        mEffect->processReplacing(mEffect, channels.data(), channels.data(), kBlock);
    }
    void SetKey(int key) override
    {
        mEffect->setParameter(mEffect, 2, static_cast<float>(key) / 11.0f);
    }
    [[nodiscard]] std::string Save() override { return chunkOf(mEffect, true); }
    [[nodiscard]] bool Load(const std::string& text) override
    {
        return loadChunk(mEffect, text, true) == 1;
    }
    [[nodiscard]] bool Show(xcb_window_t parent) override
    {
        void* const handle = reinterpret_cast<void*>(std::uintptr_t{parent});
        return ask(mEffect, effEditOpen, 0, 0, handle) == 1;
    }
    void Idle() override { ask(mEffect, effEditIdle); }
    void Hide() override { ask(mEffect, effEditClose); }

private:
    const PluginLibrary mLibrary;
    AEffect* const mEffect = mLibrary.Entry()(TestHost::callback);
};

}  // namespace orvane
