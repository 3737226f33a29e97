// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pluginwrappers/interface/AEffect.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane
{

using PluginEntryProc = AEffect* (*)(audioMasterCallback host);

/// A plug-in library, loaded as hosts do.
class PluginLibrary
{
public:
    PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;
    ~PluginLibrary();

    [[nodiscard]] PluginEntryProc Entry(const char* name = "VSTPluginMain") const;
    /// Whether the process has the library in memory, whoever loaded it.
    [[nodiscard]] static bool IsLoaded();

private:
    void* mHandle;
};

/// A call that the plug-in made of its host.
struct HostCall
{
    AEffect* effect;
    std::int32_t opcode;
    std::int32_t index;
    std::intptr_t value;
    float opt;
};

/// A host's side of the interface. It has no place for an object in its callback, so there is one
/// log a process, empty at the start of each TestHost. Calls may come on any thread.
class TestHost
{
public:
    explicit TestHost(std::intptr_t versionAnswer = 2400);

    static std::intptr_t callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                  std::intptr_t value, void* ptr, float opt);
    [[nodiscard]] static std::vector<HostCall> Calls();
    /// What the host says of its processing from now on: one that plays, unless it renders.
    static void SetOffline(bool offline);

    /// Opens an instance; null when the plug-in does not load.
    [[nodiscard]] AEffect* Open() const { return mLibrary.Entry()(callback); }
    [[nodiscard]] const PluginLibrary& Library() const { return mLibrary; }

private:
    PluginLibrary mLibrary;
};

/// Asks the dispatcher of an instance.
std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::int32_t index = 0,
                  std::intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f);

/// Ends an instance.
void closeEffect(AEffect* effect);

/// Threads of this process.
[[nodiscard]] std::size_t threadCount();

/// Whether the process has no more threads than that. One that was joined may be listed for a
/// moment longer, so it is waited for.
[[nodiscard]] bool threadsFallTo(std::size_t count);

}  // namespace orvane
