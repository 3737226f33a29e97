// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Eventually.h"
#include "support/Test.h"
#include "support/TestHost.h"

#include <dlfcn.h>

#include <filesystem>

namespace orvane
{

using PluginEntryProc = AEffect* (*)(audioMasterCallback host);

/// The plug-in's library, loaded as hosts do.
struct PluginLibrary
{
    PluginLibrary()
    {
        if (mHandle == nullptr)
            throw std::runtime_error(::dlerror());
    }
    PluginLibrary(PluginLibrary&&) = delete;
    ~PluginLibrary() { ::dlclose(mHandle); }

    [[nodiscard]] PluginEntryProc Entry(const char* name = "VSTPluginMain") const
    {
        return reinterpret_cast<PluginEntryProc>(::dlsym(mHandle, name));
    }
    /// Returns whether the library is in the memory of the process, whoever loaded it.
    [[nodiscard]] static bool IsLoaded()
    {
        void* const handle = ::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr)
            ::dlclose(handle);
        return handle != nullptr;
    }

private:
    void* const mHandle = ::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_LOCAL);
};

/// A host that has loaded the library.
struct LibraryHost
{

    /// Opens an instance; null when the plug-in refuses to load.
    [[nodiscard]] AEffect* Open() const { return library.Entry()(TestHost::callback); }

    const TestHost host;
    const PluginLibrary library{};
};

/// Ends an instance.
inline void closeEffect(AEffect* effect)
{
    ask(effect, effClose);
}

/// Tests of one instance.
struct InstanceTest : testing::Test
{
    ~InstanceTest() override { closeEffect(effect); }

    const LibraryHost host;
    AEffect* const effect = host.Open();
};

/// Returns the number of threads of this process.
[[nodiscard]] inline std::size_t threadCount()
{
    // The thread sanitizer starts a thread of its own together with the first of the process.
    [[maybe_unused]] static const bool settled = (std::thread([] {}).join(), true);
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

/// Returns whether the process comes to have no more threads than count: the kernel lists a thread
/// for a moment after it has been joined.
[[nodiscard]] inline bool threadsFallTo(std::size_t count)
{
    return eventually([count] { return threadCount() <= count; });
}

}  // namespace orvane
