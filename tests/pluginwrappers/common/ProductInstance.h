// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/views/ProductApplication.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "support/Locked.h"
#include "support/TestHost.h"

namespace orvane
{

/// The shipped plug-in with access to its elements. It ticks only when a test calls Tick.
struct ProductInstance
{
    explicit ProductInstance(audioMasterCallback host = nullptr)
    {
        const ZInterfaceLock lock;
        auto made = startProduct();
        app = made.get();
        plugin = std::make_unique<ZVSTPlugin>(host, std::move(made));
        effect = plugin->getAeffect();
    }

    std::intptr_t Ask(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                      void* ptr = nullptr, float opt = 0.0f) const
    {
        return ask(effect, opcode, index, value, ptr, opt);
    }
    [[nodiscard]] std::string Bank() const { return chunkOf(effect, false); }
    [[nodiscard]] std::string Program() const { return chunkOf(effect, true); }
    auto LoadBank(const std::string& bytes) const { return loadChunk(effect, bytes, false); }
    auto LoadProgram(const std::string& bytes) const { return loadChunk(effect, bytes, true); }

    [[nodiscard]] ZElement& Element(const std::string& name) const
    {
        return *app->GetCurrentDocument()->FindElement(name);
    }
    void Tick() const
    {
        locked([this] { app->Tick(); });
    }

    /// Starts a new stream, runs a voice through both channels and returns the left output.
    [[nodiscard]] std::vector<float> Play(std::vector<float> voice) const
    {
        constexpr std::size_t kBlock = 512;
        std::vector<float> right = voice;
        Ask(effSetBlockSize, 0, kBlock);
        Ask(effMainsChanged, 0, 0);
        Ask(effMainsChanged, 0, 1);
        for (std::size_t at = 0; at + kBlock <= voice.size(); at += kBlock) {
            float* channels[] = {voice.data() + at, right.data() + at};
            effect->processReplacing(effect, channels, channels, kBlock);
        }
        return voice;
    }

    ZPlugin* app = nullptr;
    std::unique_ptr<ZVSTPlugin> plugin;
    AEffect* effect = nullptr;
};

}  // namespace orvane
