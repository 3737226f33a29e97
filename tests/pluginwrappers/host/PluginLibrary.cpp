// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginLibrary.h"

#include "support/Eventually.h"

#include <dlfcn.h>

#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace orvane
{

PluginLibrary::PluginLibrary()
    : mHandle(::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_LOCAL))
{
    if (mHandle == nullptr)
        throw std::runtime_error(::dlerror());
}

PluginLibrary::~PluginLibrary()
{
    ::dlclose(mHandle);
}

PluginEntryProc PluginLibrary::Entry(const char* name) const
{
    return reinterpret_cast<PluginEntryProc>(::dlsym(mHandle, name));
}

bool PluginLibrary::IsLoaded()
{
    void* const handle = ::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
        ::dlclose(handle);
    return handle != nullptr;
}

std::size_t threadCount()
{
    // The thread sanitizer starts a thread of its own together with the first of the process.
    [[maybe_unused]] static const bool settled = [] {
        std::thread([] {}).join();
        return true;
    }();
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

bool threadsFallTo(std::size_t count)
{
    return eventually([count] { return threadCount() <= count; });
}

}  // namespace orvane
