// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace orvane
{

using PluginEntryProc = AEffect* (*)(audioMasterCallback host);

/// The plug-in's library, loaded as hosts do.
class PluginLibrary
{
public:
    PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;
    ~PluginLibrary();

    [[nodiscard]] PluginEntryProc Entry(const char* name = "VSTPluginMain") const;
    /// Returns whether the library is in the memory of the process, whoever loaded it.
    [[nodiscard]] static bool IsLoaded();

private:
    void* mHandle;
};

/// A host that has loaded the library.
class LibraryHost
{
public:
    explicit LibraryHost(std::intptr_t versionAnswer = kVstVersion)
        : mHost(versionAnswer)
    {
    }

    /// Opens an instance; null when the plug-in refuses to load.
    [[nodiscard]] AEffect* Open() const { return mLibrary.Entry()(TestHost::callback); }
    [[nodiscard]] const PluginLibrary& Library() const { return mLibrary; }

private:
    TestHost mHost;
    PluginLibrary mLibrary;
};

/// Ends an instance.
inline void closeEffect(AEffect* effect)
{
    ask(effect, effClose);
}

/// Tests of one instance.
class InstanceTest : public testing::Test
{
protected:
    ~InstanceTest() override { closeEffect(effect); }

    const LibraryHost host;
    AEffect* const effect = host.Open();
};

/// Returns the number of threads of this process.
[[nodiscard]] std::size_t threadCount();

/// Returns whether the process comes to have no more threads than count: the kernel lists a thread
/// for a moment after it has been joined.
[[nodiscard]] bool threadsFallTo(std::size_t count);

}  // namespace orvane
