// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/views/ProductApplication.h"
#include "pluginwrappers/common/ZVSTPlugin.h"
#include "pluginwrappers/interface/VstOpcodes.h"
#include "zlib/common/documents/ZDocument.h"
#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZInterfaceLock.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace orvane
{

/// The shipped plug-in as a host drives it, with a view of the elements behind it. It ticks when a
/// test says so.
class ProductInstance
{
public:
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
        return effect->dispatcher(effect, opcode, index, value, ptr, opt);
    }

    /// A copy of what effGetChunk lends.
    [[nodiscard]] std::string Chunk(bool isProgram) const
    {
        void* data = nullptr;
        const std::intptr_t size = Ask(effGetChunk, isProgram ? 1 : 0, 0, &data);
        return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
    }
    [[nodiscard]] std::string Bank() const { return Chunk(false); }
    [[nodiscard]] std::string Program() const { return Chunk(true); }

    /// The bytes lie alone, so that a reader who goes beyond them is found out.
    std::intptr_t Load(const std::string& bytes, bool isProgram) const
    {
        const std::unique_ptr<char[]> alone(new char[bytes.size()]);
        bytes.copy(alone.get(), bytes.size());
        return Ask(effSetChunk, isProgram ? 1 : 0, static_cast<std::intptr_t>(bytes.size()),
                   alone.get());
    }
    std::intptr_t LoadBank(const std::string& bytes) const { return Load(bytes, false); }
    std::intptr_t LoadProgram(const std::string& bytes) const { return Load(bytes, true); }

    [[nodiscard]] ZElement& Element(const std::string& name) const
    {
        return *app->GetCurrentDocument()->FindElement(name);
    }
    void Tick() const
    {
        const ZInterfaceLock lock;
        app->Tick();
    }

    ZPlugin* app = nullptr;
    std::unique_ptr<ZVSTPlugin> plugin;
    AEffect* effect = nullptr;
};

}  // namespace orvane
